#pragma once

#include <iosfwd>

/// The command line: every command as a function of its arguments and streams.
namespace RefframeCli {

/// Where a command reads and writes. What it was asked for goes to `out`; messages, questions and
/// progress go to `err`.
struct Terminal {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  /// A person sits there: questions are asked and progress is shown.
  bool interactive = false;
};

inline constexpr int kSucceeded = 0;
inline constexpr int kFailed = 1;
inline constexpr int kMisused = 2;

/// Runs one command line. Returns its exit status: kSucceeded, kFailed for an operation that did
/// not succeed, or kMisused for arguments that make no command. Throws nothing.
[[nodiscard]] int Run(int argc, const char* const* argv, Terminal terminal);

}  // namespace RefframeCli
