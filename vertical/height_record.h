#pragma once

#include <string>

#include "platform/data/grid_extents.h"
#include "platform/data/height_table.h"

namespace QvRefSystem {

/// What becomes a record of a height system that is made here: a table on its grid or, without one,
/// an offset in a linear unit.
struct HeightRecord {
  /// NAME, after which a height file is named as well.
  std::string Name;
  /// ABBREVIATION.
  std::string Abbreviation;
  /// DESCRIPTION.
  std::string Description;
  /// The heights, in the unit of the owner's heights. Null for an offset. Must live while the
  /// record is stored.
  const THeightTable* Table = nullptr;
  /// The grid of the table in the plane of the owner, as decimal texts in the C notation.
  TShell2DTableExtents Grid;
  /// The offset as a decimal text in the C notation; not stored beside a table.
  std::string Offset;
  /// The key of the offset's linear unit; not stored beside a table.
  int OffsetUnit = 0;
};

}  // namespace QvRefSystem
