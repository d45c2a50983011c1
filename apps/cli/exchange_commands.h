#pragma once

#include "apps/cli/request.h"
#include "apps/cli/terminal.h"

/// Commands that carry objects to and from files. Each gives kSucceeded or kFailed, or throws
/// CommandError or UsageError.
namespace RefframeCli {

/// Writes an object to standard output or a file, or every object of a type to a folder; kFailed
/// if one of those could not be written.
int ExportObjects(const Request& request, Terminal terminal);
/// Prints a line for each file that got in: key, "found" or "inserted", and name between tabs. All
/// files get in as one transaction, or each by itself where that was asked for. kFailed if one of
/// them did not.
int ImportFiles(const Request& request, Terminal terminal);

}  // namespace RefframeCli
