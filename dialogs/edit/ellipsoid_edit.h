#pragma once

#include "dialogs/base/described_edit.h"
#include "forms/form_descriptions.h"

namespace QvRefSystem {

/// The dialog of ellipsoids. The minor semi-axis, the flattening or the word "sphere" tells the
/// shape; the values of the others are kept as they are, but for a sphere's minor semi-axis, which
/// is its major one.
class TformQvRfEllipsoidEdit final : public DescribedEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` must outlive it.
  TformQvRfEllipsoidEdit(QWidget* owner, const Chooser& chooser)
      : DescribedEdit(owner, chooser, kEllipsoidForm) {}

  /// With `on`, the dialog makes and edits spheres, and its shape cannot be changed.
  void SetSphereOnly(bool on);

 protected:
  void OnNewRecord() override;
  void OnShowRecord() override;
  void OnRead() override;
  void WriteMore(QvPlatform::TQvDataSet& dataSet) override;

 private:
  bool sphereOnly_ = false;
};

}  // namespace QvRefSystem
