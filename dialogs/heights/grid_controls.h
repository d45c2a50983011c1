#pragma once

#include <array>

#include "platform/geocore/shell_reference_system.h"

class QGridLayout;
class QLabel;
class QLineEdit;
class QString;
class QWidget;

namespace QvRefSystem {

/// The edits of a data grid, laid out as on a map: north above, west on the left. Extents and cells
/// are shown and read as texts, as they stand.
class GridControls {
 public:
  /// The parts of a grid in the order in which Tab walks them.
  enum Part { kNorth, kWest, kEast, kSouth, kStepWE, kStepNS, kPartCount };

  /// The names are "ed" and, for the labels of the four sides, "lbl", then `prefix`, then
  /// "DataGridExtentsNorth" and the like.
  GridControls(QWidget* box, const QString& prefix);

  [[nodiscard]] TShell2DTableExtents Extents() const;
  void ShowExtents(const TShell2DTableExtents& extents);
  /// Labels the sides by the axes of a system. Blanks them, with false, if it cannot be asked.
  [[nodiscard]] bool ShowAxes(const TShellReferenceSystem& system);
  void ClearAxes();
  void SetReadOnly();

  [[nodiscard]] QLineEdit* Edit(Part part) const { return edits_[part]; }
  [[nodiscard]] QGridLayout* Layout() const { return layout_; }

 private:
  QGridLayout* layout_;
  std::array<QLineEdit*, kPartCount> edits_{};
  /// Axis labels of the sides, captions of the steps.
  std::array<QLabel*, kPartCount> labels_{};
};

}  // namespace QvRefSystem
