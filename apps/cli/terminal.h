#pragma once

#include <iosfwd>

/// The command line: every command as a function of its arguments and streams.
namespace RefframeCli {

/// Where a command reads and writes. What it was asked for goes to `out`; messages, questions and
/// progress go to `err`. The streams outlive the command.
struct Terminal {
  /// Points, files and answers come from here.
  std::istream& in;
  /// Results go here.
  std::ostream& out;
  /// Messages go here.
  std::ostream& err;
  /// A person sits there: questions are asked and progress is shown.
  bool interactive = false;
};

/// Exit status of what was done.
inline constexpr int kSucceeded = 0;
/// Exit status of an operation that did not succeed.
inline constexpr int kFailed = 1;
/// Exit status of arguments that make no command.
inline constexpr int kMisused = 2;

}  // namespace RefframeCli
