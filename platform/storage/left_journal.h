#pragma once

#include <functional>
#include <string>

#include "platform/storage/journal_file.h"

/// What an interrupted writer has left beside a file, looked at before SQLite does: it would take
/// any journal under the right name for that of the file.
namespace QvPlatform::detail {

/// Why a journal must not be handed to SQLite.
enum class JournalFault {
  /// It is that of the file, or its writer is still alive.
  kNone,
  /// It belongs to a change over several files that was interrupted while they lay elsewhere.
  kElsewhere,
  /// It names something that is no super-journal.
  kForeignName,
  /// It is that of another file, or of another state of the file.
  kMisfit,
};

/// Judges a journal that was read as that of the file of this path, which must not be that of a
/// link, as if nobody were writing. Throws StorageError where the file cannot be read.
[[nodiscard]] JournalFault JudgeJournal(const JournalFile& journal, const std::string& path);

/// Judges what stands under the name of a file's journal. Throws StorageError where one of both
/// cannot be read, or the journal is no plain file.
[[nodiscard]] JournalFault JudgeLeftJournal(const std::string& path);

/// Throws StorageError, which names the file, its journal and what helps, for a journal that is not
/// that of the file.
void CheckLeftJournal(const std::string& path);

/// Lets SQLite undo what a killed writer left half done in the file, so that the file can be
/// replaced without its rollback journal coming down on the new content. A file under the
/// journal's name that is no journal stays.
void SettleLeftJournal(const std::string& path) noexcept;

/// Settles what is left under the names of a database's logs and journals while the database itself
/// is not there: a rollback journal, which means nothing without it, is removed; a write-ahead log,
/// which holds somebody's records, is set aside. Each step is told in a whole sentence. Throws
/// StorageError.
void SettleOrphans(const std::string& path, const std::function<void(const std::string&)>& tell);

/// Gives a file a free name of its own, made by ".left" behind the present one, and returns that.
/// Throws StorageError.
[[nodiscard]] std::string SetAside(const std::string& path);

}  // namespace QvPlatform::detail
