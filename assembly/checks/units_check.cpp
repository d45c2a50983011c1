#include "assembly/checks/units_check.h"

namespace QvRefSystem {

void CheckUnits(const CheckedDatabase& database, Findings& findings) {
  for (const TableId id : {TableId::kLinearUnit, TableId::kAngularUnit, TableId::kScaleUnit}) {
    for (const CheckedRow row : database.Of(id)) {
      // The comparisons are such that a factor that is no number is found, too.
      const bool positive = row.Float("FACTOR_B") > 0 && row.Float("FACTOR_C") > 0;
      if (!positive) findings.Add(row, "a factor is not above 0");
    }
  }
}

}  // namespace QvRefSystem
