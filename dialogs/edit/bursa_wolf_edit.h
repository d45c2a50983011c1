#pragma once

#include "dialogs/base/described_edit.h"
#include "forms/form_descriptions.h"

namespace QvRefSystem {

/// The dialog of datum shifts of seven parameters, which are of one of two types.
class TformQvRfDatumShiftBursaWolfEdit final : public DescribedEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` must outlive it.
  TformQvRfDatumShiftBursaWolfEdit(QWidget* owner, const Chooser& chooser)
      : DescribedEdit(owner, chooser, kBursaWolfForm) {}

  /// The TYPE that a new record gets; that of an existing one never changes.
  void SetShiftType(int type) { shiftType_ = type; }

 protected:
  void WriteMore(QvPlatform::TQvDataSet& dataSet) override;

 private:
  int shiftType_ = kBursaWolfForm.type;
};

}  // namespace QvRefSystem
