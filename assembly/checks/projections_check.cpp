#include "assembly/checks/projections_check.h"

#include <map>
#include <tuple>

#include "assembly/checks/parameters_check.h"
#include "processors/object_descriptor.h"

namespace QvRefSystem {
namespace {

// Number of values by projection, its type, and parameter code.
using ValueCounts = std::map<std::tuple<int, int, int>, int>;

ValueCounts CountValues(const CheckedTable& values) {
  ValueCounts counts;
  for (const CheckedRow row : values) {
    if (row.Integer("PARAM_TAG") != static_cast<int>(ParamTag::kProjectionParameter)) continue;
    ++counts[{row.Integer("OWNER_ID"), row.Integer("PARAM_GROUP"), row.Integer("PARAM_CODE")}];
  }
  return counts;
}

void CheckSigns(const CheckedRow& row, Findings& findings) {
  for (const auto field : {"COORD1_SIGN", "COORD2_SIGN"}) {
    const int sign = row.Integer(field);
    if (sign != 1 && sign != -1) findings.Add(row, std::string(field) + " is not 1 or -1");
  }
}

bool LacksUnit(const CheckedRow& row, int unitType) {
  constexpr std::string_view kUnitFields[] = {"LINEAR_UNIT_AUTOKEY", "ANGULAR_UNIT_AUTOKEY",
                                              "SCALE_UNIT_AUTOKEY"};
  return unitType >= 1 && unitType <= 3 && row.Integer(kUnitFields[unitType - 1]) == 0;
}

void CheckParameter(const CheckedRow& row, const CheckedParameter& parameter, int count,
                    Findings& findings) {
  const std::string which = "parameter \"" + parameter.name + "\" has ";
  if (count != 1) findings.Add(row, which + std::to_string(count) + " values");
  if (LacksUnit(row, parameter.unitType)) findings.Add(row, which + "no unit");
}

}  // namespace

void CheckProjections(const CheckedDatabase& database, Findings& findings) {
  CheckedParameters parameters = ParametersOfTypes(database);
  const ValueCounts counts = CountValues(database.Of(TableId::kParamValue));
  for (const CheckedRow row : database.Of(TableId::kMapProj)) {
    findings.NeedReference(row, "TYPE");
    CheckSigns(row, findings);
    const int type = row.Integer("TYPE");
    for (const auto& [code, parameter] : parameters[type]) {
      const auto count = counts.find({row.Key(), type, code});
      CheckParameter(row, parameter, count == counts.end() ? 0 : count->second, findings);
    }
  }
}

}  // namespace QvRefSystem
