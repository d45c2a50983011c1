#pragma once

#include "apps/cli/request.h"
#include "apps/cli/terminal.h"

/// Commands about a database and the objects in it. Each gives kSucceeded or kFailed, or throws
/// CommandError or UsageError.
namespace RefframeCli {

/// Makes a new database with the systems of the EPSG registry, or without objects.
int InitDatabase(const Request& request, Terminal terminal);
/// Finishes or takes back what an interrupted program left in a database, and prints each step.
int RecoverInterrupted(const Request& request, Terminal terminal);
/// Prints a line for each object: key, name and description between tabs.
int ListObjects(const Request& request, Terminal terminal);
/// Prints the lines by which an object is described.
int ShowInfo(const Request& request, Terminal terminal);
/// Prints a line for each user: type, key, name and description between tabs.
int ListUsers(const Request& request, Terminal terminal);
/// Deletes an object to which nothing refers, with `force` also a height system that is used, if
/// the answer is Yes; a No that a person gave is no failure.
int DeleteObject(const Request& request, Terminal terminal);
/// Prints a line for each find, errors first, behind the steps of repair if that is asked for;
/// throws CommandError if there is an error.
int CheckWhole(const Request& request, Terminal terminal);

}  // namespace RefframeCli
