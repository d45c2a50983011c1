#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds keys that are not above 0 or stand twice, records without a name, and tables that would
/// give a key again which is still named.
void CheckKeys(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
