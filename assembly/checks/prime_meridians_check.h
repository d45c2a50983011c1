#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds prime meridians without a unit or with a longitude that is no number.
void CheckPrimeMeridians(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
