#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds rows of the table of parameter values that stand twice, a second code of one owner,
/// parameters of no projection or with no number, and codes of no known form or without a code.
/// Notes rows that were left by a record that is gone, and codes that two objects of one type
/// claim.
void CheckValues(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
