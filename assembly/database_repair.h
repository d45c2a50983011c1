#pragma once

#include <functional>
#include <string>
#include <vector>

#include "database/data_module.h"

namespace QvRefSystem {

/// Copies the whole database into a new container of that path. Throws StorageError.
using DatabaseBackup = std::function<void(TdatamoduleQvRfData& data, const std::string& target)>;

/// How a database is repaired.
struct RepairOptions {
  /// Tells the steps and changes nothing.
  bool dryRun = false;
  /// Makes the backup. Must not be empty unless it is a dry run.
  DatabaseBackup backup;
};

/// What repair has done, or would do.
struct RepairReport {
  /// Each step in words, in the order in which they are done.
  std::vector<std::string> steps;
  /// Path of the backup that was made before; "" where nothing was changed.
  std::string backup;
};

/// Mends what has one right answer in an open database: removes rows of param_value that a record
/// which is gone has left, and repeated ones, merges records that say the same onto the lowest key
/// of them, and moves height files of no record to the backups. All else stays as it is.
///
/// A backup of the whole database comes first; the changes are one transaction, and files move once
/// it is committed. What is mended is looked up inside it, so that others may write meanwhile. No
/// table may be filtered. Throws StorageError or DataSetError with the tables as they were.
[[nodiscard]] RepairReport RepairDatabase(TdatamoduleQvRfData& data, const RepairOptions& options);

/// The path of the container into which repair backs up: beside the database, with "-before-repair"
/// behind its name, and a number where something stands there.
[[nodiscard]] std::string RepairBackupPath(const TdatamoduleQvRfData& data);

}  // namespace QvRefSystem
