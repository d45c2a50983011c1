#pragma once

#include "dialogs/base/described_edit.h"
#include "forms/form_descriptions.h"

class QLabel;

namespace QvRefSystem {

/// The dialog of all units: a unit is told by an equation, so many base units are so many of it.
class UnitEdit : public DescribedEdit {
 public:
  UnitEdit(QWidget* owner, const Chooser& chooser, const FormDescription& form,
           const char* baseUnit);

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

class TformQvRfLinearUnitEdit final : public UnitEdit {
 public:
  TformQvRfLinearUnitEdit(QWidget* owner, const Chooser& chooser)
      : UnitEdit(owner, chooser, kLinearUnitForm, "m") {}
};

/// The factors of an angular unit whose CODE is not 0 cannot be changed.
class TformQvRfAngularUnitEdit final : public UnitEdit {
 public:
  TformQvRfAngularUnitEdit(QWidget* owner, const Chooser& chooser)
      : UnitEdit(owner, chooser, kAngularUnitForm, "rad") {}

 protected:
  void OnEditRecord() override;
};

class TformQvRfScaleUnitEdit final : public UnitEdit {
 public:
  TformQvRfScaleUnitEdit(QWidget* owner, const Chooser& chooser)
      : UnitEdit(owner, chooser, kScaleUnitForm, "1") {}
};

}  // namespace QvRefSystem
