#pragma once

#include "apps/cli/request.h"
#include "apps/cli/terminal.h"

/// Commands that compute coordinates. Each gives kSucceeded or kFailed, or throws CommandError or
/// UsageError.
namespace RefframeCli {

/// Moves the points of standard input from one system to another, a line out for each line in;
/// kFailed if one of them failed.
int TransformPoints(const Request& request, Terminal terminal);
/// Prints a line for each built-in geoid: code and name with a tab between.
int ListGeoids(const Request& request, Terminal terminal);

}  // namespace RefframeCli
