#pragma once

#include "apps/cli/request.h"
#include "apps/cli/terminal.h"

/// Commands by which a database is kept. Each gives kSucceeded or kFailed, or throws CommandError,
/// UsageError or StorageError.
namespace RefframeCli {

/// Copies a database to a new place, in the form that the new name asks for.
int CopyWhole(const Request& request, Terminal terminal);
/// Makes a container with all that the database holds at one moment.
int BackUpWhole(const Request& request, Terminal terminal);
/// Puts a backup in the place of a database, and prints where the former one stands now.
int RestoreWhole(const Request& request, Terminal terminal);

}  // namespace RefframeCli
