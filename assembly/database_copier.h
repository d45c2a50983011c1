#pragma once

#include <map>
#include <string>
#include <vector>

#include "assembly/database_copy.h"

namespace QvRefSystem {

/// Fills a new place with the contents of an open database.
class DatabaseCopier {
 public:
  /// `data` is open, and outlives this; nothing stands at `target`.
  DatabaseCopier(TdatamoduleQvRfData& data, DatabasePlace target);

  /// Copies everything, opens the copy and looks through it. Throws StorageError.
  [[nodiscard]] CopyNotes Run();

 private:
  void CopyAll();
  void CopyTables();
  void CopyBackups();
  void CopyBackup(const std::string& name, bool isTable);
  void CopyHeights();
  void CopyHeightFile(const std::string& name, const std::string& from);
  void TellLeftFiles();
  void FinishCopy();
  void RenameHeights(TdatamoduleQvRfData& copy) const;
  [[nodiscard]] std::string TargetPrefix(const char* folder) const;

  TdatamoduleQvRfData& data_;
  const DatabasePlace target_;
  CopyNotes notes_;
  /// All height files that records name, each with its name in the copy; "" for one that is not in
  /// it.
  std::map<std::string, std::string> heights_;
};

}  // namespace QvRefSystem
