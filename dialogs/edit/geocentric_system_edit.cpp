#include "dialogs/edit/geocentric_system_edit.h"

#include <QAbstractButton>

namespace QvRefSystem {

void TformQvRfRefSystemGeocEdit::OnShowRecord() {
  SystemEdit::OnShowRecord();
  LeadOf("chboxDatum").setChecked(ValueOf("edDatum").key != 0);
  UpdateLeads();
}

// The datum of an unchecked box is kept in the dialog, in case the user checks it again.
void TformQvRfRefSystemGeocEdit::WriteMore(QvPlatform::TQvDataSet& dataSet) {
  SystemEdit::WriteMore(dataSet);
  if (!LeadOf("chboxDatum").isChecked()) dataSet.FieldByName("DATUM_AUTOKEY").SetInteger(0);
}

}  // namespace QvRefSystem
