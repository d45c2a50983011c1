#pragma once

#include <sys/types.h>

#include <string>

namespace QvPlatform::detail {

/// SQLite's locks on one database file, on the very bytes on which every other program with SQLite
/// takes them, but as locks of an open file description. Locks of a process, which SQLite takes by
/// itself, all fall when the process closes any descriptor of the file, wherever it came from;
/// these fall with the descriptor of this object alone. Both kinds exclude each other.
class FileLocks {
 public:
  /// SQLite's levels, with its numbers.
  enum class Level { kNone = 0, kShared = 1, kReserved = 2, kPending = 3, kExclusive = 4 };
  /// What became of a wish. Behind kFailed errno says why; kUnsupported means that the medium does
  /// not know such locks, and nothing has changed.
  enum class Answer { kGranted, kHeldByOther, kFailed, kUnsupported };

  FileLocks() = default;
  ~FileLocks();
  FileLocks(const FileLocks&) = delete;
  FileLocks& operator=(const FileLocks&) = delete;

  /// Opens the file for its locks, without blocking: for writing, if it is wished and allowed, or
  /// else for reading. `flags` may add O_CREAT. False with errno if it does not open or is no plain
  /// file.
  [[nodiscard]] bool Open(const std::string& path, bool writing, int flags = 0) noexcept;
  /// Whether the path still leads to the file that was opened.
  [[nodiscard]] bool IsAt(const std::string& path) const noexcept;
  /// Whether locks of a writer can be taken.
  [[nodiscard]] bool ForWriting() const { return forWriting_; }

  /// Takes what is missing to a higher level, by SQLite's protocol. Nothing is waited for.
  [[nodiscard]] Answer Raise(Level level) noexcept;
  /// Goes down to kShared or kNone.
  [[nodiscard]] Answer Lower(Level level) noexcept;
  /// Whether anybody, this object included, holds the lock of a writer.
  [[nodiscard]] Answer FindWriter(bool* found) noexcept;

  /// Keeps the descriptor open to the end of the process, for a medium on which closing it would
  /// drop the locks that SQLite then takes by itself.
  void Park() noexcept;

 private:
  [[nodiscard]] Answer Set(short type, off_t start, off_t length) const noexcept;
  [[nodiscard]] Answer RaiseToShared() noexcept;
  [[nodiscard]] Answer RaiseToExclusive() noexcept;

  int descriptor_ = -1;
  bool forWriting_ = false;
  Level level_ = Level::kNone;
};

}  // namespace QvPlatform::detail
