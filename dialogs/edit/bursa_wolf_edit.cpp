#include "dialogs/edit/bursa_wolf_edit.h"

namespace QvRefSystem {

void TformQvRfDatumShiftBursaWolfEdit::WriteMore(QvPlatform::TQvDataSet& dataSet) {
  if (EditMode == 0) dataSet.FieldByName("TYPE").SetInteger(shiftType_);
}

}  // namespace QvRefSystem
