#pragma once

#include "apps/cli/terminal.h"

namespace RefframeCli {

/// Runs one command line; `argv` holds `argc` texts, the first of them the program's name. Returns
/// its exit status: kSucceeded, kFailed for an operation that did not succeed, or kMisused for
/// arguments that make no command. Throws nothing.
[[nodiscard]] int Run(int argc, const char* const* argv, Terminal terminal);

}  // namespace RefframeCli
