#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds rows of the table of parameter values that stand twice: parameters of no projection or
/// with no number, and codes of no known form, without a code, or of a record that is gone.
void CheckValues(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
