#pragma once

#include "dialogs/edit/system_edit.h"

namespace QvRefSystem {

/// The dialog of geocentric systems. A geocentric system may stand on a datum, and need not.
class TformQvRfRefSystemGeocEdit final : public SystemEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` must outlive it.
  TformQvRfRefSystemGeocEdit(QWidget* owner, const Chooser& chooser)
      : SystemEdit(owner, chooser, kGeocSystemForm) {}

 protected:
  void OnShowRecord() override;
  void WriteMore(QvPlatform::TQvDataSet& dataSet) override;
};

}  // namespace QvRefSystem
