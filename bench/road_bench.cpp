// The main roads over the delivered database, each beside its peer: opening, export of every
// system, finding an equal system, filtering names, importing a system.
//
// REFFRAME_BENCH_DB names a folder with the databases "delivered" and "delivered.qvdb"; without it
// they are made once under the temporary folder. The counter per_item is what to compare.
#include <benchmark/benchmark.h>
#include <proj.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "assembly/processor_set.h"
#include "platform/geocore/projjson.h"
#include "platform/text/text.h"
#include "processors/name_filter.h"
#include "registry/epsg_registry.h"

namespace {

namespace fs = std::filesystem;
using QvCommonUtils::TStringTree;
using QvRefSystem::TdatamoduleQvRfData;
using QvRefSystem::TQvRfDataProcessor;

class TSilentInterface final : public QvPlatform::TUserInterface {
 public:
  QvPlatform::MessageAnswer ShowMessage(QvPlatform::MessageKind, const std::string& text,
                                        QvPlatform::MessageButtons) override {
    std::cerr << text << "\n";
    return QvPlatform::MessageAnswer::kNo;
  }
  QvPlatform::UsedByAnswer ShowUsedBy(QvPlatform::TComponent*,
                                      std::span<const QvPlatform::UsedByRow>, bool) override {
    return QvPlatform::UsedByAnswer::kClosed;
  }
  std::unique_ptr<QvPlatform::TProgress> StartProgress(int, const std::string&, int) override {
    class TNoProgress final : public QvPlatform::TProgress {
      bool Next() override { return true; }
    };
    return std::make_unique<TNoProgress>();
  }
};

[[noreturn]] void Stop(const std::string& what) {
  std::cerr << "road_bench: " << what << "\n";
  std::exit(1);
}

TSilentInterface& Ui() {
  static TSilentInterface ui;
  return ui;
}

// The database, made if it is not there yet.
std::string DatabasePath(bool container) {
  const char* folder = std::getenv("REFFRAME_BENCH_DB");
  const fs::path root =
      folder != nullptr ? fs::path(folder) : fs::temp_directory_path() / "refframe-bench";
  const std::string path = (root / (container ? "delivered.qvdb" : "delivered")).string();
  if (fs::exists(path)) return path;
  fs::create_directories(root);
  QvRefSystem::RegistryOptions options;
  options.resourceForm = container;
  QvRefSystem::RegistryReport report;
  std::string error;
  if (!BuildRegistryDatabase(path, options, Ui(), &report, &error)) Stop(error);
  return path;
}

std::unique_ptr<TdatamoduleQvRfData> Open(const std::string& path, bool container) {
  auto data = QvRefSystem::MakeDataModule(Ui());
  data->DatabasePath = path;
  if (!data->OpenDatabase(path, QvRefSystem::kFullMode, container)) Stop(data->LastError());
  return data;
}

// One database for all benchmarks that only read.
TdatamoduleQvRfData& Delivered() {
  static const auto data = Open(DatabasePath(true), true);
  return *data;
}

TQvRfDataProcessor& Systems(TdatamoduleQvRfData& data) {
  return *QvRefSystem::ProcessorFor(data,
                                    static_cast<int>(QvRefSystem::TObjectType::kReferenceSystem));
}

std::vector<int> SystemKeys(TdatamoduleQvRfData& data) {
  std::vector<int> keys;
  for (int at = 0; at < data.datasetRefSystem.RecordCount(); ++at) {
    keys.push_back(data.datasetRefSystem.Row(at).GetInteger(0));
  }
  return keys;
}

std::unique_ptr<TStringTree> TreeOf(TQvRfDataProcessor& systems, int key) {
  auto tree = std::make_unique<TStringTree>();
  if (!systems.LocateKey(key) || !systems.WriteToTree(tree.get(), 0, 0)) Stop("no such system");
  return tree;
}

// Every step-th system, so that a sample holds all kinds and no neighbours.
std::vector<std::unique_ptr<TStringTree>> SampleTrees(std::size_t step) {
  TQvRfDataProcessor& systems = Systems(Delivered());
  std::vector<std::unique_ptr<TStringTree>> trees;
  const std::vector<int> keys = SystemKeys(Delivered());
  for (std::size_t at = 0; at < keys.size(); at += step) {
    trees.push_back(TreeOf(systems, keys[at]));
  }
  return trees;
}

void ReportPerItem(benchmark::State& state, std::size_t items) {
  state.counters["per_item"] =
      benchmark::Counter(static_cast<double>(items), benchmark::Counter::kIsIterationInvariantRate |
                                                         benchmark::Counter::kInvert);
  state.counters["items"] = static_cast<double>(items);
}

class ProjContext {
 public:
  ProjContext() : context_(proj_context_create()) {}
  ~ProjContext() { proj_context_destroy(context_); }
  ProjContext(const ProjContext&) = delete;
  ProjContext& operator=(const ProjContext&) = delete;
  [[nodiscard]] PJ_CONTEXT* Get() const { return context_; }

