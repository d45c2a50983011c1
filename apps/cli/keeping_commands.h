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
/// Makes a new database of what can be read of a damaged one, and prints a line for each table:
/// name, records, and what is lost. kFailed if something is.
int SalvageWhole(const Request& request, Terminal terminal);

}  // namespace RefframeCli
