#include "dialogs/select/datum_shift_selector.h"

#include "dialogs/edit/bursa_wolf_edit.h"

namespace QvRefSystem {

TformQvRfDatumShiftSelector::TformQvRfDatumShiftSelector(QWidget* owner, const Chooser& chooser)
    : TypedSelector(owner, chooser, {.type = TObjectType::kDatumShift},
                    TObjectType::kDatumShiftType) {}

void TformQvRfDatumShiftSelector::TellType(TformQvRfEdit& form, int type) {
  auto* bursaWolf = dynamic_cast<TformQvRfDatumShiftBursaWolfEdit*>(&form);
  if (bursaWolf != nullptr) bursaWolf->SetShiftType(type);
}

}  // namespace QvRefSystem
