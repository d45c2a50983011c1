#pragma once

#include "dialogs/edit/plane_system_edit.h"

namespace QvRefSystem {

/// The dialog of geodetic systems. A row beside the record of a system tells whether its longitudes
/// run from 0 to 360 degrees.
class TformQvRfRefSystemGeodEdit final : public PlaneSystemEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` must outlive it.
  TformQvRfRefSystemGeodEdit(QWidget* owner, const Chooser& chooser);

 protected:
  void OnNewRecord() override;
  void OnShowRecord() override;
  void StoreBeside(int key) override;
  void FillSystem(UnstoredSystem* system) override;
  [[nodiscard]] std::vector<const char*> AxesOfType() const override;
};

}  // namespace QvRefSystem
