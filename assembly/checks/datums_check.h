#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds datums without an ellipsoid or a datum shift.
void CheckDatums(const CheckedDatabase& database, Findings& findings);
/// Finds datum shifts without a type, or without the units and numbers that their type has.
void CheckDatumShifts(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