 private:
  PJ_CONTEXT* context_;
};

// Opening a database.

void OpenDatabase(benchmark::State& state, bool container) {
  const std::string path = DatabasePath(container);
  for (auto _ : state) {
    benchmark::DoNotOptimize(Open(path, container));
  }
}
BENCHMARK_CAPTURE(OpenDatabase, Folder, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(OpenDatabase, Container, true)->Unit(benchmark::kMillisecond);

// What one table costs SQLite itself: every cell of every row as text.
std::size_t LoadTable(sqlite3* database, const std::string& table) {
  sqlite3_stmt* statement = nullptr;
  const std::string query = "SELECT * FROM \"" + table + "\"";
  if (sqlite3_prepare_v2(database, query.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
    Stop(sqlite3_errmsg(database));
  }
  std::vector<std::vector<std::string>> rows;
  while (sqlite3_step(statement) == SQLITE_ROW) {
    auto& row = rows.emplace_back();
    for (int column = 0; column < sqlite3_column_count(statement); ++column) {
      const unsigned char* text = sqlite3_column_text(statement, column);
      row.emplace_back(text != nullptr ? reinterpret_cast<const char*>(text) : "");
    }
  }
  sqlite3_finalize(statement);
  return rows.size();
}

std::vector<std::string> TableNames(sqlite3* database) {
  std::vector<std::string> names;
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database, "SELECT name FROM sqlite_schema WHERE type = 'table'", -1,
                     &statement, nullptr);
  while (sqlite3_step(statement) == SQLITE_ROW) {
    names.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)));
  }
  sqlite3_finalize(statement);
  return names;
}

void OpenDatabaseSqliteAlone(benchmark::State& state) {
  const std::string path = DatabasePath(true);
  for (auto _ : state) {
    sqlite3* database = nullptr;
    if (sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
      Stop("SQLite does not open the container");
    }
    for (const std::string& table : TableNames(database)) {
      benchmark::DoNotOptimize(LoadTable(database, table));
    }
    sqlite3_close(database);
  }
}
BENCHMARK(OpenDatabaseSqliteAlone)->Unit(benchmark::kMillisecond);

// Export of every system.

void ExportEverySystem(benchmark::State& state) {
  TQvRfDataProcessor& systems = Systems(Delivered());
  const std::vector<int> keys = SystemKeys(Delivered());
  for (auto _ : state) {
    for (const int key : keys) {
      TStringTree tree;
      if (!systems.LocateKey(key) || !systems.WriteToTree(&tree, 0, 0)) Stop("no such system");
      benchmark::DoNotOptimize(WriteTreeText(&tree));
    }
  }
  ReportPerItem(state, keys.size());
}
BENCHMARK(ExportEverySystem)->Unit(benchmark::kMillisecond);

// The codes of all systems, as the trees bear them.
const std::vector<std::string>& SystemCodes() {
  static const std::vector<std::string> codes = [] {
    std::vector<std::string> found;
    for (const auto& tree : SampleTrees(1)) {
      std::string code;
      if (tree->GetString(102005, 0, &code)) found.push_back(code);
    }
    return found;
  }();
  return codes;
}

void ExportEverySystemProj(benchmark::State& state) {
  const ProjContext context;
  const std::vector<std::string>& codes = SystemCodes();
  for (auto _ : state) {
    for (const std::string& code : codes) {
      PJ* system = proj_create(context.Get(), ("EPSG:" + code).c_str());
      if (system == nullptr) Stop("PROJ has no EPSG:" + code);
      benchmark::DoNotOptimize(proj_as_projjson(context.Get(), system, nullptr));
      proj_destroy(system);
    }
  }
  ReportPerItem(state, codes.size());
}
BENCHMARK(ExportEverySystemProj)->Unit(benchmark::kMillisecond);

// Finding an equal system.

void FindEqualSystem(benchmark::State& state) {
  TQvRfDataProcessor& systems = Systems(Delivered());
  const auto trees = SampleTrees(30);
  const int before = systems.DataSet->RecordCount();
  for (auto _ : state) {
    for (const auto& tree : trees) {
      if (systems.InsertFromTree(tree.get()) == 0) Stop("a system of the database is refused");
    }
  }
  if (systems.DataSet->RecordCount() != before) Stop("an equal system was not found");
  ReportPerItem(state, trees.size());
}
BENCHMARK(FindEqualSystem)->Unit(benchmark::kMillisecond);

