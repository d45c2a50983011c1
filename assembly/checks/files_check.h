#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds damage in the files of the tables, or in the container, by reading all of them, and files
/// of a folder that are of an earlier moment than the others.
void CheckFiles(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
