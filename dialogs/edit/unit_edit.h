#pragma once

#include "dialogs/base/described_edit.h"
#include "forms/form_descriptions.h"

class QLabel;

namespace QvRefSystem {

/// The dialog of all units: a unit is told by an equation, so many base units are so many of it.
class UnitEdit : public DescribedEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` and `form` must outlive it.
  /// `baseUnit` is the abbreviation of the unit that the other side of the equation counts.
  UnitEdit(QWidget* owner, const Chooser& chooser, const FormDescription& form,
           const char* baseUnit);

 protected:
  void OnNewRecord() override;
  void OnShowRecord() override { ShowShortName(); }
  void OnRead() override;
  /// Lets the user change both factors, or neither.
  void SetFactorsEnabled(bool enabled);

 private:
  void BuildEquation(const char* baseUnit);
  void ShowShortName();

  QLabel* lblThisUnitAbbreviation_ = nullptr;
};

/// The dialog of linear units, told in metres.
class TformQvRfLinearUnitEdit final : public UnitEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` must outlive it.
  TformQvRfLinearUnitEdit(QWidget* owner, const Chooser& chooser)
      : UnitEdit(owner, chooser, kLinearUnitForm, "m") {}
};

/// The dialog of angular units, told in radians. The factors of a unit whose CODE is not 0 cannot
/// be changed.
class TformQvRfAngularUnitEdit final : public UnitEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` must outlive it.
  TformQvRfAngularUnitEdit(QWidget* owner, const Chooser& chooser)
      : UnitEdit(owner, chooser, kAngularUnitForm, "rad") {}

 protected:
  void OnShowRecord() override;
};

/// The dialog of units of scale, told in units of one.
class TformQvRfScaleUnitEdit final : public UnitEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` must outlive it.
  TformQvRfScaleUnitEdit(QWidget* owner, const Chooser& chooser)
      : UnitEdit(owner, chooser, kScaleUnitForm, "1") {}
};

}  // namespace QvRefSystem
