// What the export of one reference system costs in trees: building, counting and writing the text,
// destroying. The peer is the same content as a JSON document, which also is built, written as
// text and destroyed. The counter ns_per_field is what to look at.
#include <benchmark/benchmark.h>

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "platform/data/string_tree.h"

namespace {

using QvCommonUtils::EnsureField;
using QvCommonUtils::EnsureSubtree;
using QvCommonUtils::EnterSubtree;
using QvCommonUtils::LeaveSubtree;
using QvCommonUtils::TStringTree;

struct FieldRow {
  int id;
  std::string_view label;
  std::string_view value;
};

// Fields as a projected system has them: short codes, numbers and names, one long description.
constexpr FieldRow kFields[] = {
    {1020, "name", "ETRS89 / UTM zone 32N"},
    {1021, "desc", "Engineering survey, topographic mapping, between 6 and 12 degrees east"},
    {1022, "abbr", "UTM32"},
    {1100, "type", "5"},
    {1400, "swap", "0"},
    {5301, "code", "9102"},
    {5302, "factor", "0.0174532925199433"},
    {5110, "semi_major", "6378137"},
    {5111, "inverse_flattening", "298.257222101"},
    {6003, "map_proj_param_name", "Scale factor at natural origin"},
    {6004, "map_proj_param_code", "8805"},
    {6005, "map_proj_param_value", "0.9996"},
    {102001, "GeoTIFF ref.system type", "1"},
    {102005, "GeoTIFF ref.system code", "25832"},
};
constexpr int kSubtrees = 20;
constexpr int kLevels = 4;
constexpr double kFieldCount = static_cast<double>(std::size(kFields)) * kSubtrees;

/// Twenty subtrees in five branches of four levels, 14 fields each: 280 fields.
void FillTree(TStringTree* root) {
  for (int branch = 0; branch < kSubtrees / kLevels; ++branch) {
    TStringTree* cursor = root;
    for (int level = 0; level < kLevels; ++level) {
      EnsureSubtree(cursor, 1100 + level, branch, "reference system");
      benchmark::DoNotOptimize(EnterSubtree(&cursor, 1100 + level, branch));
      for (const FieldRow& row : kFields)
        EnsureField(cursor, row.id, 0, row.value, row.label);
    }
  }
}

nlohmann::json MakeJson() {
  nlohmann::json root = {{"id", 0}, {"label", ""}, {"subtrees", nlohmann::json::array()}};
  for (int branch = 0; branch < kSubtrees / kLevels; ++branch) {
    nlohmann::json* cursor = &root;
    for (int level = 0; level < kLevels; ++level) {
      nlohmann::json node = {
          {"id", 1100 + level}, {"index", branch}, {"label", "reference system"}};
      auto& fields = node["fields"] = nlohmann::json::array();
      for (const FieldRow& row : kFields) {
        fields.push_back({{"id", row.id}, {"label", row.label}, {"value", row.value}});
      }
      auto& subtrees = (*cursor)["subtrees"];
      subtrees.push_back(std::move(node));
      cursor = &subtrees.back();
    }
  }
  return root;
}

void ReportPerField(benchmark::State& state) {
  state.counters["ns_per_field"] =
      benchmark::Counter(kFieldCount * 1e-9, benchmark::Counter::kIsIterationInvariantRate |
                                                 benchmark::Counter::kInvert);
}

void TreeExport(benchmark::State& state) {
  for (auto _ : state) {
    TStringTree tree;
    FillTree(&tree);
    benchmark::DoNotOptimize(WriteTreeText(&tree));
  }
  ReportPerField(state);
}
BENCHMARK(TreeExport);

void JsonExport(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(MakeJson().dump());
  }
  ReportPerField(state);
}
BENCHMARK(JsonExport);

void TreeBuildAndDestroy(benchmark::State& state) {
  for (auto _ : state) {
    TStringTree tree;
    FillTree(&tree);
    benchmark::ClobberMemory();
  }
  ReportPerField(state);
}
BENCHMARK(TreeBuildAndDestroy);

void TreeWriteText(benchmark::State& state) {
  TStringTree tree;
  FillTree(&tree);
  for (auto _ : state)
    benchmark::DoNotOptimize(WriteTreeText(&tree));
  ReportPerField(state);
}
BENCHMARK(TreeWriteText);

void TreeReadText(benchmark::State& state) {
  TStringTree tree;
  FillTree(&tree);
  const std::string text = WriteTreeText(&tree);
  for (auto _ : state) {
    TStringTree read;
    ReadTreeText(text, &read);
    benchmark::ClobberMemory();
  }
  ReportPerField(state);
}
BENCHMARK(TreeReadText);

void JsonRead(benchmark::State& state) {
  const std::string text = MakeJson().dump();
  for (auto _ : state)
    benchmark::DoNotOptimize(nlohmann::json::parse(text));
  ReportPerField(state);
}
BENCHMARK(JsonRead);

void TreeWriteXml(benchmark::State& state) {
  TStringTree tree;
  FillTree(&tree);
  for (auto _ : state)
    benchmark::DoNotOptimize(WriteTreeXml(&tree));
  ReportPerField(state);
}
BENCHMARK(TreeWriteXml);

void TreeReadXml(benchmark::State& state) {
  TStringTree tree;
  FillTree(&tree);
  const std::string document = WriteTreeXml(&tree);
  for (auto _ : state) {
    TStringTree read;
    ReadTreeXml(document, &read);
    benchmark::ClobberMemory();
  }
  ReportPerField(state);
}
BENCHMARK(TreeReadXml);

}  // namespace
