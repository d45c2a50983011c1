#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/geocore/model_from_tree.h"
#include "platform/geocore/proj_handles.h"
#include "platform/geocore/projjson.h"
#include "registry/equivalence.h"
#include "registry/model_tree.h"
#include "registry/proj_bridge.h"

namespace QvRefSystem {
namespace {

using QvCommonUtils::TStringTree;

struct Kind {
  const char* name;
  PJ_TYPE type;
  Dimension dimension;
  /// Live systems of the kind in the EPSG Dataset v10.076.
  std::size_t count;
};

constexpr Kind kKinds[] = {
    {"Projected", PJ_TYPE_PROJECTED_CRS, Dimension::kTwo, 5135},
    {"Geographic2D", PJ_TYPE_GEOGRAPHIC_2D_CRS, Dimension::kTwo, 545},
    {"Geographic3D", PJ_TYPE_GEOGRAPHIC_3D_CRS, Dimension::kThree, 204},
    {"Geocentric", PJ_TYPE_GEOCENTRIC_CRS, Dimension::kThree, 194},
};

std::vector<int> LiveCodes(PJ_TYPE type) {
  const ProjStrings strings(proj_get_codes_from_database(ThreadProjContext(), "EPSG", type, 0));
  std::vector<int> codes;
  for (char** code = strings.get(); *code; ++code)
    codes.push_back(std::stoi(*code));
  return codes;
}

std::string ProjJsonOf(int code) {
  return proj_as_projjson(ThreadProjContext(), CreateEpsgSystem(code).get(), nullptr);
}

// Takes away what would let the bridge answer from the registry: codes, and the systems' names.
std::string Anonymous(const std::string& text) {
  auto json = nlohmann::json::parse(text);
  for (auto* system : {&json, json.contains("base_crs") ? &json["base_crs"] : &json}) {
    system->erase("id");
    (*system)["name"] = "Somebody's system";
  }
  return json.dump();
}

// The whole road of a system through our forms and back; the reason if it does not arrive.
std::string RoundTrip(const std::string& json, Dimension dimension, int code) {
  SystemModel model;
  SystemModel read;
  std::string back;
  std::string error;
  if (!ModelFromProjJson(json, &model, &error)) return "no model: " + error;
  TStringTree written;
  ModelToTree(model, &written);
  TStringTree tree;
  ReadTreeText(WriteTreeText(&written), &tree);
  if (!ModelFromTree(&tree, &read, &error)) return "tree not read: " + error;
  TStringTree again;
  ModelToTree(read, &again);
  if (!SameTree(&written, &again)) return "the tree changes on its second writing";
  if (!ModelToProjJson(read, dimension, &back, &error)) return "no PROJJSON: " + error;
  return EquivalentToEpsg(back, code, &error) ? "" : error;
}

class EveryLiveSystem : public ::testing::TestWithParam<Kind> {};

// The registry's own models are walked in full where the database is made from them.
TEST_P(EveryLiveSystem, ComesBackEquivalentByItsDefinitionAlone) {
  const std::vector<int> codes = LiveCodes(GetParam().type);
  EXPECT_EQ(codes.size(), GetParam().count);
  for (const int code : codes)
    EXPECT_EQ(RoundTrip(Anonymous(ProjJsonOf(code)), GetParam().dimension, code), "") << code;
}

INSTANTIATE_TEST_SUITE_P(OfKind, EveryLiveSystem, ::testing::ValuesIn(kKinds),
                         [](const auto& kind) { return kind.param.name; });

}  // namespace
}  // namespace QvRefSystem
