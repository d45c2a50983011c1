#pragma once

#include "dialogs/base/described_edit.h"
#include "forms/form_descriptions.h"

namespace QvRefSystem {

/// The dialog of datums. In simple mode each datum has a shift of its own, which is made and edited
/// from here without a list.
class TformQvRfDatumEdit final : public DescribedEdit {
 public:
  TformQvRfDatumEdit(QWidget* owner, const Chooser& chooser)
      : DescribedEdit(owner, chooser, kDatumForm) {}

 protected:
  [[nodiscard]] bool Choose(const FormRow& row) override;
};

/// The dialog of datum shifts of seven parameters, which are of one of two types.
class TformQvRfDatumShiftBursaWolfEdit final : public DescribedEdit {
 public:
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
