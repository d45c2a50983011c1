#pragma once

#include "dialogs/system_edit.h"

namespace QvRefSystem {

class TOriginGrid;

/// The dialog of a system whose origin has coordinates, which stand in a grid.
class TOriginEdit : public TSystemEdit {
 public:
  TOriginEdit(QWidget* owner, const TFormDescription& form);

 protected:
  [[nodiscard]] TOriginGrid& Origin() { return *strgridOrigin_; }
  /// Tells the units of the coordinates; "" for none.
  void SetOriginHint(const QString& units);

 private:
  TOriginGrid* strgridOrigin_ = nullptr;
};

/// A local system is a plane on a sphere. Its origin is told in its own axes and unit.
class TformQvRfRefSystemLocalEdit final : public TOriginEdit {
 public:
  explicit TformQvRfRefSystemLocalEdit(QWidget* owner);

 protected:
  [[nodiscard]] bool Choose(const TFormRow& row) override;
};

/// A topocentric system stands on a geodetic one, in whose axes and units its origin is told.
class TformQvRfRefSystemTopoEdit final : public TOriginEdit {
 public:
  explicit TformQvRfRefSystemTopoEdit(QWidget* owner);

 protected:
  void OnNewRecord() override;
  void OnEditRecord() override;
  void OnRead() override;
  [[nodiscard]] bool Choose(const TFormRow& row) override;
  void OnChosen(const TFormRow& row) override;

 private:
  void ShowPrimary();
};

}  // namespace QvRefSystem
