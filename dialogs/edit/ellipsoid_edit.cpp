#include "dialogs/edit/ellipsoid_edit.h"

#include <QAbstractButton>

namespace QvRefSystem {

void TformQvRfEllipsoidEdit::SetSphereOnly(bool on) {
  sphereOnly_ = on;
  if (on) SetChoice(kEllipsoidShape, "radiobtnSpheroid");
  for (const char* radio : {"radiobtnB", "radiobtnF", "radiobtnSpheroid"})
    LeadOf(radio).setEnabled(!on);
}

void TformQvRfEllipsoidEdit::OnNewRecord() {
  SetChoice(kEllipsoidShape, sphereOnly_ ? "radiobtnSpheroid" : "radiobtnB");
}

void TformQvRfEllipsoidEdit::OnShowRecord() {
  QvPlatform::TQvDataSet& dataSet = *Processor->DataSet;
  const bool sphere = dataSet.FieldByName("SPHEROID").AsInteger() != 0;
  const bool flattening = dataSet.FieldByName("USE_F").AsInteger() != 0;
  SetChoice(kEllipsoidShape, sphere ? "radiobtnSpheroid" : flattening ? "radiobtnF" : "radiobtnB");
}

void TformQvRfEllipsoidEdit::OnRead() {
  if (LeadOf("radiobtnSpheroid").isChecked()) ValueOf("edB").text = ValueOf("edA").text;
}

void TformQvRfEllipsoidEdit::WriteMore(QvPlatform::TQvDataSet& dataSet) {
  dataSet.FieldByName("USE_F").SetInteger(LeadOf("radiobtnF").isChecked() ? 1 : 0);
  dataSet.FieldByName("SPHEROID").SetInteger(LeadOf("radiobtnSpheroid").isChecked() ? 1 : 0);
}

}  // namespace QvRefSystem
