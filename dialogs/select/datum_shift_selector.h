#pragma once

#include "dialogs/select/typed_selector.h"

namespace QvRefSystem {

/// The selector of datum shifts.
class TformQvRfDatumShiftSelector final : public TypedSelector {
 public:
  /// The conditions are those of TformQvRfSelector.
  TformQvRfDatumShiftSelector(QWidget* owner, const Chooser& chooser);

 protected:
  void TellType(TformQvRfEdit& form, int type) override;
  /// The view stays as it was.
  void Saved() override {}
};

}  // namespace QvRefSystem
