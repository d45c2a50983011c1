#pragma once

#include <string>
#include <vector>

namespace refframe_faults {

/// What a command line came to.
struct CommandResult {
  int exitCode = 0;
  std::string output;
  std::string errors;
};

/// Runs a command of the program `refframe` in this process; `arguments` without its name.
[[nodiscard]] CommandResult RunCommandLine(std::vector<std::string> arguments,
                                           const std::string& input = {});

/// Writes to standard output at once, so that a process that is killed then has said it.
void Say(const std::string& text);

}  // namespace refframe_faults
