#include "assembly/checks/ellipsoids_check.h"

#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

bool IsLength(const std::string& text) {
  double number = 0;
  return QvPlatform::TextToDouble(text, &number) && number > 0;
}

bool IsFlattening(const std::string& text) {
  double number = 0;
  return QvPlatform::TextToDouble(text, &number) && number > 0 && number < 1;
}

void NeedLength(const CheckedRow& row, const char* field, Findings& findings) {
  const std::string& text = row.Text(field);
  if (!IsLength(text)) findings.Add(row, std::string(field) + " \"" + text + "\" is no length");
}

}  // namespace

void CheckEllipsoids(const CheckedDatabase& database, Findings& findings) {
  for (const CheckedRow row : database.Of(TableId::kEllipsoid)) {
    findings.NeedReference(row, "UNIT_AUTOKEY");
    NeedLength(row, "A", findings);
    if (row.Integer("SPHEROID") != 0) continue;
    if (row.Integer("USE_F") == 0) {
      NeedLength(row, "B", findings);
    } else if (!IsFlattening(row.Text("F"))) {
      findings.Add(row, "F \"" + row.Text("F") + "\" is no flattening");
    }
  }
}

}  // namespace QvRefSystem
