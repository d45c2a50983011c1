#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds reference systems of no known kind, without a reference that their kind needs, or standing
/// on themselves.
void CheckReferenceSystems(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
