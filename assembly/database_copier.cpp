#include "assembly/database_copier.h"

#include <array>
#include <memory>
#include <optional>
#include <utility>

#include "database/height_storage.h"
#include "database/storage_files.h"
#include "platform/data/height_kind.h"
#include "platform/dbset/read_group.h"
#include "platform/storage/resource_group.h"
#include "platform/storage/resource_session.h"

namespace QvRefSystem {
namespace {

using QvPlatform::QvOpenMode;
using QvPlatform::RowView;
using QvPlatform::StorageError;
using QvPlatform::TQvDataSet;
using QvPlatform::TQvResourceGroup;
using QvPlatform::TQvResourceSession;

constexpr std::string_view kTableExtension = ".dat";
constexpr std::size_t kPiece = std::size_t{1} << 18;

void CopyStream(const std::string& from, bool fromResource, const std::string& to,
                bool toResource) {
  const auto source = MakeStream(fromResource);
  if (!source->Open(from, QvOpenMode::kRead)) throw StorageError(source->LastError());
  const auto target = CreateStream(to, toResource);
  if (target == nullptr) throw StorageError("\"" + to + "\" cannot be made");
  std::vector<char> piece(kPiece);
  while (const std::size_t count = source->Read(piece.data(), piece.size()))
    target->Write(piece.data(), count);
  target->Commit();
}

std::string Root(const DatabasePlace& place) {
  return place.path + (place.resourceForm ? "." : "/");
}

std::string TableFileName(const std::string& table, bool resourceForm) {
  return resourceForm ? table : table + std::string(kTableExtension);
}

}  // namespace

DatabaseCopier::DatabaseCopier(TdatamoduleQvRfData& data, DatabasePlace target)
    : data_(data), target_(std::move(target)) {}

std::string DatabaseCopier::TargetPrefix(const char* folder) const {
  return Root(target_) + folder + (target_.resourceForm ? '.' : '/');
}

CopyNotes DatabaseCopier::Run() {
  if (target_.resourceForm) {
    TQvResourceGroup group(target_.path);
    CopyAll();
    group.Commit();
  } else {
    CopyAll();
  }
  FinishCopy();
  return std::move(notes_);
}

void DatabaseCopier::CopyAll() {
  std::vector<TQvDataSet*> tables;
  for (const TableSpec& table : TableCatalogue())
    tables.push_back(&data_.DataSet(table.id));
  const QvPlatform::TQvReadGroup moment(tables);
  CopyTables();
  CopyBackups();
  CopyHeights();
}

void DatabaseCopier::CopyTables() {
  for (const TableSpec& table : TableCatalogue()) {
    if (table.streamName.empty()) continue;
    const std::string base = ExtractTableBaseName(table.streamName);
    const std::string from = data_.GetDatabaseRoot() + TableFileName(base, data_.ResourceForm);
    const bool mayLack = table.tag == kUnopenedTag;
    if (mayLack && !StorageFileExists(from, data_.ResourceForm)) continue;
    CopyStream(from, data_.ResourceForm, Root(target_) + TableFileName(base, target_.resourceForm),
               target_.resourceForm);
  }
}

void DatabaseCopier::CopyBackup(const std::string& name, bool isTable) {
  const bool wasFile = !data_.ResourceForm;
  std::string base = name;
  if (isTable && wasFile) base.resize(base.size() - kTableExtension.size());
  const std::string place =
      TargetPrefix("Backup") + (isTable ? TableFileName(base, target_.resourceForm) : base);
  CopyStream(data_.GetBackupPrefix() + name, data_.ResourceForm,
             MakeUniqueStorageName(place, target_.resourceForm), target_.resourceForm);
}

void DatabaseCopier::CopyBackups() {
  const std::string prefix = data_.GetBackupPrefix();
  if (data_.ResourceForm) {
    for (const std::string& name : TQvResourceSession::TablesBehind(prefix))
      CopyBackup(name, true);
  }
  for (const std::string& name : ListStorageFiles(prefix, data_.ResourceForm)) {
    // A whole database among the backups is a backup by itself, and would grow with every copy.
    if (IsContainerPath(name)) {
      notes_.push_back("the backup \"" + name + "\" stays behind");
    } else {
      CopyBackup(name, !data_.ResourceForm && name.ends_with(kTableExtension));
    }
  }
}

void DatabaseCopier::CopyHeightFile(const std::string& name, const std::string& from) {
  const std::string prefix = TargetPrefix("Heights");
  std::string to = prefix + name;
  // A container tells no ASCII letter from its capital, and a folder may be one that does not.
  if (StorageFileExists(to, target_.resourceForm)) {
    to = MakeUniqueStorageName(to, target_.resourceForm);
  }
  CopyStream(from, data_.ResourceForm, to, target_.resourceForm);
  heights_[name] = to.substr(prefix.size());
  if (heights_[name] == name) return;
  notes_.push_back("the height file \"" + name + "\" is \"" + heights_[name] +
                   "\" in the copy: another one has the same letters");
}

void DatabaseCopier::CopyHeights() {
  TQvDataSet& records = data_.datasetVerticalRefSystem;
  const int kind = records.FieldByName("VDATA_TYPE").GetIndex();
  const int file = records.FieldByName("VDATA_FILENAME").GetIndex();
  for (int position = 0; position < records.RecordCount(); ++position) {
    const RowView row = records.Row(position);
    const std::string& name = row.GetText(file);
    if (HeightKindOf(row.GetInteger(kind)) != HeightKind::kTable || heights_.contains(name)) {
      continue;
    }
    const std::optional<std::string> from = HeightStoragePath(data_, name);
    if (from && StorageFileExists(*from, data_.ResourceForm)) {
      CopyHeightFile(name, *from);
    } else {
      heights_[name] = "";
      notes_.push_back("the height file \"" + name + "\" is missing, and so in the copy");
    }
  }
  TellLeftFiles();
}

void DatabaseCopier::TellLeftFiles() {
  for (const std::string& name : ListStorageFiles(data_.GetHeightsPrefix(), data_.ResourceForm)) {
    if (heights_.contains(name)) continue;
    notes_.push_back("the height file \"" + name + "\" is that of no record and stays behind");
  }
}

void DatabaseCopier::RenameHeights(TdatamoduleQvRfData& copy) const {
  TQvDataSet& records = copy.datasetVerticalRefSystem;
  QvPlatform::TField& file = records.FieldByName("VDATA_FILENAME");
  for (records.First(); !records.Eof(); records.Next()) {
    const auto entry = heights_.find(file.AsString());
    if (entry == heights_.end() || entry->second.empty() || entry->second == entry->first) continue;
    records.Edit();
    file.SetString(entry->second);
    records.Post();
  }
}

// A copy that does not open, or has lost a record, takes nobody's place.
void DatabaseCopier::FinishCopy() {
  const std::unique_ptr<TdatamoduleQvRfData> copy = OpenPlace(target_, data_.Ui());
  for (const TableSpec& table : TableCatalogue()) {
    if (table.tag == kUnopenedTag) continue;
    if (copy->DataSet(table.id).RecordCount() == data_.DataSet(table.id).RecordCount()) continue;
    throw StorageError("\"" + target_.path + "\": the copy of " + std::string(table.streamName) +
                       " lacks records");
  }
  RenameHeights(*copy);
}

}  // namespace QvRefSystem
