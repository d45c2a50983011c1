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

  /// Makes the controls in `box`, which owns them. The names are "ed" and, for the labels of the
  /// four sides, "lbl", then `prefix`, then "DataGridExtentsNorth" and the like.
  GridControls(QWidget* box, const QString& prefix);

  /// The grid as it stands in the edits, as texts, which need not be numbers.
  [[nodiscard]] TShell2DTableExtents Extents() const;
  /// Shows a grid in the edits.
  void ShowExtents(const TShell2DTableExtents& extents);
  /// Labels the sides by the axes of a system. Returns false, and blanks the labels, if the system
  /// cannot tell its axes.
  [[nodiscard]] bool ShowAxes(const TShellReferenceSystem& system);
  /// Blanks the labels of the sides.
  void ClearAxes();
  /// Keeps the user from changing the grid.
  void SetReadOnly();

  /// The edit of a part, which lives as long as the box.
  [[nodiscard]] QLineEdit* Edit(Part part) const { return edits_[part]; }
  /// The layout of the box, into which more controls can be put.
  [[nodiscard]] QGridLayout* Layout() const { return layout_; }

 private:
  QGridLayout* layout_;
  std::array<QLineEdit*, kPartCount> edits_{};
  /// The labels of the sides bear the names of the axes, those of the steps their captions.
  std::array<QLabel*, kPartCount> labels_{};
};

}  // namespace QvRefSystem
