#pragma once

#include <string>
#include <string_view>

namespace QvPlatform::detail {

/// What SQLite puts behind a database's path for its rollback journal.
constexpr std::string_view kJournalEnding = "-journal";
/// What it puts there for the write-ahead log and its index, which none of our files has.
constexpr std::string_view kLogEnding = "-wal";
constexpr std::string_view kLogIndexEnding = "-shm";

/// Whether a path ends like that of a rollback journal of some database.
[[nodiscard]] bool IsJournalName(std::string_view path);
/// Whether a path ends like that of a super-journal, by which SQLite commits several files
/// together:
/// "-mj", six hexadecimal digits, a 9 and two more digits.
[[nodiscard]] bool IsSuperJournalName(std::string_view path);
/// The folder in which a path lies, "." for one without any.
[[nodiscard]] std::string FolderOf(std::string_view path);
/// Whether two paths of folders lead to the same one. False where one of them leads nowhere.
[[nodiscard]] bool IsSameFolder(const std::string& one, const std::string& other);

}  // namespace QvPlatform::detail
