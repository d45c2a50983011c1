#pragma once

#include "apps/cli/commands.h"

namespace RefframeCli {

// Each command gives kSucceeded or kFailed, or throws CommandError or UsageError.

/// Limits, cells, nodes, the range of the values and the checksum of a height file.
int ShowHeightFile(const Request& request, Terminal terminal);
/// The table with the coordinates of its nodes: a line for each row from the north down, with tabs.
int ViewHeightFile(const Request& request, Terminal terminal);
/// Writes the heights of a source on a grid of another system to a file.
int InterpolateHeightFile(const Request& request, Terminal terminal);
/// The constant that stands best for the heights of a source, and how far it is off.
int ApproximateHeightFile(const Request& request, Terminal terminal);

}  // namespace RefframeCli
