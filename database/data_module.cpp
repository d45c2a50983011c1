#include "database/data_module.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <stdexcept>

#include "database/conversion.h"
#include "database/key_counters.h"
#include "database/moments.h"
#include "database/table_files.h"
#include "platform/dbset/fixed_record_file.h"
#include "platform/dbset/read_group.h"
#include "platform/dbset/write_group.h"
#include "platform/text/text.h"
#include "platform/ui/texts.h"

namespace QvRefSystem {

using QvPlatform::MessageButtons;
using QvPlatform::MessageKind;
using QvPlatform::QvDataBufferType;
using QvPlatform::SystemText;
using QvPlatform::TextId;
using QvPlatform::TQvDataBuffer;
using QvPlatform::TQvDataSet;

TdatamoduleQvRfData* datamoduleQvRfData = nullptr;

namespace {

constexpr char kSeparator = '/';

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

// The path as the database goes by it: a folder ends in a separator, a container in ".".
std::string NormalisedPath(const std::string& path, bool resourceForm) {
  std::string result = QvPlatform::Trim(path);
  const char last = resourceForm ? '.' : kSeparator;
  if (resourceForm ? (result.empty() || result.back() != last)
                   : (!result.empty() && result.back() != last)) {
    result += last;
  }
  return result;
}

// A file under a table's name that is another table is refused here, not met later at a field that
// it lacks. An older layout of the reference systems, without heights and what follows them, is no
// foreign table.
void RequireFields(const TableSpec& table, TQvDataSet& dataSet) {
  const std::string kind = QvPlatform::KindOfTable(dataSet);
  if (!kind.empty() && kind != ExtractTableBaseName(table.streamName)) {
    throw std::runtime_error("it is the table " + Quoted(kind) + " under another name");
  }
  for (const FieldSpec& field : table.fields) {
    if (table.id == TableId::kRefSystem && field.name == "VERT_SYSTEM_AUTOKEY") return;
    QvPlatform::TField* found = dataSet.FindField(field.name);
    if (found == nullptr) {
      throw std::runtime_error("the table has no field " + std::string(field.name));
    }
    if (found->Definition().type != field.type) {
      throw std::runtime_error("field " + std::string(field.name) + " is of another type");
    }
  }
}

}  // namespace

TdatamoduleQvRfData::TdatamoduleQvRfData(QvPlatform::TUserInterface& ui,
                                         ProcessorMaker makeProcessors)
    : ui_(ui), makeProcessors_(std::move(makeProcessors)) {
  for (const TableSpec& table : TableCatalogue()) {
    TQvDataBuffer& buffer = DataBuffer(table.id);
    buffer.Tag = table.tag;
    buffer.StreamName = table.streamName;
    if (table.sortField >= 0) buffer.SetSortField(table.sortField, false, true);
  }
}

TdatamoduleQvRfData::~TdatamoduleQvRfData() {
  CloseDatabase();
}

TQvDataSet& TdatamoduleQvRfData::DataSet(TableId id) {
  switch (id) {
#define REFFRAME_TABLE_CASE(stem) \
  case TableId::k##stem:          \
    return dataset##stem;
    REFFRAME_TABLES(REFFRAME_TABLE_CASE)
#undef REFFRAME_TABLE_CASE
    case TableId::kNone:
      break;
  }
  throw std::out_of_range("no such table");
}

TQvDataBuffer& TdatamoduleQvRfData::DataBuffer(TableId id) {
  return *DataSet(id).DataBuff;
}

QvPlatform::TDataSource& TdatamoduleQvRfData::Source(TableId id) {
  switch (id) {
#define REFFRAME_TABLE_CASE(stem) \
  case TableId::k##stem:          \
    return datasrc##stem;
    REFFRAME_TABLES(REFFRAME_TABLE_CASE)
#undef REFFRAME_TABLE_CASE
    case TableId::kNone:
      break;
  }
  throw std::out_of_range("no such table");
}

std::vector<TQvDataSet*> TdatamoduleQvRfData::WritableTables() {
  return {&datasetAngularUnit,   &datasetLinearUnit,       &datasetScaleUnit,
          &datasetPrimeMeridian, &datasetEllipsoid,        &datasetDatumShift,
          &datasetDatum,         &datasetMapProj,          &datasetRefSystem,
          &datasetParamValue,    &datasetVerticalRefSystem};
}

std::vector<TQvDataSet*> TdatamoduleQvRfData::OpenedTables() {
  std::vector<TQvDataSet*> tables;
  for (const TableSpec& table : TableCatalogue()) {
    if (table.tag != kUnopenedTag) tables.push_back(&DataSet(table.id));
  }
  return tables;
}

bool TdatamoduleQvRfData::HasChanged() {
  return !NotActive && std::ranges::any_of(OpenedTables(), [](const TQvDataSet* table) {
    return !table->GetActive() || table->HasMoved();
  });
}

bool TdatamoduleQvRfData::Refresh() {
  const std::vector<TQvDataSet*> tables = OpenedTables();
  const bool busy = std::ranges::any_of(tables, [](const TQvDataSet* table) {
    return table->ControlsDisabled() ||
           (table->GetActive() && table->State() != QvPlatform::DataSetState::kBrowse);
  });
  if (busy || !HasChanged()) return false;
  for (const TableSpec& table : TableCatalogue()) {
    if (table.tag != kUnopenedTag && !DataSet(table.id).GetActive()) OpenTable(table);
  }
  const QvPlatform::TQvReadGroup moment(tables);
  return true;
}

void TdatamoduleQvRfData::OpenTable(const TableSpec& table) {
  DataSet(table.id).Open();
  RequireFields(table, DataSet(table.id));
}

bool TdatamoduleQvRfData::OpenTables(std::string* currentTable) {
  for (const TableSpec& table : TableCatalogue()) {
    TQvDataBuffer& buffer = DataBuffer(table.id);
    if (buffer.Tag == kUnopenedTag) continue;
    buffer.SetDataBufferType(ResourceForm ? QvDataBufferType::kResource
                                          : QvDataBufferType::dtFileStream);
    // A container knows a table by the part of its name behind the last ".".
    const std::string name =
        ExtractTableBaseName(StorageShortName(std::string(table.streamName), false));
    *currentTable = ResourceForm ? name : name + ".dat";
    buffer.StreamName = DatabasePath + *currentTable;
    if (StorageFileIsAbsent(buffer.StreamName, ResourceForm)) {
      if (!CreateMissingTable(buffer.StreamName, ResourceForm, table.tag, ui_)) return false;
      ui_.ShowMessage(MessageKind::kWarning,
                      SystemText(TextId::kTableMadeAnew) + " " + Quoted(*currentTable),
                      MessageButtons::kOk);
    }
    OpenTable(table);
    currentTable->clear();
  }
  return true;
}

void TdatamoduleQvRfData::ReportOpening(const std::string& path, const std::string& currentTable,
                                        const std::string& reason) {
  lastError_ = reason;
  const bool ofTable = !currentTable.empty();
  ui_.ShowMessage(MessageKind::kError,
                  SystemText(ofTable ? TextId::kCannotOpenTable : TextId::kCannotOpenDatabase) +
                      " " + Quoted(ofTable ? currentTable : path),
                  MessageButtons::kOk);
}

bool TdatamoduleQvRfData::OpenDatabase(const std::string& path, signed char dialogMode,
                                       bool resourceForm) {
  if (DatabasePath.empty()) {
    NotActive = true;
    return false;
  }
  ResourceForm = resourceForm;
  lastError_.clear();
  bool opened = false;
  std::string currentTable;
  try {
    DatabasePath = NormalisedPath(path, resourceForm);
    opened = OpenTables(&currentTable);
    if (opened && !HasVerticalFields()) opened = ConvertDatabase();
    if (opened) RaiseNewCounters([this](TableId id) -> TQvDataSet& { return DataSet(id); });
    if (opened) processors_ = makeProcessors_(*this);
    if (opened) WarnOfOlderTables();
  } catch (const std::exception& error) {
    opened = false;
    DropProcessors();
    ReportOpening(path, currentTable, QvPlatform::ReasonOf(error));
  }
  NotActive = !opened;
  DialogMode = dialogMode;
  return opened;
}

void TdatamoduleQvRfData::WarnOfOlderTables() {
  if (TablesOfOlderMoments(*this).empty()) return;
  // Another program may have written while one table after the other was opened.
  const QvPlatform::TQvReadGroup moment(OpenedTables());
  std::string files;
  for (const std::string& file : TablesOfOlderMoments(*this))
    files += (files.empty() ? " " : ", ") + file;
  if (files.empty()) return;
  ui_.ShowMessage(MessageKind::kWarning, SystemText(TextId::kOlderTables) + files,
                  MessageButtons::kOk);
}

void TdatamoduleQvRfData::CloseDatabase() {
  // Processors go first: they hold nothing, but look at the tables.
  DropProcessors();
  for (const TableSpec& table : TableCatalogue()) {
    DataBuffer(table.id).Close();
    DataSet(table.id).Close();
  }
  NotActive = true;
}

void TdatamoduleQvRfData::DropProcessors() {
  processors_.reset();
#define REFFRAME_PROCESSOR_GONE(stem, type) stem##Processor = nullptr;
  REFFRAME_OBJECT_TYPES(REFFRAME_PROCESSOR_GONE)
#undef REFFRAME_PROCESSOR_GONE
  Processors.fill(nullptr);
}

std::string TdatamoduleQvRfData::GetDatabaseRoot() const {
  const std::string& name = databufAngularUnit.StreamName;
  if (ResourceForm) return name.substr(0, name.rfind('.') + 1);
  const std::filesystem::path expanded = std::filesystem::absolute(name).lexically_normal();
  return expanded.parent_path().string() + kSeparator;
}

std::string TdatamoduleQvRfData::GetHeightsPrefix() const {
  return GetDatabaseRoot() + "Heights" + (ResourceForm ? '.' : kSeparator);
}

std::string TdatamoduleQvRfData::GetBackupPrefix() const {
  return GetDatabaseRoot() + "Backup" + (ResourceForm ? '.' : kSeparator);
}

bool TdatamoduleQvRfData::HasVerticalFields() {
  return datasetRefSystem.FindField("VERT_SYSTEM_AUTOKEY") != nullptr &&
         datasetRefSystem.FindField("VERT_SYSTEM_CODE") != nullptr;
}

std::string TdatamoduleQvRfData::CopyToBackups(const std::string& name, bool resourceForm) const {
  const std::string target =
      MakeUniqueStorageName(GetBackupPrefix() + StorageShortName(name, resourceForm), resourceForm);
  WriteStorageFile(target, resourceForm, ReadStorageFile(name, resourceForm));
  return target;
}

std::string TdatamoduleQvRfData::BackupTable(const std::string& name, bool resourceForm) const {
  try {
    return CopyToBackups(name, resourceForm);
  } catch (const std::exception&) {
    return {};
  }
}

bool TdatamoduleQvRfData::ConvertDatabase() {
  // Every writer takes the lock of this table. Who has waited for another one's conversion finds
  // the table in the current layout.
  QvPlatform::TQvWriteGroup lock({&datasetParamValue});
  databufRefSystem.Close();
  datasetRefSystem.Close();
  datasetRefSystem.Open();
  if (HasVerticalFields()) return true;
  const std::string name = databufRefSystem.StreamName;
  RefSystemConversion conversion(datasetRefSystem, datasetInternalService, ui_);
  std::string backup;
  try {
    backup = CopyToBackups(name, ResourceForm);
  } catch (const QvPlatform::StorageError& error) {
    lastError_ = error.what();
    return false;
  }
  const bool converted =
      conversion.Run(backup, GetBackupPrefix() + StorageShortName(name, ResourceForm));
  if (converted) lock.Commit();
  return converted;
}

}  // namespace QvRefSystem
