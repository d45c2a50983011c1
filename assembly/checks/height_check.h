#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds height systems that do not belong to exactly one reference system or lack what their kind
/// needs, and height files that are missing, shared or changed since they were written. Notes files
/// that are no record's: a stop between record and file may leave one, and it harms nobody.
void CheckHeights(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
