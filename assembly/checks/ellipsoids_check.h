#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds ellipsoids without a unit or without the numbers of their shape: A, and for one that is no
/// sphere F or B, whichever it goes by.
void CheckEllipsoids(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
