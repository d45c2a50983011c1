#pragma once

#include "apps/cli/request.h"
#include "apps/cli/terminal.h"

/// Commands about tables of heights. Each gives kSucceeded, or throws CommandError or UsageError.
namespace RefframeCli {

/// Prints limits, cells, nodes, the range of the values and the checksum of a height file.
int ShowHeightFile(const Request& request, Terminal terminal);
/// Prints the table with the coordinates of its nodes: a line for each row from the north down,
/// with tabs.
int ViewHeightFile(const Request& request, Terminal terminal);
/// Writes the heights of a source on a grid of another system to a file.
int InterpolateHeightFile(const Request& request, Terminal terminal);
/// Prints the constant that stands best for the heights of a source, and how far it is off.
int ApproximateHeightFile(const Request& request, Terminal terminal);

}  // namespace RefframeCli
