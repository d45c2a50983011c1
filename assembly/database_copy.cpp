#include "assembly/database_copy.h"

#include <filesystem>
#include <memory>

#include "assembly/database_copier.h"
#include "assembly/processor_set.h"
#include "database/storage_files.h"
#include "platform/storage/store_lock.h"
#include "platform/storage/work_folder.h"

namespace QvRefSystem {
namespace {

namespace fs = std::filesystem;
using QvPlatform::StorageError;
using QvPlatform::StoreLock;
using QvPlatform::WorkFolder;

constexpr std::string_view kContainerExtension = ".qvdb";

bool Stands(const std::string& path) {
  std::error_code error;
  return fs::symlink_status(path, error).type() != fs::file_type::not_found;
}

void RequireFree(const std::string& path) {
  if (Stands(path)) throw StorageError("\"" + path + "\" is there already");
}

bool IsSameFile(const std::string& one, const std::string& other) {
  std::error_code error;
  return fs::equivalent(one, other, error);
}

// The path of an open database.
std::string PathOf(const TdatamoduleQvRfData& data) {
  std::string root = data.GetDatabaseRoot();
  root.pop_back();
  return root;
}

// Makes a copy out of sight and gives its path.
std::string MakeAside(TdatamoduleQvRfData& data, const DatabasePlace& target,
                      const WorkFolder& aside, CopyNotes* notes) {
  const std::string made = aside.Path(fs::path(target.path).filename().string());
  *notes = DatabaseCopier(data, {made, target.resourceForm}).Run();
  aside.Sync();
  return made;
}

void RequireReplaceable(const TdatamoduleQvRfData& data, const std::string& target) {
  if (IsSameFile(PathOf(data), target)) {
    throw StorageError("\"" + target + "\" is the database itself");
  }
  if (!fs::is_regular_file(target)) {
    throw StorageError("\"" + target + "\" is no file that could be replaced");
  }
}

// All files of a database that hold records.
std::vector<std::string> RecordFiles(const DatabasePlace& place) {
  if (place.resourceForm) return {place.path};
  std::vector<std::string> files;
  for (const TableSpec& table : TableCatalogue()) {
    if (!table.streamName.empty())
      files.push_back(place.path + "/" + std::string(table.streamName));
  }
  return files;
}

// A free name beside for the database that gives up its place.
std::string KeptName(const DatabasePlace& place) {
  const std::string extension = place.resourceForm ? std::string(kContainerExtension) : "";
  const std::string stem =
      place.path.substr(0, place.path.size() - extension.size()) + "-before-restore";
  std::string name = stem + extension;
  for (int number = 2; Stands(name); ++number)
    name = stem + "-" + std::to_string(number) + extension;
  return name;
}

// A journal that could not be taken back belongs to the database that it is of.
void MoveLeftJournals(const DatabasePlace& target, const std::string& kept) {
  if (!target.resourceForm) return;
  for (const char* ending : {"-journal", "-wal", "-shm"}) {
    if (Stands(target.path + ending))
      QvPlatform::TakeFreePlace(target.path + ending, kept + ending);
  }
}

// What stands in the place is moved beside by two steps that leave a whole database there at any
// moment.
std::string TakePlace(const std::string& made, const DatabasePlace& target) {
  if (!Stands(target.path)) {
    QvPlatform::TakeFreePlace(made, target.path);
    return {};
  }
  const StoreLock lock(RecordFiles(target));
  const std::string kept = KeptName(target);
  QvPlatform::ExchangePlaces(made, target.path);
  QvPlatform::TakeFreePlace(made, kept);
  MoveLeftJournals(target, kept);
  return kept;
}

}  // namespace

bool IsContainerPath(std::string_view path) {
  return path.ends_with(kContainerExtension);
}

DatabasePlace PlaceOf(const std::string& path) {
  std::string plain = path;
  while (plain.size() > 1 && plain.ends_with('/'))
    plain.pop_back();
  const bool resourceForm = IsContainerPath(plain);
  return {std::move(plain), resourceForm};
}

std::unique_ptr<TdatamoduleQvRfData> OpenPlace(const DatabasePlace& place,
                                               QvPlatform::TUserInterface& ui) {
  if (!Stands(place.path)) throw StorageError("\"" + place.path + "\": there is no such database");
  std::unique_ptr<TdatamoduleQvRfData> data = MakeDataModule(ui);
  data->DatabasePath = place.path;
  if (!data->OpenDatabase(place.path, kFullMode, place.resourceForm)) {
    const std::string& reason = data->LastError();
    throw StorageError("\"" + place.path + "\" does not open" +
                       (reason.empty() ? "" : ": " + reason));
  }
  return data;
}

CopyNotes CopyDatabase(TdatamoduleQvRfData& data, const DatabasePlace& target) {
  RequireFree(target.path);
  CopyNotes notes;
  const WorkFolder aside(QvPlatform::FolderOf(target.path));
  QvPlatform::TakeFreePlace(MakeAside(data, target, aside, &notes), target.path);
  return notes;
}

CopyNotes BackupDatabase(TdatamoduleQvRfData& data, const std::string& target, CopyPlace place) {
  const DatabasePlace container = PlaceOf(target);
  if (!container.resourceForm) {
    throw StorageError("\"" + target + "\": the name of a backup ends in \"" +
                       std::string(kContainerExtension) + "\"");
  }
  const bool replaces = place == CopyPlace::kMayReplace && Stands(target);
  if (!replaces) return CopyDatabase(data, container);
  RequireReplaceable(data, target);
  CopyNotes notes;
  const WorkFolder aside(QvPlatform::FolderOf(target));
  const std::string made = MakeAside(data, container, aside, &notes);
  const StoreLock lock(RecordFiles(container));
  QvPlatform::ExchangePlaces(made, target);
  return notes;
}

RestoreReport RestoreDatabase(const std::string& backup, const DatabasePlace& target,
                              QvPlatform::TUserInterface& ui) {
  if (IsSameFile(backup, target.path)) {
    throw StorageError("\"" + backup + "\" is the database itself");
  }
  RestoreReport report;
  const std::unique_ptr<TdatamoduleQvRfData> data = OpenPlace(PlaceOf(backup), ui);
  const WorkFolder aside(QvPlatform::FolderOf(target.path));
  const std::string made = MakeAside(*data, target, aside, &report.notes);
  report.kept = TakePlace(made, target);
  return report;
}

}  // namespace QvRefSystem
