#pragma once

#include <functional>
#include <optional>

#include "platform/data/grid_extents.h"
#include "platform/geocore/points.h"

/// The geometry of grids, free of how systems compute.
namespace QvRefSystem {

/// A plane as far as grids ask: X runs to the east, Y to the north, or both the other way.
struct GridPlane {
  /// The full circle in the plane's unit where X is a longitude and Y a latitude, otherwise 0.
  double fullCircle = 0;
  /// Longitudes are written from 0 to the full circle, otherwise from minus to plus half of it.
  bool positive = false;

  /// Whether X is a longitude.
  [[nodiscard]] bool IsGeographic() const { return fullCircle != 0; }
  /// The latitude of the north pole, and without its sign of the south pole.
  [[nodiscard]] double Pole() const { return fullCircle / 4; }
  /// The least longitude that the plane writes.
  [[nodiscard]] double FirstLongitude() const { return positive ? 0 : -fullCircle / 2; }
};

/// How the places of one plane move to another one and back, in place. A place without an image
/// fails.
struct GroundMap {
  using Move = std::function<void(Points<TablePlane>)>;

  /// The plane that `forward` starts from.
  GridPlane source;
  /// The plane that `forward` leads to.
  GridPlane target;
  /// From the source to the target.
  Move forward;
  /// From the target to the source.
  Move backward;
};

/// The grid of the target plane that covers the ground of a grid of the source plane: limits are
/// multiples of the cells, cells are no coarser on the ground than those of the source, to a
/// thousandth. Where the source's meridians converge and make its cells slimmer than a quarter of
/// what they are where they are widest, that slimness counts no further: else a grid that reaches a
/// pole would ask for endlessly small cells.
///
/// Nothing if no place of the ground has an image.
[[nodiscard]] std::optional<GridExtents> CoverGround(const GridExtents& source,
                                                     const GroundMap& map);

}  // namespace QvRefSystem
