#pragma once

#include "dialogs/edit/system_edit.h"

namespace QvRefSystem {

class OriginGrid;

/// The dialog of a system whose origin has coordinates, which stand in a grid.
class OriginEdit : public SystemEdit {
 public:
  /// The owner owns the dialog, and hides while it runs; `chooser` and `form` must outlive it. The
  /// rows of the form that stand in a panel become the cells of the grid.
  OriginEdit(QWidget* owner, const Chooser& chooser, const FormDescription& form);

 protected:
  /// The grid of the coordinates, which lives as long as the dialog.
  [[nodiscard]] OriginGrid& Origin() { return *strgridOrigin_; }
  /// Shows the units of the coordinates as the tip of the grid; an empty text shows no tip.
  void SetOriginHint(const QString& units);

 private:
  OriginGrid* strgridOrigin_ = nullptr;
};

}  // namespace QvRefSystem
