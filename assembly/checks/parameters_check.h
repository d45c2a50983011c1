#pragma once

#include <map>
#include <string>

#include "assembly/checks/findings.h"

namespace QvRefSystem {

/// A parameter that map projections of one type have.
struct CheckedParameter {
  /// 1 length, 2 angle, 3 scale; a spoiled table may hold any number.
  int unitType = 0;
  /// The name of the parameter, as the table has it.
  std::string name;
};

/// Parameters by type of map projection and by code.
using CheckedParameters = std::map<int, std::map<int, CheckedParameter>>;

/// The parameters of all types of map projections; of those that share a code the first.
[[nodiscard]] CheckedParameters ParametersOfTypes(const CheckedDatabase& database);

/// Finds parameters of map projections that share a code or a tag within their type, or have no
/// kind of unit.
void CheckParameters(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
