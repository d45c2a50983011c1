#include "dialogs/select/ellipsoid_selector.h"

#include "dialogs/edit/ellipsoid_edit.h"

namespace QvRefSystem {

bool TformQvRfEllipsoidSelector::SelectSpheres(TStringTree* tree, int id, bool hideOwner, int* key,
                                               int index) {
  return SelectWhere(kSpheres, {tree, id, index, hideOwner, key});
}

bool TformQvRfEllipsoidSelector::SelectWhere(const RowFilter& where, const Choice& choice) {
  auto* form = dynamic_cast<TformQvRfEllipsoidEdit*>(NeedEditForm());
  if (form != nullptr) form->SetSphereOnly(true);
  const bool chosen = ObjectSelector::SelectWhere(where, choice);
  if (form != nullptr) form->SetSphereOnly(false);
  return chosen;
}

}  // namespace QvRefSystem
