#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/data/height_table.h"

/// Limits, cells and counts of a grid: what makes a grid of six numbers, and how they become texts.
namespace QvRefSystem {

/// Limits and cells of a grid as decimal texts in C notation.
using TShell2DTableExtents = QvCommonUtils::T2DTableExtents<std::string>;
/// The same as numbers, in the unit of the grid's plane.
using GridExtents = QvCommonUtils::T2DTableExtents<double>;

/// How many nodes a grid has along its axes, 1 at least.
struct GridCounts {
  /// Nodes from west to east.
  std::uint32_t x = 0;
  /// Nodes from south to north.
  std::uint32_t y = 0;
};

/// Whether six finite numbers make a grid: limits are in order, or the same, and cells above 0.
[[nodiscard]] bool IsGrid(const GridExtents& extents);
/// The counts nearest to the spans divided by the cells. Nothing for what is no grid, for a count
/// that does not fit into 32 bits, and for more nodes than memory can address.
[[nodiscard]] std::optional<GridCounts> CountNodes(const GridExtents& extents);
/// The limits and cells of a table that holds a node at least.
[[nodiscard]] GridExtents ExtentsOf(const THeightTable& table);

/// The numbers of the texts. Nothing if one of them is no finite number or all make no grid.
[[nodiscard]] std::optional<GridExtents> ParseExtents(const TShell2DTableExtents& texts);
/// The shortest texts of the numbers rounded to so many significant digits, 1 at least: what
/// computing has left beyond them does not show.
[[nodiscard]] TShell2DTableExtents FormatExtents(const GridExtents& extents, int digits = 12);

}  // namespace QvRefSystem
