#pragma once

#include "dialogs/edit/origin_edit.h"

namespace QvRefSystem {

/// The dialog of topocentric systems. A topocentric system stands on a geodetic one, in whose axes
/// and units its origin is told.
class TformQvRfRefSystemTopoEdit final : public OriginEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` must outlive it.
  TformQvRfRefSystemTopoEdit(QWidget* owner, const Chooser& chooser);

 protected:
  void OnNewRecord() override;
  void OnShowRecord() override;
  void OnRead() override;
  [[nodiscard]] bool Choose(const FormRow& row) override;
  void OnChosen(const FormRow& row) override;

 private:
  void ShowPrimary();
};

}  // namespace QvRefSystem
