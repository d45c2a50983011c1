#include "platform/dbset/file_store.h"

#include <sys/stat.h>

#include <filesystem>

#include "platform/dbset/field_descriptions.h"
#include "platform/dbset/file_group.h"
#include "platform/storage/paths.h"

namespace QvPlatform::detail {

namespace {

namespace fs = std::filesystem;

/// Place of the change counter in the header of an SQLite file.
constexpr std::size_t kChangeCounterAt = 24;
constexpr const char* kKind = "table file";

Connection OpenTableFile(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
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
  // Behind the writer's lock of a group there is nobody who could have changed the layout.
  if (groupLink_ != nullptr) return;
  CheckFile(own_.Db(), kKind);
  SetHeader(HeaderOf(ReadFields(own_.Db(), kRecordTable)));
}

std::uint32_t FileStore::ChangeCounter() {
  const std::string header = own_.Db().ReadFileHeader("main");
  if (header.size() < kFileHeaderSize) return 0;
  std::uint32_t counter = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    counter = (counter << 8) | static_cast<unsigned char>(header[kChangeCounterAt + i]);
  }
  return counter;
}

void FileStore::NoteLoaded() {
  // What was read inside a group's transaction may still be undone.
  mirrors_ = !Link().Transactions().Active();
  if (mirrors_) counter_ = ChangeCounter();
}

void FileStore::OnCommitted() {
  ++counter_;
}

void FileStore::OnRolledBack() noexcept {
  mirrors_ = false;
  TellUndone();
}

std::string FileStore::StateNow() {
  struct stat status {};
  if (stat(path_.c_str(), &status) != 0) return {};
  return path_ + ':' + std::to_string(status.st_dev) + ':' + std::to_string(status.st_ino) + ':' +
         std::to_string(status.st_size) + ':' + std::to_string(status.st_mtim.tv_sec) + '.' +
         std::to_string(status.st_mtim.tv_nsec) + ':' + std::to_string(ChangeCounter());
}

std::string FileStore::MirroredState() {
  if (!mirrors_ || Link().Transactions().Active()) return {};
  try {
    const ReadScope scope(own_);
    // The first read takes the lock, and with it waits for a writer's end.
    static_cast<void>(own_.Db().QueryInteger("SELECT count(*) FROM sqlite_master"));
    return ChangeCounter() == counter_ ? StateNow() : std::string();
  } catch (const StorageError&) {
    return {};
  }
}

bool FileStore::TakeOver(const std::string& state, const TQvDbHeader& header) {
  const ReadScope scope(own_);
  static_cast<void>(own_.Db().QueryInteger("SELECT count(*) FROM sqlite_master"));
  if (state.empty() || StateNow() != state) return false;
  SetHeader(header);
  mirrors_ = true;
  counter_ = ChangeCounter();
  return true;
}

}  // namespace QvPlatform::detail