void FindEqualSystemProj(benchmark::State& state) {
  const ProjContext context;
  std::vector<PJ*> systems;
  for (const auto& tree : SampleTrees(300)) {
    std::string json;
    std::string error;
    if (!TreeToProjJson(tree.get(), QvRefSystem::Dimension::kTwo, &json, &error)) Stop(error);
    systems.push_back(proj_create(context.Get(), json.c_str()));
  }
  for (auto _ : state) {
    for (const PJ* system : systems) {
      int* confidence = nullptr;
      proj_list_destroy(proj_identify(context.Get(), system, "EPSG", nullptr, &confidence));
      proj_int_list_destroy(confidence);
    }
  }
  for (PJ* system : systems)
    proj_destroy(system);
  ReportPerItem(state, systems.size());
}
BENCHMARK(FindEqualSystemProj)->Unit(benchmark::kMillisecond);

// Filtering the names of all systems, once for each letter that is typed.

constexpr const char* kTyped[] = {"u", "ut", "utm", "utm ", "utm z", "utm zo", "utm zone 33"};

void FilterNames(benchmark::State& state) {
  QvRefSystem::NameFilter filter(Delivered().datasetRefSystem);
  benchmark::DoNotOptimize(filter.Match(""));
  for (auto _ : state) {
    for (const char* text : kTyped)
      benchmark::DoNotOptimize(filter.Match(text));
  }
  ReportPerItem(state, std::size(kTyped));
}
BENCHMARK(FilterNames)->Unit(benchmark::kMillisecond);

// The same rows, found by folding each name again.
void FilterNamesRowByRow(benchmark::State& state) {
  QvPlatform::TQvDataSet& dataSet = Delivered().datasetRefSystem;
  const int name = dataSet.FieldByName("NAME").GetIndex();
  for (auto _ : state) {
    for (const char* text : kTyped) {
      const std::string wanted = QvPlatform::UpperCase(text);
      std::vector<int> rows;
      for (int at = 0; at < dataSet.RecordCount(); ++at) {
        const std::string folded = QvPlatform::UpperCase(dataSet.Row(at).GetText(name));
        if (folded.find(wanted) != std::string::npos) rows.push_back(at);
      }
      benchmark::DoNotOptimize(rows);
    }
  }
  ReportPerItem(state, std::size(kTyped));
}
BENCHMARK(FilterNamesRowByRow)->Unit(benchmark::kMillisecond);

// Importing a system that is not there yet, durable when the call returns.

void ImportSystem(benchmark::State& state, bool container) {
  const fs::path copy =
      fs::temp_directory_path() / (container ? "refframe-bench-copy.qvdb" : "refframe-bench-copy");
  fs::remove_all(copy);
  fs::copy(DatabasePath(container), copy, fs::copy_options::recursive);
  {
    const auto data = Open(copy.string(), container);
    TQvRfDataProcessor& systems = Systems(*data);
    const auto tree = TreeOf(systems, SystemKeys(*data).front());
    int number = 0;
    for (auto _ : state) {
      RemoveField(tree.get(), 1020, 0);
      EnsureField(tree.get(), 1020, 0, "New system " + std::to_string(++number), "name");
      if (systems.InsertFromTree(tree.get()) == 0) Stop("a new system is refused");
    }
  }
  fs::remove_all(copy);
}
BENCHMARK_CAPTURE(ImportSystem, Folder, false)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(ImportSystem, Container, true)->Unit(benchmark::kMillisecond)->UseRealTime();

// What one row costs SQLite with the same promise of durability.
void ImportSystemSqliteAlone(benchmark::State& state) {
  const fs::path path = fs::temp_directory_path() / "refframe-bench-row.db";
  fs::remove(path);
  sqlite3* database = nullptr;
  if (sqlite3_open(path.c_str(), &database) != SQLITE_OK) Stop("SQLite makes no file");
  const auto run = [&](const char* statement) {
    if (sqlite3_exec(database, statement, nullptr, nullptr, nullptr) != SQLITE_OK) {
      Stop(sqlite3_errmsg(database));
    }
  };
  run("PRAGMA journal_mode = DELETE; PRAGMA synchronous = EXTRA;"
      "CREATE TABLE t (k INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT)");
  for (auto _ : state)
    run("INSERT INTO t (name) VALUES ('a system')");
  sqlite3_close(database);
  fs::remove(path);
}
BENCHMARK(ImportSystemSqliteAlone)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
