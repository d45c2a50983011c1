#pragma once

/// The file system under SQLite, as this system wants it: SQLite's own for Unix, with three
/// differences.
///   - A database is locked by FileLocks, so that no close of a file, by whomever in this process,
///     drops the locks. Where the medium knows no such locks, SQLite's own are taken. A lock that
///     fails for another reason than that somebody holds it is told at once as an I/O error.
///   - There is no shared memory, and so no write-ahead log: one that lies beside a database is
///     never read.
///   - What journals name is held to by JournalFence; anything else is refused as an I/O error.
/// Each failure is noted (file_fault.h).
namespace QvPlatform::detail {

/// Name of this file system to SQLite, which knows it from the first call on.
[[nodiscard]] const char* LockVfs();
/// Name of one that holds journals to their place as well, but leaves locks and logs to SQLite: for
/// a database that was left with a write-ahead log.
[[nodiscard]] const char* LoggedVfs();

}  // namespace QvPlatform::detail
