#include "registry/database_making.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <vector>

#include "database/data_module.h"
#include "database/table_files.h"
#include "platform/storage/container.h"
#include "platform/storage/durable.h"
#include "platform/storage/left_journal.h"
#include "platform/storage/paths.h"
#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

namespace fs = std::filesystem;
using QvPlatform::detail::AsideFolder;
using QvPlatform::detail::Container;
using QvPlatform::detail::MoveToFreePlace;
using QvPlatform::detail::SyncFolder;

constexpr std::string_view kContainerExtension = ".qvdb";
// Name of the database within the folder in which it is made.
constexpr const char* kMade = "database";
// Stands beside it from the moment on in which its tables are moved into a folder, one by one.
constexpr const char* kDelivering = "delivering";

// Names of all tables that are opened, in the order of the catalogue.
std::vector<std::string> TableNames() {
  std::vector<std::string> names;
  for (const TableSpec& table : TableCatalogue()) {
    if (table.tag != kUnopenedTag) names.push_back(ExtractTableBaseName(table.streamName));
  }
  return names;
}

// The stream name of a table in a place.
std::string StreamName(const std::string& place, bool resourceForm, const std::string& table) {
  return resourceForm ? place + "." + table : place + "/" + table + ".dat";
}

// The path without what a data module puts behind it.
std::string PlainPath(const std::string& path, bool resourceForm) {
  std::string plain = QvPlatform::Trim(path);
  const char last = resourceForm ? '.' : '/';
  while (plain.size() > 1 && plain.back() == last)
    plain.pop_back();
  if (plain.empty()) throw std::runtime_error("no path is given for the database");
  return QvPlatform::detail::CanonicalPath(fs::absolute(plain).string());
}

// Throws std::runtime_error where one of the tables stands already.
void RequireNoDatabase(const std::string& path, bool resourceForm) {
  for (const std::string& table : TableNames()) {
    const std::string name = StreamName(path, resourceForm, table);
    if (StorageFileExists(name, resourceForm)) {
      throw std::runtime_error("there is a database already: " + name);
    }
  }
}

[[noreturn]] void TellTaken(const std::string& path) {
  throw std::runtime_error("there is a database already: another program has just made " + path);
}

[[noreturn]] void Fail(const std::string& path) {
  throw std::runtime_error("\"" + path + "\" cannot be made: " + std::strerror(errno));
}

// Makes a folder with those above it, and brings their names to the medium.
void MakeFolders(const fs::path& path) {
  if (path.empty() || fs::is_directory(path)) return;
  MakeFolders(path.parent_path());
  std::error_code error;
  fs::create_directory(path, error);
  if (error && !fs::is_directory(path)) {
    throw std::runtime_error("\"" + path.string() + "\" cannot be made: " + error.message());
  }
  SyncFolder(path.parent_path().string());
}

// A journal that could not be removed names the place where it stands: moved along it fits nothing.
void RequireNoJournals(const std::string& place) {
  for (const auto& entry : fs::directory_iterator(place)) {
    const std::string path = entry.path().string();
    if (!path.ends_with(".dat")) throw std::runtime_error("\"" + path + "\" cannot be removed");
  }
}

// Moves the tables that are still in `from`; false if the place of one is taken.
bool MoveTables(const std::string& from, const std::string& to, std::vector<std::string>* moved) {
  for (const std::string& table : TableNames()) {
    const std::string source = StreamName(from, false, table);
    if (!fs::exists(source)) continue;
    const std::string place = StreamName(to, false, table);
    if (!MoveToFreePlace(source, place)) {
      if (errno == EEXIST) return false;
      Fail(place);
    }
    moved->push_back(place);
  }
  SyncFolder(to);
  return true;
}

}  // namespace

