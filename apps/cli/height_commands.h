#pragma once

#include "apps/cli/commands.h"

namespace RefframeCli {

// Each command gives kSucceeded or kFailed, or throws CommandError or UsageError.

/// Limits, cells, nodes, the range of the values and the checksum of a height file.
int ShowHeightFile(const TRequest& request, TTerminal terminal);
/// The table with the coordinates of its nodes: a line for each row from the north down, with tabs.
int ViewHeightFile(const TRequest& request, TTerminal terminal);
/// Writes the heights of a source on a grid of another system to a file.
int InterpolateHeightFile(const TRequest& request, TTerminal terminal);
/// The constant that stands best for the heights of a source, and how far it is off.
int ApproximateHeightFile(const TRequest& request, TTerminal terminal);

}  // namespace RefframeCli
