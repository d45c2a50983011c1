#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <sstream>

#include "database/height_storage.h"
#include "platform/storage/crc32.h"
#include "tests/faults/driver.h"
#include "vertical/vertical_processor.h"

namespace refframe_faults {

using namespace QvRefSystem;
namespace fs = std::filesystem;
using QvPlatform::TQvDataSet;

namespace {

// Fields that tell nothing of an object. A file that a killed program left takes a name from the
// next one, so names of files differ between runs.
bool IsAside(const std::string& field) {
  return field == "LAST_USE" || field == "VDATA_FILENAME";
}

// A line for each record with its other fields.
void AddRecords(TQvDataSet& table, const TableSpec& spec, std::vector<std::string>* lines) {
  for (int i = 0; i < table.RecordCount(); ++i) {
    std::string line(spec.stem);
    for (int field = 0; field < table.FieldCount(); ++field)
      if (!IsAside(table.Fields(field).Definition().name))
        line += '|' + table.Row(i).GetString(field);
    lines->push_back(line);
  }
}

// A line for each height file that a record names. The names go to `named`.
void AddHeights(TdatamoduleQvRfData& data, std::vector<std::string>* lines,
                std::vector<std::string>* named) {
  TQvDataSet& table = data.datasetVerticalRefSystem;
  const int field = table.FieldByName("VDATA_FILENAME").GetIndex();
  const int key = table.FieldByName("AUTOKEY").GetIndex();
  for (int i = 0; i < table.RecordCount(); ++i) {
    const std::string name = table.Row(i).GetText(field);
    if (name.empty()) continue;
    named->push_back(name);
    const auto path = HeightStoragePath(data, name);
    std::string text = "is lost";
    if (path) (void)LoadStorageFile(*path, data.ResourceForm, &text);
    std::ranges::replace_if(
        text, [](unsigned char c) { return c < ' '; }, ' ');
    lines->push_back("heights|" + table.Row(i).GetString(key) + '|' + text);
  }
}

// All lines of RecordLines; the names of the height files go to `named`.
std::vector<std::string> LinesOf(TdatamoduleQvRfData& data, std::vector<std::string>* named) {
  std::vector<std::string> lines;
  for (const TableSpec& spec : TableCatalogue())
    if (spec.tag != kUnopenedTag) AddRecords(data.DataSet(spec.id), spec, &lines);
  AddHeights(data, &lines, named);
  std::ranges::sort(lines);
  return lines;
}

void LookInside(const std::string& path, Verdict* verdict) {
  OpenDatabase database(path);
  TdatamoduleQvRfData& data = *database.data;
  std::vector<std::string> named;
  std::string all;
  for (const std::string& line : LinesOf(data, &named))
    all += line + '\n';
  verdict->digest =
      std::to_string(QvPlatform::Crc32(all)) + "-" + std::to_string(std::ranges::count(all, '\n'));
  for (const std::string& name : ListStorageFiles(data.GetHeightsPrefix(), data.ResourceForm))
    if (std::ranges::find(named, name) == named.end()) verdict->strays.push_back("heights " + name);
}

std::string IntegrityOf(const std::string& file) {
  sqlite3* opened = nullptr;
  sqlite3_stmt* query = nullptr;
  std::string found;
  const std::string uri = "file:" + file + "?immutable=1";
  const int flags = SQLITE_OPEN_READONLY | SQLITE_OPEN_URI;
  const bool answers =
      sqlite3_open_v2(uri.c_str(), &opened, flags, nullptr) == SQLITE_OK &&
      sqlite3_prepare_v2(opened, "PRAGMA integrity_check(1)", -1, &query, nullptr) == SQLITE_OK &&
      sqlite3_step(query) == SQLITE_ROW;
  if (answers) {
    found = reinterpret_cast<const char*>(sqlite3_column_text(query, 0));
  } else {
    found = sqlite3_errmsg(opened);
  }
  sqlite3_finalize(query);
  sqlite3_close(opened);
  return found == "ok" ? found : fs::path(file).filename().string() + ": " + found;
}

void LookAtFiles(const std::string& path, Verdict* verdict) {
  const fs::path folder = IsContainer(path) ? fs::path(path).parent_path() : fs::path(path);
  for (const auto& entry : fs::directory_iterator(folder)) {
    const std::string file = entry.path().string();
    if (entry.path().filename().string().starts_with(".refframe-"))
      verdict->strays.push_back(entry.path().filename().string());
    const bool isTable = IsContainer(path) ? file == path : file.ends_with(".dat");
    if (isTable && verdict->integrity == "ok") verdict->integrity = IntegrityOf(file);
  }
}

}  // namespace

std::vector<std::string> RecordLines(const std::string& path) {
  OpenDatabase database(path);
  std::vector<std::string> named;
  return LinesOf(*database.data, &named);
}

Verdict Judge(const std::string& path) {
  Verdict verdict;
  try {
    LookInside(path, &verdict);
    const CommandResult check = RunCommandLine({"check", path});
    verdict.hasErrors = check.exitCode != 0;
    std::istringstream lines(check.output + check.errors);
    for (std::string line; std::getline(lines, line);)
      verdict.findings.push_back(line);
    LookAtFiles(path, &verdict);
  } catch (const std::exception& error) {
    verdict.refused = error.what();
  }
  return verdict;
}

}  // namespace refframe_faults
