#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds keys that are not above 0 or stand twice, and records without a name.
void CheckKeys(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
