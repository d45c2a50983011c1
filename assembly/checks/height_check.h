#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds height systems that do not belong to exactly one reference system or lack what their kind
/// needs, and height files that are missing, shared, changed since they were written, or left by a
/// record that is gone.
void CheckHeights(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
