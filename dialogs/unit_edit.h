#pragma once

#include "dialogs/described_edit.h"
#include "processors/form_descriptions.h"

class QLabel;

namespace QvRefSystem {

/// The dialog of all units: a unit is told by an equation, so many base units are so many of it.
class TUnitEdit : public TDescribedEdit {
 public:
  TUnitEdit(QWidget* owner, const TFormDescription& form, const char* baseUnit);

 protected:
  void OnNewRecord() override;
  void OnEditRecord() override { ShowShortName(); }
  void OnRead() override;
  void SetFactorsEnabled(bool enabled);

 private:
  void BuildEquation(const char* baseUnit);
  void ShowShortName();

  QLabel* lblThisUnitAbbreviation_ = nullptr;
};

class TformQvRfLinearUnitEdit final : public TUnitEdit {
 public:
  explicit TformQvRfLinearUnitEdit(QWidget* owner) : TUnitEdit(owner, kLinearUnitForm, "m") {}
};

/// The factors of an angular unit whose CODE is not 0 cannot be changed.
class TformQvRfAngularUnitEdit final : public TUnitEdit {
 public:
  explicit TformQvRfAngularUnitEdit(QWidget* owner) : TUnitEdit(owner, kAngularUnitForm, "rad") {}

 protected:
  void OnEditRecord() override;
};

class TformQvRfScaleUnitEdit final : public TUnitEdit {
 public:
  explicit TformQvRfScaleUnitEdit(QWidget* owner) : TUnitEdit(owner, kScaleUnitForm, "1") {}
};

}  // namespace QvRefSystem
