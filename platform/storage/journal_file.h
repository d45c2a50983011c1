#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>

namespace QvPlatform::detail {

/// What a rollback journal of SQLite's says of itself, as the file format fixes it:
/// sqlite.org/fileformat2.html, section "The Rollback Journal". Numbers are big-endian there.
struct JournalFile {
  /// There is one, and it may be played back: neither empty nor begun with a zero.
  bool isHot = false;
  /// Its header is sound; without that nothing of it is played back.
  bool isSound = false;
  /// Size of a page in bytes.
  std::uint32_t pageSize = 0;
  /// Pages of the database when the transaction began.
  std::uint32_t pageCount = 0;
  /// The counter of changes in the header of the database at that time, if page 1 is in the
  /// journal.
  std::optional<std::uint32_t> changeCounter;
  /// Path of the super-journal that it names; "" without one.
  std::string superJournal;
  /// Where the name of the super-journal begins, and all behind that belongs to it.
  off_t superJournalAt = 0;
  /// The file itself, to know it again.
  dev_t device = 0;
  ino_t number = 0;
};

/// Reads what stands under the path of a journal, without blocking and through no symbolic link;
/// nothing is hot where there is no file. Throws StorageError if it cannot be read or is no plain
/// file.
[[nodiscard]] JournalFile ReadJournalFile(const std::string& path);

/// Numbers of the header of a database file that a journal has to fit.
struct DatabaseHeader {
  /// The counter of changes.
  std::uint32_t changeCounter = 0;
  /// Size of a page in bytes.
  std::uint32_t pageSize = 0;
  /// Pages of the database; 0 if an old program has left no true number.
  std::uint32_t pageCount = 0;
  /// The file says that it has a write-ahead log.
  bool isLogged = false;
};

/// Reads the header of a database file, none if it has none. Throws StorageError if it cannot be
/// read.
[[nodiscard]] std::optional<DatabaseHeader> ReadDatabaseHeader(const std::string& path);

/// Whether a journal is one of just this file in its present state, or of a transaction of which it
/// knows too little to tell.
[[nodiscard]] bool Fits(const JournalFile& journal, const std::optional<DatabaseHeader>& database);

}  // namespace QvPlatform::detail
