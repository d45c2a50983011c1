#pragma once

#include <string>

/// The calls by which a program reaches files and memory, in the place of the C library's own: they
/// fail, cut short or kill where a test asks for it, and tell a log what they changed. They are
/// part of the program itself, so that they work in every build, under the sanitizers too.
namespace refframe_faults {

/// Which calls count, and what becomes of them.
struct Fault {
  /// Names between commas: open, read, write, sync, truncate, lock, rename, unlink, mkdir, stat,
  /// map, malloc. "" counts none.
  std::string families;
  /// Only what lies under this path counts (nothing of this holds for malloc).
  std::string prefix;
  /// The first call that is hit, from 1; 0 hits none.
  long at = 0;
  /// Whether all calls after that one are hit as well.
  bool forGood = false;
  /// "fail": it fails with `error`; "short": a write puts half of it down and, where faults go on,
  /// every second one fails; "kill": the process is killed before the call; "meddle": the file is
  /// opened and closed once more, as a host may do, and the call goes on.
  std::string effect = "fail";
  /// The errno of a failure.
  int error = 0;
  /// A file to which all changes of files under the prefix are appended; "" for none.
  ///
  /// An entry is a line "kind TAB inode TAB path TAB offset TAB size" and `size` bytes. The kinds:
  /// C made, W written, T cut to the offset, S synced, D folder synced, U unlinked, R renamed to
  /// the path in the bytes, L linked likewise, M folder made, A written to standard output.
  std::string log;
};

/// Counts from now on, from zero.
void Arm(const Fault& fault);
/// Ends counting, and tells how many calls there were.
long Disarm();

}  // namespace refframe_faults
