// What the table engine costs on a database of the delivered size: opening, reopening, look-ups and
// bulk posting. The peer of each is SQLite alone on the same file, used as one would use it without
// an engine above.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/dbset/data_set.h"
#include "platform/dbset/fixed_record_file.h"
#include "platform/dbset/write_group.h"
#include "platform/storage/file_stream.h"
#include "platform/storage/resource_session.h"
#include "platform/text/text.h"

namespace {

using namespace QvPlatform;

constexpr int kSystems = 5900;
constexpr int kValues = 25000;
constexpr int kOtherTables = 14;
constexpr int kOtherRows = 365;
constexpr int kNameField = 3;

TQvDbHeader ObjectHeader(int texts) {
  TQvDbHeader header;
  header.AddField("AUTOKEY", 3, 2, 255);
  header.AddField("FAVOUR", 3, 1, 255);
  header.AddField("LAST_USE", 6, 1, 255);
  header.AddField("NAME", 1, 1, 64);
  for (int i = 0; i < texts; ++i)
    header.AddField(("TEXT" + std::to_string(i)).c_str(), 1, 0, 255);
  for (int i = 0; i < texts; ++i)
    header.AddField(("NUMBER" + std::to_string(i)).c_str(), 3, 0, 255);
  return header;
}

TQvDbHeader ValueHeader() {
  TQvDbHeader header;
  for (const char* name : {"OWNER_CONTENT", "OWNER_ID", "PARAM_TAG", "PARAM_CODE"})
    header.AddField(name, 3, 1, 255);
  header.AddField("CONTENT", 1, 1, 64);
  header.AddField("SPARE", 3, 0, 255);
  return header;
}

/// A table that is open on its file.
struct Table {
  Table(const std::string& path, int sortField) : set(buffer) {
    buffer.StreamName = path;
    buffer.SetSortField(sortField, false, true);
  }
  TQvDataBuffer buffer;
  TQvDataSet set;
};

void MakeTable(const std::string& path, const TQvDbHeader& header) {
  auto stream = std::make_unique<TQvFileStream>();
  if (!stream->Open(path, QvOpenMode::kCreate)) throw StorageError(stream->LastError());
  TFixedRecordFile file(header, header.GetRecordSize());
  if (!file.CreateNew(stream.get(), true)) throw StorageError("no table");
  static_cast<void>(stream.release());
}

/// Appends rows whose texts look like those of the registry.
void Fill(TQvDataSet& set, int rows) {
  TQvWriteGroup group({&set});
  const int fields = set.FieldCount();
  for (int i = 0; i < rows; ++i) {
    set.Append();
    for (int f = 0; f < fields; ++f) {
      TField& field = set.Fields(f);
      if (field.Definition().need == FieldNeed::kGeneratedKey) continue;
      if (field.Definition().type == FieldType::kText) {
        field.SetString("NAD83(2011) / zone " + std::to_string((i * 7919) % rows));
      } else if (field.Definition().name == "OWNER_ID") {
        field.SetInteger(i / 4);
      } else {
        field.SetInteger(i % 4);
      }
    }
    set.Post();
  }
  group.Commit();
}

/// The files of one database, made once for all benchmarks.
class Database {
 public:
  Database() {
    std::string name = (std::filesystem::temp_directory_path() / "refframe-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw StorageError("no folder");
    folder_ = name;
    Add("systems", ObjectHeader(16), kSystems);
    Add("values", ValueHeader(), kValues);
    for (int i = 0; i < kOtherTables; ++i)
      Add("table" + std::to_string(i), ObjectHeader(4), kOtherRows);
    for (const std::string& path : paths_)
      CopyIntoContainer(path);
  }
  ~Database() { std::filesystem::remove_all(folder_); }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  [[nodiscard]] const std::vector<std::string>& Paths() const { return paths_; }
  /// The same tables as resources.
  [[nodiscard]] std::string Resource(const std::string& path) const {
    return (folder_ / "all.qvdb.").string() + std::filesystem::path(path).stem().string();
  }
  [[nodiscard]] std::string Path(const std::string& name) const {
    return (folder_ / (name + ".dat")).string();
  }

 private:
  void Add(const std::string& name, const TQvDbHeader& header, int rows) {
    MakeTable(Path(name), header);
    Table table(Path(name), kNameField);
    table.set.Open();
    Fill(table.set, rows);
    paths_.push_back(Path(name));
  }
  void CopyIntoContainer(const std::string& path) const {
    TQvFileStream from;
    TQvResourceSession to;
    if (!from.Open(path, QvOpenMode::kRead)) throw StorageError(from.LastError());
    if (!to.Open(Resource(path), QvOpenMode::kCreate)) throw StorageError(to.LastError());
    const std::string bytes = from.ReadAll();
    to.Write(bytes.data(), bytes.size());
    to.Commit();
  }

  std::filesystem::path folder_;
  std::vector<std::string> paths_;
};

const Database& SharedDatabase() {
  static const Database database;
  return database;
}

int SortFieldOf(const std::string& path) {
  return path.find("values") != std::string::npos ? 4 : kNameField;
}

void OpenDatabase(benchmark::State& state, QvDataBufferType type) {
  const Database& database = SharedDatabase();
  for (auto _ : state) {
    std::vector<std::unique_ptr<Table>> tables;
    for (const std::string& path : database.Paths()) {
      const bool resource = type == QvDataBufferType::kResource;
      const std::string name = resource ? database.Resource(path) : path;
      tables.push_back(std::make_unique<Table>(name, SortFieldOf(path)));
      tables.back()->buffer.SetDataBufferType(type);
      tables.back()->set.Open();
    }
    state.PauseTiming();
    tables.clear();
    state.ResumeTiming();
  }
}
BENCHMARK_CAPTURE(OpenDatabase, Folder, QvDataBufferType::dtFileStream)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(OpenDatabase, Container, QvDataBufferType::kResource)
    ->Unit(benchmark::kMillisecond);

void OpenDatabaseBySqliteAlone(benchmark::State& state) {
  const Database& database = SharedDatabase();
  for (auto _ : state) {
    std::size_t bytes = 0;
    for (const std::string& path : database.Paths()) {
      sqlite3* handle = nullptr;
      sqlite3_open(path.c_str(), &handle);
      sqlite3_stmt* query = nullptr;
      const std::string order = SortFieldOf(path) == 4 ? "CONTENT" : "NAME";
      sqlite3_prepare_v2(handle, ("SELECT * FROM records ORDER BY " + order).c_str(), -1, &query,
                         nullptr);
      while (sqlite3_step(query) == SQLITE_ROW) {
        for (int i = sqlite3_column_count(query) - 1; i >= 0; --i) {
          if (sqlite3_column_type(query, i) == SQLITE_TEXT) sqlite3_column_text(query, i);
          bytes += static_cast<std::size_t>(sqlite3_column_bytes(query, i));
        }
      }
      sqlite3_finalize(query);
      sqlite3_close(handle);
    }
    benchmark::DoNotOptimize(bytes);
  }
}
BENCHMARK(OpenDatabaseBySqliteAlone)->Unit(benchmark::kMillisecond);

/// What follows each choice of a record: the table is closed and opened again.
void ReopenSystems(benchmark::State& state) {
  Table table(SharedDatabase().Path("systems"), kNameField);
  table.set.Open();
  for (auto _ : state) {
    table.set.Close();
    table.buffer.Close();
    table.set.Open();
  }
}
BENCHMARK(ReopenSystems)->Unit(benchmark::kMicrosecond);

void FindByKey(benchmark::State& state) {
  Table table(SharedDatabase().Path("systems"), kNameField);
  table.set.Open();
  int key = 0;
  for (auto _ : state) {
    key = (key + 2531) % kSystems;
    benchmark::DoNotOptimize(table.set.FindFirst({RowMatch::Integer(0, key + 1)}));
  }
}
BENCHMARK(FindByKey);

void FindByKeyBySqliteAlone(benchmark::State& state) {
  sqlite3* handle = nullptr;
  sqlite3_open(SharedDatabase().Path("systems").c_str(), &handle);
  sqlite3_exec(handle, "BEGIN", nullptr, nullptr, nullptr);
  sqlite3_stmt* query = nullptr;
  sqlite3_prepare_v2(handle, "SELECT NAME FROM records WHERE AUTOKEY = ?", -1, &query, nullptr);
  int key = 0;
  for (auto _ : state) {
    key = (key + 2531) % kSystems;
    sqlite3_bind_int(query, 1, key + 1);
    benchmark::DoNotOptimize(sqlite3_step(query));
    sqlite3_reset(query);
  }
  sqlite3_finalize(query);
  sqlite3_close(handle);
}
BENCHMARK(FindByKeyBySqliteAlone);

void FindByOwnerAndTag(benchmark::State& state) {
  Table table(SharedDatabase().Path("values"), 4);
  table.set.Open();
  int owner = 0;
  for (auto _ : state) {
    owner = (owner + 2531) % (kValues / 4);
    benchmark::DoNotOptimize(table.set.FindFirst(
        {RowMatch::Integer(0, 1), RowMatch::Integer(1, owner), RowMatch::Integer(2, 1)}));
  }
}
BENCHMARK(FindByOwnerAndTag);

void FindByName(benchmark::State& state) {
  Table table(SharedDatabase().Path("systems"), kNameField);
  table.set.Open();
  const std::vector<RowMatch> match = {
      RowMatch::Folded(kNameField, FoldName("NAD83(2011) / zone 4711"))};
  for (auto _ : state)
    benchmark::DoNotOptimize(table.set.FindFirst(match));
}
BENCHMARK(FindByName);

/// The peer of look-ups without an index: what a walk from the first row costs.
void FindByWalk(benchmark::State& state) {
  Table table(SharedDatabase().Path("systems"), kNameField);
  table.set.Open();
  int key = 0;
  for (auto _ : state) {
    key = (key + 2531) % kSystems;
    int position = 0;
    while (table.set.Row(position).GetInteger(0) != key + 1)
      ++position;
    benchmark::DoNotOptimize(position);
  }
}
BENCHMARK(FindByWalk);

void ReadFields(benchmark::State& state) {
  Table table(SharedDatabase().Path("systems"), kNameField);
  table.set.Open();
  for (auto _ : state) {
    std::size_t sum = 0;
    for (int i = 0; i < kSystems; ++i) {
      const RowView row = table.set.Row(i);
      for (int f = 0; f < 20; ++f)
        sum += row.GetText(f).size();
      for (int f = 20; f < 36; ++f)
        sum += static_cast<std::size_t>(row.GetInteger(f));
    }
    benchmark::DoNotOptimize(sum);
  }
  state.counters["ns_per_field"] =
      benchmark::Counter(kSystems * 36.0 * 1e-9, benchmark::Counter::kIsIterationInvariantRate |
                                                     benchmark::Counter::kInvert);
}
BENCHMARK(ReadFields)->Unit(benchmark::kMicrosecond);

constexpr int kBulkRows = 40000;

void PostInOneGroup(benchmark::State& state) {
  const std::string path = SharedDatabase().Path("bulk");
  for (auto _ : state) {
    state.PauseTiming();
    MakeTable(path, ObjectHeader(4));
    Table table(path, kNameField);
    table.set.Open();
    state.ResumeTiming();
    Fill(table.set, kBulkRows);
  }
}
BENCHMARK(PostInOneGroup)->Unit(benchmark::kMillisecond)->Iterations(3);

void PostBySqliteAlone(benchmark::State& state) {
  const std::string path = SharedDatabase().Path("bulk");
  for (auto _ : state) {
    state.PauseTiming();
    MakeTable(path, ObjectHeader(4));
    sqlite3* handle = nullptr;
    sqlite3_open(path.c_str(), &handle);
    state.ResumeTiming();
    sqlite3_exec(handle, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(handle, "INSERT INTO records VALUES (NULL,0,0,?1,?1,?1,?1,?1,1,2,3,0,1)", -1,
                       &insert, nullptr);
    for (int i = 0; i < kBulkRows; ++i) {
      const std::string name = "NAD83(2011) / zone " + std::to_string((i * 7919) % kBulkRows);
      sqlite3_bind_text(insert, 1, name.c_str(), static_cast<int>(name.size()), nullptr);
      sqlite3_step(insert);
      sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    sqlite3_exec(handle, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(handle);
  }
}
BENCHMARK(PostBySqliteAlone)->Unit(benchmark::kMillisecond)->Iterations(3);

void PostAlone(benchmark::State& state) {
  const std::string path = SharedDatabase().Path("bulk");
  MakeTable(path, ObjectHeader(4));
  Table table(path, kNameField);
  table.set.Open();
  for (auto _ : state) {
    table.set.Append();
    table.set.Fields(kNameField).SetString("x");
    table.set.Post();
  }
}
BENCHMARK(PostAlone)->Unit(benchmark::kMicrosecond);

/// As the insert of one object stores it: a record in one table and its codes in another, in a
/// group over as many files as a group takes.
void PostTwoInWideGroup(benchmark::State& state) {
  std::vector<std::unique_ptr<Table>> tables;
  std::vector<TQvDataSet*> sets;
  for (int i = 0; i < 11; ++i) {
    const std::string path = SharedDatabase().Path("wide" + std::to_string(i));
    MakeTable(path, ObjectHeader(4));
    tables.push_back(std::make_unique<Table>(path, kNameField));
    tables.back()->set.Open();
    sets.push_back(&tables.back()->set);
  }
  for (auto _ : state) {
    TQvWriteGroup group(sets);
    for (const std::size_t i : {3, 7}) {
      sets[i]->Append();
      sets[i]->Fields(kNameField).SetString("x");
      sets[i]->Post();
    }
    group.Commit();
  }
}
BENCHMARK(PostTwoInWideGroup)->Unit(benchmark::kMicrosecond);

}  // namespace
