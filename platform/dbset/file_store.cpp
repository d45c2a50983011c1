#include "platform/dbset/file_store.h"

#include <filesystem>

#include "platform/dbset/field_descriptions.h"
#include "platform/dbset/file_group.h"
#include "platform/storage/paths.h"

namespace QvPlatform::detail {

namespace {

namespace fs = std::filesystem;

constexpr const char* kKind = "table file";

Connection OpenTableFile(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (error && status.type() != fs::file_type::not_found) {
    throw StorageError("\"" + path + "\" cannot be looked at: " + error.message());
  }
  if (!fs::exists(status)) throw StorageError("\"" + path + "\": there is no such file");
  if (!fs::is_regular_file(status)) {
    throw StorageError("\"" + path + "\" is no table file but a folder or a device");
  }
  Connection connection = Connection::OpenFile(path);
  CheckMark(connection, kTableFileId, kKind);
  connection.Execute("PRAGMA synchronous=EXTRA");
  return connection;
}

}  // namespace

FileStore::FileStore(const std::string& path)
    : path_(CanonicalPath(path)),
      own_(OpenTableFile(path_), {"main"}),
      ownLink_(own_, "main", kRecordTable) {}

FileStore::~FileStore() {
  own_.Leave(this);
  if (group_ == nullptr) return;
  // The connection that the group shares would keep this file open.
  if (groupLink_ != nullptr) group_->Transactions().Leave(this);
  group_->Close();
}

void FileStore::SetGroup(std::shared_ptr<FileGroup> group) {
  // A file belongs to one shared connection at a time, so that closing that one lets go of it.
  if (group_ != nullptr && group_ != group) group_->Close();
  group_ = std::move(group);
}

void FileStore::CheckSound() {
  // Behind the writer's lock of a group there is nobody who could change the layout.
  if (groupLink_ == nullptr) CheckFile(own_.Db(), kKind);
  SetHeader(HeaderOf(ReadFields(Link().Transactions().Db(), kRecordTable, Link().Schema())));
}

}  // namespace QvPlatform::detail
