#pragma once

#include "dialogs/base/described_edit.h"
#include "forms/form_descriptions.h"

namespace QvRefSystem {

/// The dialog of datums. In simple mode each datum has a shift of its own, which is made and edited
/// from here without a list.
class TformQvRfDatumEdit final : public DescribedEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` must outlive it.
  TformQvRfDatumEdit(QWidget* owner, const Chooser& chooser)
      : DescribedEdit(owner, chooser, kDatumForm) {}

 protected:
  [[nodiscard]] bool Choose(const FormRow& row) override;
};

}  // namespace QvRefSystem
