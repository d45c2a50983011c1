#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/data/grid_extents.h"
#include "platform/data/height_kind.h"
#include "platform/data/height_table.h"

namespace QvRefSystem {

/// Heights as they are stored: a table on its grid, or an offset.
struct HeightData {
  /// The table; null where there is none.
  std::unique_ptr<THeightTable> Table;
  /// The grid of the table in the plane of its owner, as decimal texts in the C notation.
  TShell2DTableExtents Grid;
  /// The offset as a decimal text in the C notation; empty where there is none.
  std::string Offset;
  /// The key of the offset's linear unit; 0 where there is none.
  int OffsetUnit = 0;

  /// A table before an offset; nothing where there are no data, or an offset without its unit.
  [[nodiscard]] std::optional<HeightKind> Kind() const;
};

/// How well a constant offset stands in for heights, with the texts of
/// TShellReferenceSystem::ApproximateHeights.
struct HeightApproximation {
  /// The offset, in the unit of the label.
  std::string Offset;
  /// The root mean square of the errors, in the same unit.
  std::string Rms;
  /// The greatest magnitude of an error, in the same unit.
  std::string Max;
  /// The unit, such as "metre (m)".
  std::string UnitLabel;
  /// The name of the system, or the path of the file, that the offset stands in for.
  std::string SourceName;
  /// Height less offset at each node of the grid.
  THeightTable Errors;
};

}  // namespace QvRefSystem
