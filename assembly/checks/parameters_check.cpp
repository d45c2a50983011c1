#include "assembly/checks/parameters_check.h"

#include <set>
#include <utility>

namespace QvRefSystem {

CheckedParameters ParametersOfTypes(const CheckedDatabase& database) {
  CheckedParameters parameters;
  for (const CheckedRow row : database.Of(TableId::kMapProjParam)) {
    parameters[row.Integer("PROJ_TYPE")].emplace(
        row.Integer("PARAM_CODE"), CheckedParameter{row.Integer("UNIT_TYPE"), row.Text("NAME")});
  }
  return parameters;
}

void CheckParameters(const CheckedDatabase& database, Findings& findings) {
  std::set<std::pair<int, int>> codes;
  std::set<std::pair<int, int>> tags;
  for (const CheckedRow row : database.Of(TableId::kMapProjParam)) {
    const int type = row.Integer("PROJ_TYPE");
    const int code = row.Integer("PARAM_CODE");
    const int unitType = row.Integer("UNIT_TYPE");
    const std::string which =
        "parameter \"" + row.Text("NAME") + "\" of type " + std::to_string(type);
    if (!codes.emplace(type, code).second) {
      findings.Add(row, which + " shares its code " + std::to_string(code) + " with another");
    }
    if (!tags.emplace(type, row.Integer("TAG")).second) {
      findings.Add(row, which + " shares its tag with another");
    }
    if (unitType < 1 || unitType > 3) findings.Add(row, which + " has no kind of unit");
  }
}

}  // namespace QvRefSystem
