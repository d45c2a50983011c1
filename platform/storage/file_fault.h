#pragma once

#include <string>

namespace QvPlatform::detail {

/// What went wrong at a file under SQLite, which keeps neither the name of the file nor the words
/// of the system for itself.
struct FileFault {
  /// SQLite's code, the part that tells the kind.
  int kind = 0;
  /// The file at which it happened, which may be a journal or another file than that of the
  /// connection.
  std::string path;
  /// Words for it; "" where the kind says all.
  std::string reason;
};

/// Remembers the last fault of this thread.
void NoteFileFault(int code, const char* path, const char* reason) noexcept;
/// The last fault of this thread, if it was of the kind of this code, and forgets it.
[[nodiscard]] FileFault TakeFileFault(int code);

}  // namespace QvPlatform::detail
