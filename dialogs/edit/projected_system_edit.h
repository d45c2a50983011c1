#pragma once

#include "dialogs/edit/plane_system_edit.h"

namespace QvRefSystem {

/// The dialog of projected systems. In simple mode its projection is made and edited from here
/// without a list.
class TformQvRfRefSystemProjEdit final : public PlaneSystemEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` must outlive it.
  TformQvRfRefSystemProjEdit(QWidget* owner, const Chooser& chooser)
      : PlaneSystemEdit(owner, chooser, kProjSystemForm) {}

 protected:
  [[nodiscard]] bool Choose(const FormRow& row) override;
  void OnChosen(const FormRow& row) override;
  void FillSystem(UnstoredSystem* system) override;
  [[nodiscard]] std::vector<const char*> AxesOfType() const override;
};

}  // namespace QvRefSystem
