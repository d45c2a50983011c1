#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>

#include "assembly/database_check.h"
#include "database/table_files.h"
#include "tests/support/test_database.h"

namespace refframe_tests {

namespace {

using QvPlatform::TQvDataSet;
using QvRefSystem::TableSpec;

using Row = std::vector<std::string>;

// Appends records to a type or service table, each with a value for each of the fields.
void Append(TQvDataSet& table, const Row& fields, const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    table.Append();
    for (std::size_t i = 0; i < fields.size(); ++i)
      table.FieldByName(fields[i]).SetString(row.at(i));
    table.Post();
  }
}

void FillTypes(QvRefSystem::TdatamoduleQvRfData& data) {
  for (const char* kind : {"1", "2", "3", "4", "5", "6"}) {
    Append(data.datasetRefSystemType,
           {"NAME", "TYPE", "COORD1_ABBR", "COORD2_ABBR", "COORD3_ABBR", "SWAP_COORDS"},
           {{std::string("kind ") + kind, kind, "A", "B", "C", "0"}});
  }
  Append(data.datasetDatumShiftType, {"NAME", "TYPE"},
         {{"shift 1", "1"}, {"shift 2", "2"}, {"shift 3", "3"}});
  Append(
      data.datasetMapProjType,
      {"NAME", "TYPE", "COORD1_ABBR", "COORD2_ABBR", "COORD1_SIGN", "COORD2_SIGN", "SWAP_COORDS"},
      {{"Transverse Mercator", "9807", "E", "N", "1", "1", "0"}});
  Append(data.datasetMapProjParam, {"PROJ_TYPE", "TAG", "PARAM_CODE", "NAME", "UNIT_TYPE", "KIND"},
         {{"9807", "8801", "8801", "Latitude of natural origin", "2", "0"},
          {"9807", "8802", "8802", "Longitude of natural origin", "2", "0"},
          {"9807", "8805", "8805", "Scale factor at natural origin", "3", "0"},
          {"9807", "8806", "8806", "False easting", "1", "0"},
          {"9807", "8807", "8807", "False northing", "1", "0"}});
  // Codes that come with a database: of the geodetic kind and of the projection type.
  Append(data.datasetParamValue,
         {"OWNER_CONTENT", "OWNER_ID", "PARAM_TAG", "PARAM_GROUP", "PARAM_CODE", "VALUE"},
         {{"12", "4", "4", "0", "0", "2"},
          {"12", "5", "4", "0", "0", "1"},
          {"11", "9807", "4", "0", "0", "1"},
          {"11", "0", "3", "4", "0", "1"},
          {"11", "9807", "3", "5", "0", "8"}});
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  static std::atomic<int> next{0};
  path_ = std::filesystem::temp_directory_path() /
          ("refframe-test-" + std::to_string(getpid()) + "-" + std::to_string(next++));
  std::filesystem::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code error;
  std::filesystem::remove_all(path_, error);
}

void MakeEmptyTables(const std::string& path, bool resourceForm, QvPlatform::TUserInterface& ui) {
  if (!resourceForm) std::filesystem::create_directories(path);
  for (const TableSpec& table : QvRefSystem::TableCatalogue()) {
    if (table.tag == QvRefSystem::kUnopenedTag) continue;
    const std::string name = resourceForm
                                 ? path + "." + QvRefSystem::ExtractTableBaseName(table.streamName)
                                 : path + "/" + std::string(table.streamName);
    if (!CreateCatalogueTable(name, resourceForm, table, ui)) {
      throw std::runtime_error("cannot make " + name);
    }
  }
}

namespace {

const char* FileNameOf(bool resourceForm) {
  return resourceForm ? "refs.qvdb" : "refs";
}

void Open(QvRefSystem::TdatamoduleQvRfData& data, const std::string& path, bool resourceForm) {
  data.DatabasePath = path;
  if (!data.OpenDatabase(path, QvRefSystem::kFullMode, resourceForm)) {
    throw std::runtime_error("cannot open " + path + ": " + data.LastError());
  }
}

// Made once a process and copied for each test: making sixteen durable tables takes its time.
const TemporaryFolder& Template(bool resourceForm) {
  static const TemporaryFolder folders[2];
  static bool made[2] = {false, false};
  const TemporaryFolder& folder = folders[resourceForm ? 1 : 0];
  if (!made[resourceForm ? 1 : 0]) {
    ScriptedUi ui;
    const std::string path = folder.Path(FileNameOf(resourceForm));
    MakeEmptyTables(path, resourceForm, ui);
    const auto data = QvRefSystem::MakeDataModule(ui);
    Open(*data, path, resourceForm);
    FillTypes(*data);
    data->CloseDatabase();
    made[resourceForm ? 1 : 0] = true;
  }
  return folder;
}

}  // namespace

TestDatabase::TestDatabase(bool resourceForm) : path(folder.Path(FileNameOf(resourceForm))) {
  std::filesystem::copy(Template(resourceForm).Path(), folder.Path(),
                        std::filesystem::copy_options::recursive);
  data = QvRefSystem::MakeDataModule(ui);
  Open(*data, path, resourceForm);
}

std::vector<std::string> TestDatabase::Findings() const {
  std::vector<std::string> findings;
  const bool isSound = CheckDatabase(*data, &findings);
  const auto isNote = [](const std::string& line) { return line.starts_with("note: "); };
  if (isSound != std::ranges::all_of(findings, isNote)) {
    throw std::logic_error("the check contradicts itself");
  }
  return findings;
}

std::unique_ptr<QvCommonUtils::TStringTree> WrittenTree(
    QvRefSystem::TQvRfDataProcessor& processor) {
  auto tree = std::make_unique<QvCommonUtils::TStringTree>();
  if (!processor.WriteToTree(tree.get(), 0, 0)) throw std::runtime_error("cannot write the record");
  return tree;
}

std::vector<int> TestDatabase::Counts() const {
  std::vector<int> counts;
  for (const TableSpec& table : QvRefSystem::TableCatalogue()) {
    if (table.tag != QvRefSystem::kUnopenedTag) {
      counts.push_back(data->DataSet(table.id).RecordCount());
    }
  }
  return counts;
}

}  // namespace refframe_tests
