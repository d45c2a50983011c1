#pragma once

#include <string>

namespace QvPlatform::detail {

/// Holds SQLite's journals to the places of the databases that this process has open. A journal
/// says by name which other files belong to its transaction, and SQLite opens and deletes what it
/// finds named there: a journal that a stranger has made could name anything.
class JournalFence {
 public:
  /// A database in this folder is open from here to the end of the object.
  explicit JournalFence(std::string folder);
  ~JournalFence();
  JournalFence(const JournalFence&) = delete;
  JournalFence& operator=(const JournalFence&) = delete;

  /// Whether a path has the name of a journal or a super-journal, lies in the folder of an open
  /// database, and leads to a plain file or to none, by no symbolic link.
  [[nodiscard]] static bool Lets(const std::string& path);

 private:
  std::string folder_;
};

}  // namespace QvPlatform::detail
