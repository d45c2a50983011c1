#include <unistd.h>

#include <atomic>
#include <stdexcept>

#include "assembly/database_check.h"
#include "database/table_files.h"
#include "tests/support/test_database.h"

namespace refframe_tests {

namespace {

using QvPlatform::TQvDataSet;
using QvRefSystem::TableSpec;

// Appends one record of a type or service table by pairs of field and value.
struct Cell {
  const char* field;
  std::string value;
};

void Append(TQvDataSet& table, std::initializer_list<Cell> cells) {
  table.Append();
  for (const Cell& cell : cells)
    table.FieldByName(cell.field).SetString(cell.value);
  table.Post();
}

void FillTypes(QvRefSystem::TdatamoduleQvRfData& data) {
  for (int kind = 1; kind <= 6; ++kind) {
    Append(data.datasetRefSystemType, {{"NAME", "kind " + std::to_string(kind)},
                                       {"TYPE", std::to_string(kind)},
                                       {"COORD1_ABBR", "A"},
                                       {"COORD2_ABBR", "B"},
                                       {"COORD3_ABBR", "C"},
                                       {"SWAP_COORDS", "0"}});
  }
  for (int type = 1; type <= 3; ++type) {
    Append(data.datasetDatumShiftType,
           {{"NAME", "shift " + std::to_string(type)}, {"TYPE", std::to_string(type)}});
  }
  Append(data.datasetMapProjType, {{"NAME", "Transverse Mercator"},
                                   {"TYPE", "9807"},
                                   {"COORD1_ABBR", "E"},
                                   {"COORD2_ABBR", "N"},
                                   {"COORD1_SIGN", "1"},
                                   {"COORD2_SIGN", "1"},
                                   {"SWAP_COORDS", "0"}});
  const struct {
    const char* code;
    const char* name;
    const char* unit;
  } parameters[] = {{"8801", "Latitude of natural origin", "2"},
                    {"8802", "Longitude of natural origin", "2"},
                    {"8805", "Scale factor at natural origin", "3"},
                    {"8806", "False easting", "1"},
                    {"8807", "False northing", "1"}};
  for (const auto& parameter : parameters) {
    Append(data.datasetMapProjParam, {{"PROJ_TYPE", "9807"},
                                      {"TAG", parameter.code},
                                      {"PARAM_CODE", parameter.code},
                                      {"NAME", parameter.name},
                                      {"UNIT_TYPE", parameter.unit},
                                      {"KIND", "0"}});
  }
  // Codes that come with a database: of the geodetic kind and of the projection type.
  const struct {
    const char* content;
    const char* owner;
    const char* tag;
    const char* group;
    const char* value;
  } codes[] = {{"12", "4", "4", "0", "2"},
               {"12", "5", "4", "0", "1"},
               {"11", "9807", "4", "0", "1"},
               {"11", "0", "3", "4", "1"},
               {"11", "9807", "3", "5", "8"}};
  for (const auto& code : codes) {
    Append(data.datasetParamValue, {{"OWNER_CONTENT", code.content},
                                    {"OWNER_ID", code.owner},
                                    {"PARAM_TAG", code.tag},
                                    {"PARAM_GROUP", code.group},
                                    {"PARAM_CODE", "0"},
                                    {"VALUE", code.value}});
  }
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
  if (isSound != findings.empty()) throw std::logic_error("the check contradicts itself");
  return findings;
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
