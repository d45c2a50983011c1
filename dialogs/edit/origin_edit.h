#pragma once

#include "dialogs/edit/system_edit.h"

namespace QvRefSystem {

class OriginGrid;

/// The dialog of a system whose origin has coordinates, which stand in a grid.
class OriginEdit : public SystemEdit {
 public:
  OriginEdit(QWidget* owner, const Chooser& chooser, const FormDescription& form);

 protected:
  [[nodiscard]] OriginGrid& Origin() { return *strgridOrigin_; }
  /// Tells the units of the coordinates; "" for none.
  void SetOriginHint(const QString& units);

 private:
  OriginGrid* strgridOrigin_ = nullptr;
};

/// A local system is a plane on a sphere. Its origin is told in its own axes and unit.
class TformQvRfRefSystemLocalEdit final : public OriginEdit {
 public:
  TformQvRfRefSystemLocalEdit(QWidget* owner, const Chooser& chooser);

 protected:
  [[nodiscard]] bool Choose(const FormRow& row) override;
};

/// A topocentric system stands on a geodetic one, in whose axes and units its origin is told.
class TformQvRfRefSystemTopoEdit final : public OriginEdit {
 public:
  TformQvRfRefSystemTopoEdit(QWidget* owner, const Chooser& chooser);

 protected:
  void OnNewRecord() override;
  void OnEditRecord() override;
  void OnRead() override;
  [[nodiscard]] bool Choose(const FormRow& row) override;
  void OnChosen(const FormRow& row) override;

 private:
  void ShowPrimary();
};

}  // namespace QvRefSystem
