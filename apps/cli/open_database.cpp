#include "apps/cli/open_database.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "apps/cli/command_error.h"
#include "assembly/database_copy.h"
#include "assembly/processor_set.h"
#include "platform/text/text.h"

namespace RefframeCli {

namespace fs = std::filesystem;
using QvPlatform::RowMatch;
using QvPlatform::RowView;
using QvPlatform::TQvDataSet;
using QvRefSystem::ObjectDescriptor;
using QvRefSystem::ParamTag;
using QvRefSystem::TableOf;
using QvRefSystem::TableSpec;
using QvRefSystem::TQvRfDataProcessor;

namespace {

constexpr std::string_view kContainerSuffix = ".qvdb";
constexpr std::string_view kCodePrefix = "epsg:";
constexpr std::string_view kNamePrefix = "name:";

// A path of the wrong kind is told here: the table engine would only say that a table is missing.
void RequirePlace(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::exists(status)) throw CommandError(path + ": there is no such database");
  if (IsContainer(path) && fs::is_directory(status)) {
    throw CommandError(path + ": is a folder, and a container is one file");
  }
  if (!IsContainer(path) && !fs::is_directory(status)) {
    throw CommandError(path + ": is no folder, and the name of a container ends in \"" +
                       std::string(kContainerSuffix) + "\"");
  }
}

// The table that has to be delivered and is not there; "" if all are.
std::string MissingTable(const std::string& path) {
  const bool container = IsContainer(path);
  const std::string root = path + (container ? "." : "/");
  for (const TableSpec& table : QvRefSystem::TableCatalogue()) {
    if (table.tag == QvRefSystem::kUnopenedTag) continue;
    std::string name(table.streamName);
    if (container) name = QvRefSystem::ExtractTableBaseName(name);
    if (!QvRefSystem::StorageFileExists(root + name, container)) {
      return name;
    }
  }
  return "";
}

// Keys of the records that a match finds, each once, in table order.
std::vector<int> KeysOf(const TQvDataSet& dataSet, const RowMatch& match, int keyField) {
  std::vector<int> keys;
  for (const RowView row : dataSet.FindAll({match}))
    keys.push_back(row.GetInteger(keyField));
  return keys;
}

// Keys of the objects of a type whose exchange code is `code`. Rows of codes outlive their owner,
// so one without it counts for nothing.
std::vector<int> KeysOfCode(QvRefSystem::TdatamoduleQvRfData& data, const ObjectDescriptor& type,
                            int code) {
  TQvDataSet& values = data.datasetParamValue;
  const auto field = [&](const char* name) { return values.FieldByName(name).GetIndex(); };
  TQvDataSet& owners = data.DataSet(type.table);
  const int ownerKey = owners.FieldByName(TableOf(type.table).keyField).GetIndex();
  std::vector<int> keys;
  for (const RowView row :
       values.FindAll({RowMatch::Text(field("VALUE"), std::to_string(code)),
                       RowMatch::Integer(field("PARAM_TAG"), static_cast<int>(ParamTag::kGeoTiff)),
                       RowMatch::Integer(field("OWNER_CONTENT"), static_cast<int>(type.type))})) {
    const int key = row.GetInteger(field("OWNER_ID"));
    if (owners.FindFirst({RowMatch::Integer(ownerKey, key)}) && !std::ranges::count(keys, key)) {
      keys.push_back(key);
    }
  }
  return keys;
}

bool ParsePositive(std::string_view text, int* number) {
  int parsed = 0;
  if (!QvPlatform::TextToInteger(text, &parsed) || parsed < 1) return false;
  *number = parsed;
  return true;
}

}  // namespace

bool EpsgCodeOf(std::string_view object, int* code) {
  return object.starts_with(kCodePrefix) && ParsePositive(object.substr(kCodePrefix.size()), code);
}

bool IsContainer(std::string_view path) {
  return QvRefSystem::IsContainerPath(path);
}

OpenedDatabase::OpenedDatabase(const std::string& path, TerminalInterface& ui)
    : data_(QvRefSystem::MakeDataModule(ui)) {
  RequirePlace(path);
  data_->DatabasePath = path;
  if (data_->OpenDatabase(path, QvRefSystem::kFullMode, IsContainer(path))) return;
  std::string reason = data_->LastError();
  if (reason.empty() && !ui.HasReported()) {
    const std::string missing = MissingTable(path);
    reason =
        missing.empty() ? "the database does not open" : "the table " + missing + " is missing";
  }
  throw CommandError(reason.empty() ? reason : path + ": " + reason);
}

TQvRfDataProcessor& OpenedDatabase::Processor(const ObjectDescriptor& type) {
  TQvRfDataProcessor* processor = QvRefSystem::ProcessorFor(*data_, static_cast<int>(type.type));
  if (processor == nullptr) {
    throw CommandError("this version only lists a " + std::string(type.typeName));
  }
  return *processor;
}

int OpenedDatabase::KeyOf(const ObjectDescriptor& type, const std::string& object) {
  int number = 0;
  if (ParsePositive(object, &number)) return number;
  std::vector<int> keys;
  if (object.starts_with(kNamePrefix)) {
    TQvDataSet& dataSet = data_->DataSet(type.table);
    const std::string name = object.substr(kNamePrefix.size());
    keys =
        KeysOf(dataSet,
               RowMatch::Folded(dataSet.FieldByName("NAME").GetIndex(), QvPlatform::FoldName(name)),
               dataSet.FieldByName(TableOf(type.table).keyField).GetIndex());
  } else if (EpsgCodeOf(object, &number)) {
    keys = KeysOfCode(*data_, type, number);
  } else {
    throw UsageError("\"" + object + "\" is no object: give a key, epsg:CODE or name:TEXT");
  }
  if (keys.size() <= 1) return keys.empty() ? 0 : keys.front();
  // To pick one of several silently could hand out another system than the one that was meant.
  std::string list;
  for (const int key : keys)
    list += (list.empty() ? "" : ", ") + std::to_string(key);
  throw CommandError(std::string(type.typeName) + " \"" + object + "\" is not one: the keys are " +
                     list);
}

TQvRfDataProcessor& OpenedDatabase::Locate(const ObjectDescriptor& type,
                                           const std::string& object) {
  TQvRfDataProcessor& processor = Processor(type);
  const int key = KeyOf(type, object);
  if (key < 1 || !processor.LocateKey(key)) {
    throw CommandError("there is no " + std::string(type.typeName) + " \"" + object + "\"");
  }
  return processor;
}

}  // namespace RefframeCli
