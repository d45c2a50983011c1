#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds fields that refer to a record that is not there; 0 refers to none.
void CheckReferences(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
