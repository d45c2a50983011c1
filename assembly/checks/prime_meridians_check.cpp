#include "assembly/checks/prime_meridians_check.h"

namespace QvRefSystem {

void CheckPrimeMeridians(const CheckedDatabase& database, Findings& findings) {
  for (const CheckedRow row : database.Of(TableId::kPrimeMeridian)) {
    findings.NeedReference(row, "UNIT_AUTOKEY");
    findings.NeedNumber(row, "LONGITUDE");
  }
}

}  // namespace QvRefSystem
