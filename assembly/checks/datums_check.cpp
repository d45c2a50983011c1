#include "assembly/checks/datums_check.h"

namespace QvRefSystem {

void CheckDatums(const CheckedDatabase& database, Findings& findings) {
  for (const CheckedRow row : database.Of(TableId::kDatum)) {
    findings.NeedReference(row, "ELLIPSOID_AUTOKEY");
    findings.NeedReference(row, "DATUM_SHIFT_AUTOKEY");
  }
}

void CheckDatumShifts(const CheckedDatabase& database, Findings& findings) {
  constexpr int kTranslation = 1;
  for (const CheckedRow row : database.Of(TableId::kDatumShift)) {
    findings.NeedReference(row, "TYPE");
    findings.NeedReference(row, "LINEAR_UNIT_AUTOKEY");
    for (const auto field : {"TX", "TY", "TZ"})
      findings.NeedNumber(row, field);
    if (row.Integer("TYPE") == kTranslation) continue;
    findings.NeedReference(row, "ANGULAR_UNIT_AUTOKEY");
    findings.NeedReference(row, "SCALE_UNIT_AUTOKEY");
    for (const auto field : {"RX", "RY", "RZ", "S"})
      findings.NeedNumber(row, field);
  }
}

}  // namespace QvRefSystem
