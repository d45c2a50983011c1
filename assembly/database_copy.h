#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "database/data_module.h"

/// Databases as a whole: copied from one form to the other, backed up and put back.
namespace QvRefSystem {

/// Where a database lies: a folder, or a container, whose name ends in ".qvdb".
struct DatabasePlace {
  /// Path of the folder or of the container's file.
  std::string path;
  /// True for a container.
  bool resourceForm = false;
};

/// Whether the path names a container rather than a folder.
[[nodiscard]] bool IsContainerPath(std::string_view path);
/// The place that a path names, without what separates it from the names inside.
[[nodiscard]] DatabasePlace PlaceOf(const std::string& path);
/// Opens the database of that place. Throws StorageError with the reason where it does not open, or
/// where there is none.
[[nodiscard]] std::unique_ptr<TdatamoduleQvRfData> OpenPlace(const DatabasePlace& place,
                                                             QvPlatform::TUserInterface& ui);

/// What a copy is to do with what stands in its place.
enum class CopyPlace { kMustBeFree, kMayReplace };

/// What a copy is not, or has under another name: sentences for its owner. Empty for most.
using CopyNotes = std::vector<std::string>;

/// Copies an open database to a place where nothing stands yet: all tables with keys, versions,
/// stamps and the counters of their keys, the height files that records name, and the backups of
/// tables. What is copied is the database of one moment, however many write meanwhile; missing
/// folders of the path are made; the copy takes its place when it is whole and has been opened.
///
/// Of two height files whose names differ by the case of ASCII letters alone the second gets
/// another name in a container, and its record says so. A height file that is missing is told in
/// the notes; files that no record names stay behind and are told too. Throws StorageError, with
/// nothing made.
[[nodiscard]] CopyNotes CopyDatabase(TdatamoduleQvRfData& data, const DatabasePlace& target);

/// The same into a container, which may replace another one where that is allowed; never the
/// database itself.
CopyNotes BackupDatabase(TdatamoduleQvRfData& data, const std::string& target,
                         CopyPlace place = CopyPlace::kMustBeFree);

/// What became of a database that was put back.
struct RestoreReport {
  /// What the restored database lacks.
  CopyNotes notes;
  /// The path under which the former database stands now; "" if there was none.
  std::string kept;
};

/// Puts a backup (any database) in the place of a database, which keeps its contents under a name
/// beside; a folder can be put back as a container and the other way round. Throws StorageError
/// where the backup does not open, or while another program writes to the database; all then is as
/// it was.
[[nodiscard]] RestoreReport RestoreDatabase(const std::string& backup, const DatabasePlace& target,
                                            QvPlatform::TUserInterface& ui);

}  // namespace QvRefSystem
