#pragma once

#include "dialogs/base/edit_base.h"

/// The way from an object to its edit dialog.
namespace QvRefSystem {

/// Whether objects of that type have an edit dialog.
[[nodiscard]] bool HasEditForm(TObjectType object);

/// The edit dialog for objects of that type, and of that TYPE where there is a dialog for each. It
/// is the one that the owner has already, or else a new one, which the owner owns. Null if objects
/// of that type have no dialog.
[[nodiscard]] TformQvRfEdit* GetEditForm(QWidget* owner, const Chooser& chooser, TObjectType object,
                                         int type = 0);

}  // namespace QvRefSystem