DatabaseMaking::DatabaseMaking(const std::string& path, bool resourceForm,
                               QvPlatform::TUserInterface& ui)
    : target_(PlainPath(path, resourceForm)),
      resourceForm_(resourceForm),
      exists_(fs::exists(target_)) {
  if (resourceForm_ && !exists_ && !target_.ends_with(kContainerExtension)) {
    throw std::runtime_error("\"" + target_ +
                             "\" is no container; the name of a new one ends in \"" +
                             std::string(kContainerExtension) + "\"");
  }
  if (!resourceForm_ && exists_ && !fs::is_directory(target_)) {
    throw std::runtime_error("\"" + target_ + "\" is no folder");
  }
  // Tables are moved within one medium, into a folder that was there from within it.
  const std::string parent =
      exists_ && !resourceForm_ ? target_ : fs::path(target_).parent_path().string();
  MakeFolders(parent);
  ClearLeft(parent);
  RequireNoDatabase(target_, resourceForm_);
  SettleTarget(ui);
  aside_.emplace(parent);
  place_ = aside_->Path() + "/" + kMade;
  if (resourceForm_) place_ += kContainerExtension;
  if (!resourceForm_) MakeFolders(place_);
  MakeTables(ui);
}

void DatabaseMaking::ClearLeft(const std::string& parent) const {
  for (const std::string& left : AsideFolder::LeftIn(parent)) {
    const std::string made = left + "/" + kMade;
    const std::string first = TableNames().front();
    const bool begun = fs::exists(left + "/" + kDelivering) &&
                       !fs::exists(StreamName(made, false, first)) &&
                       fs::exists(StreamName(parent, false, first));
    std::vector<std::string> moved;
    if (begun) static_cast<void>(MoveTables(made, parent, &moved));
    std::error_code ignored;
    fs::remove_all(left, ignored);
  }
}

void DatabaseMaking::SettleTarget(QvPlatform::TUserInterface& ui) const {
  const auto tell = [&ui](const std::string& text) {
    ui.ShowMessage(QvPlatform::MessageKind::kPlain, text, QvPlatform::MessageButtons::kOk);
  };
  if (resourceForm_) {
    if (exists_) static_cast<void>(Container::Open(target_));
    if (!exists_) QvPlatform::detail::SettleOrphans(target_, tell);
    return;
  }
  for (const std::string& table : TableNames())
    QvPlatform::detail::SettleOrphans(StreamName(target_, false, table), tell);
}

void DatabaseMaking::MakeTables(QvPlatform::TUserInterface& ui) const {
  for (const TableSpec& table : TableCatalogue()) {
    if (table.tag == kUnopenedTag) continue;
    const std::string name =
        StreamName(place_, resourceForm_, ExtractTableBaseName(table.streamName));
    if (!CreateCatalogueTable(name, resourceForm_, table, ui)) {
      throw std::runtime_error("\"" + name + "\" cannot be made");
    }
  }
}

void DatabaseMaking::DeliverIntoFolder() const {
  RequireNoDatabase(target_, false);
  const std::string mark = aside_->Path() + "/" + kDelivering;
  if (!(std::ofstream(mark) << "\n")) Fail(mark);
  SyncFolder(aside_->Path());
  std::vector<std::string> moved;
  bool free = false;
  std::string reason;
  try {
    free = MoveTables(place_, target_, &moved);
  } catch (const std::exception& failure) {
    reason = failure.what();
  }
  if (free && reason.empty()) return;
  std::error_code ignored;
  for (const std::string& there : moved)
    fs::remove(there, ignored);
  if (!reason.empty()) throw std::runtime_error(reason);
  TellTaken(target_);
}

void DatabaseMaking::DeliverIntoContainer() const {
  const auto from = Container::Open(place_);
  const auto to = Container::Open(target_);
  // One transaction, which also keeps others from making the same tables meanwhile.
  QvPlatform::detail::WriteScope scope(to->Transactions());
  RequireNoDatabase(target_, true);
  for (const std::string& table : TableNames())
    to->Write(table, from->ReadTable(table));
  scope.Done(nullptr);
}

void DatabaseMaking::Deliver() {
  if (exists_) {
    resourceForm_ ? DeliverIntoContainer() : DeliverIntoFolder();
  } else if (resourceForm_) {
    if (!MoveToFreePlace(place_, target_)) errno == EEXIST ? TellTaken(target_) : Fail(target_);
  } else {
    RequireNoJournals(place_);
    SyncFolder(place_);
    // A folder takes the place of nothing, or of one that is empty.
    if (std::rename(place_.c_str(), target_.c_str()) != 0) {
      errno == ENOTEMPTY || errno == EEXIST ? TellTaken(target_) : Fail(target_);
    }
  }
  if (!exists_) SyncFolder(fs::path(target_).parent_path().string());
  aside_.reset();
}

}  // namespace QvRefSystem
