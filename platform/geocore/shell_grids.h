#pragma once

#include <optional>

#include "platform/data/grid_extents.h"
#include "platform/geocore/shell_definition.h"

/// Grids in the planes of systems.
namespace QvRefSystem {

/// Sizes a table of zeros for the grid, with cells and the south-west node as given. The table is
/// empty where the texts make no grid, and for more nodes than can be held.
void SizeTable(const TShell2DTableExtents& extents, THeightTable* table);

/// The grid in the plane of `to` that covers the ground of a grid in the plane of `from`, as
/// CoverGround does; in the same plane the grid itself. Nothing if the texts are no grid or the
/// ground has no image.
[[nodiscard]] std::optional<TShell2DTableExtents> CoverTable(const ShellDefinition& from,
                                                             const TShell2DTableExtents& extents,
                                                             const ShellDefinition& to);
/// The same for the grid of a table that holds a node at least.
[[nodiscard]] std::optional<TShell2DTableExtents> CoverTable(const ShellDefinition& from,
                                                             const THeightTable& table,
                                                             const ShellDefinition& to);
/// The same for the grid of the system's own heights: its table, or the grid of its built-in geoid
/// if PROJ knows the limits. Nothing for other heights.
[[nodiscard]] std::optional<TShell2DTableExtents> CoverOwnHeights(const ShellDefinition& from,
                                                                  const ShellDefinition& to);

}  // namespace QvRefSystem
