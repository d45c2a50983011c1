#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/dbset/table_link.h"

namespace QvPlatform::detail {

/// One connection to several table files, so that SQLite writes them in one transaction.
class FileGroup {
 public:
  /// `paths` have to be sorted and without doubles, so that all processes lock the files in one
  /// order. Throws std::logic_error for more files than SQLite takes together, StorageError where
  /// one cannot be opened.
  explicit FileGroup(const std::vector<std::string>& paths);

  /// Whether the group is open and spans just these paths, which are sorted.
  [[nodiscard]] bool IsFor(const std::vector<std::string>& paths) const;
  /// The connection, which is there until Close.
  [[nodiscard]] Session& Transactions() { return *session_; }
  /// The table in the file of this path, which has to be one of the group's; valid until Close.
  [[nodiscard]] TableLink* LinkTo(const std::string& path);
  /// Writes into the files of these paths, which the open transaction has changed, that they belong
  /// together. Throws StorageError.
  void NoteCommit(const std::vector<std::string>& changed);
  /// Gives up the connection, since one of the files is being closed.
  void Close();

 private:
  // The links hold statements of the session's connection, and go before it.
  std::unique_ptr<Session> session_;
  std::map<std::string, std::unique_ptr<TableLink>> links_;
};

}  // namespace QvPlatform::detail
