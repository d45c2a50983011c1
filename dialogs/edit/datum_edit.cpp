#include "dialogs/edit/datum_edit.h"

#include "dialogs/base/processor_of.h"

namespace QvRefSystem {

bool TformQvRfDatumEdit::Choose(const FormRow& row) {
  if (row.object != TObjectType::kDatumShift || Data().DialogMode != kSimpleMode) {
    return DescribedEdit::Choose(row);
  }
  ObjectList& shifts = ListOf(row.object);
  // The list does not show, but what it opens takes its place.
  shifts.PlaceAt(pos());
  const QvPlatform::HiddenForm hidden(this);
  if (EditMode == 0) return shifts.NewByType();
  ProcessorOf(row.object).LocateKey(ValueOf(row.control).key);
  return shifts.EditByType();
}

}  // namespace QvRefSystem
