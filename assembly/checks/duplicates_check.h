#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds records that say the same as another one, or will once others are merged. Notes those that
/// are equal only by the rules by which a tree finds them.
void CheckDuplicates(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
