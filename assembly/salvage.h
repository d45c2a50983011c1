#pragma once

#include <string>
#include <vector>

#include "assembly/database_copy.h"

namespace QvRefSystem {

/// What became of a table of a damaged database.
struct SalvagedCount {
  /// The table, by the name of its file without the extension.
  std::string table;
  /// Records that are in the new database.
  int records = 0;
  /// What is lost, in words; "" where everything was read.
  std::string lost;
};

/// What was read of a damaged database.
struct SalvageReport {
  /// Every table that a database needs, in the order of the catalogue.
  std::vector<SalvagedCount> tables;
  /// What else is lost or stays behind: sentences for its owner.
  CopyNotes notes;
  /// Whether nothing is lost.
  bool whole = true;
};

/// Reads what can be read of the tables and height files of a database that may not open any more,
/// and makes a new one of it. Records keep their keys and versions; what cannot be proven to be a
/// record of its table is left out. No new object gets a key that a lost one may have had. The
/// damaged files are only read. The backups of tables stay behind. Throws StorageError where there
/// is nothing to read, or where the new database cannot be made or would take a place that is not
/// free; nothing is then made.
[[nodiscard]] SalvageReport SalvageDatabase(const DatabasePlace& damaged,
                                            const DatabasePlace& target,
                                            QvPlatform::TUserInterface& ui);

}  // namespace QvRefSystem
