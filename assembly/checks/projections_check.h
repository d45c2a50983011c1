#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds map projections without a type or with signs that are none, and those that lack a
/// parameter of their type or its unit, or have a parameter twice.
void CheckProjections(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
