#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds units of length, angle and scale with a factor that is not above 0.
void CheckUnits(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
