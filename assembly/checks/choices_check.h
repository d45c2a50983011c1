#pragma once

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// Finds listed choices that belong to no parameter or are no number, and parameters that are
/// chosen from a list that is empty.
void CheckChoices(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
