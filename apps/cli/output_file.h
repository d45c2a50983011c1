#pragma once

#include "apps/cli/request.h"
#include "apps/cli/terminal_interface.h"

namespace RefframeCli {

/// Whether the file that a command is to write may be written: a person is asked ahead of one that
/// is there. True where nothing but standard output is written. Without a terminal it is replaced.
/// Throws CommandError where --no-clobber forbids that, and StorageError for a file that belongs to
/// a database.
[[nodiscard]] bool MayWriteOutput(const Request& request, Terminal terminal, TerminalInterface& ui);

}  // namespace RefframeCli
