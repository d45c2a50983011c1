#pragma once

#include "dialogs/edit/system_edit.h"
#include "forms/form_descriptions.h"

/// The edit dialogs that are no more than their descriptions.
namespace QvRefSystem {

/// The dialog of prime meridians.
using TformQvRfPrimeMeridianEdit = EditOf<kPrimeMeridianForm>;
/// The dialog of datum shifts of three parameters.
using TformQvRfDatumShiftMolodenskyEdit = EditOf<kMolodenskyForm>;
/// The dialog of the names and descriptions of datum shift types. It makes no records.
using TformQvRfDatumShiftTypeEdit = EditOf<kDatumShiftTypeForm>;
/// The dialog of the names and descriptions of map projection types. It makes no records.
using TformQvRfMapProjTypeEdit = EditOf<kMapProjTypeForm>;
/// The dialog of the names and descriptions of reference system types. It makes no records.
using TformQvRfRefSystemTypeEdit = EditOf<kRefSystemTypeForm>;

/// The dialog of local Cartesian systems, which stand on nothing.
class TformQvRfRefSystemCartEdit final : public SystemEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` must outlive it.
  TformQvRfRefSystemCartEdit(QWidget* owner, const Chooser& chooser)
      : SystemEdit(owner, chooser, kCartSystemForm) {}
};

}  // namespace QvRefSystem
