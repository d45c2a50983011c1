#include "dialogs/vertical_edit.h"

namespace QvRefSystem {

TformQvRfVerticalRefSystemEdit::TformQvRfVerticalRefSystemEdit(QWidget* owner)
    : TformQvRfEdit(owner, TObjectType::kVerticalReferenceSystem), heights_(Data()) {}

bool TformQvRfVerticalRefSystemEdit::SetPlaneSystem(const std::string& treeText, int unitKey) {
  return heights_.SetPlaneSystem(treeText, unitKey);
}

bool TformQvRfVerticalRefSystemEdit::LoadForReferenceSystem(int refSystemKey) {
  return heights_.LoadForReferenceSystem(refSystemKey);
}

bool TformQvRfVerticalRefSystemEdit::IsStoredPlaneSame(const TShellReferenceSystem* system) const {
  return heights_.IsStoredPlaneSame(system);
}

// Until the dialog has its controls there is nothing to store.
bool TformQvRfVerticalRefSystemEdit::StoreRecord() {
  return false;
}

}  // namespace QvRefSystem
