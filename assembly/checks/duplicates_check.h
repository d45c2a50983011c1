#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds records that are equal by the rules by which a tree finds them.
void CheckDuplicates(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
