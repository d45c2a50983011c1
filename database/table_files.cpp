#include "database/table_files.h"

#include <memory>

#include "database/storage_files.h"
#include "platform/dbset/fixed_record_file.h"

namespace QvRefSystem {
namespace {

// The layout that CreateTable makes under a tag; null for tables that are only ever delivered.
const TableSpec* CreatableTable(int tag) {
  switch (tag) {
    case 1:
      return &TableOf(TableId::kRefSystem);
    case 16:
      return &TableOf(TableId::kVerticalRefSystem);
    case kTransformCreateTag:
      return &TableOf(TableId::kRefsystemTransform);
    default:
      return nullptr;
  }
}

using QvPlatform::QvOpenMode;

// A null table still tries the target, so that an unwritable place is told; nothing is left there.
bool CreateFrom(const std::string& name, bool resourceForm, const TableSpec* table,
                QvPlatform::TUserInterface& ui, QvOpenMode mode = QvOpenMode::kCreate) {
  auto stream = MakeStream(resourceForm);
  if (!stream->Open(name, mode)) {
    TellCannotCreate(name, resourceForm, ui);
    return false;
  }
  if (table == nullptr) return false;
  const QvPlatform::TQvDbHeader header = HeaderOf(*table);
  QvPlatform::TFixedRecordFile file(header, header.GetRecordSize());
  file.SetKind(ExtractTableBaseName(table->streamName));
  if (!file.CreateNew(stream.get(), true)) throw QvPlatform::StorageError(file.LastError());
  (void)stream.release();  // The file owns it now.
  file.Close();
  return true;
}

}  // namespace

bool CreateCatalogueTable(const std::string& name, bool resourceForm, const TableSpec& table,
                          QvPlatform::TUserInterface& ui) {
  return CreateFrom(name, resourceForm, &table, ui);
}

bool CreateMissingTable(const std::string& name, bool resourceForm, int tag,
                        QvPlatform::TUserInterface& ui) {
  return CreateFrom(name, resourceForm, CreatableTable(tag), ui, QvOpenMode::kCreateNew);
}

bool CreateTable(const std::string& name, bool resourceForm, int tag,
                 QvPlatform::TUserInterface& ui) {
  try {
    return CreateFrom(name, resourceForm, CreatableTable(tag), ui);
  } catch (const QvPlatform::StorageError&) {
    return false;
  }
}

}  // namespace QvRefSystem
