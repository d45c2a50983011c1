#pragma once

#include "dialogs/base/edit_base.h"

/// The way from an object to its edit dialog.
namespace QvRefSystem {

/// Whether objects of that type have an edit dialog.
[[nodiscard]] bool HasEditForm(TObjectType object);

/// The edit dialog of an object, told apart by TYPE where there are several: the owner's, if it has
/// made it before, else a new one. Null if there is none.
[[nodiscard]] TformQvRfEdit* GetEditForm(QWidget* owner, const Chooser& chooser, TObjectType object,
                                         int type = 0);

}  // namespace QvRefSystem
