#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>

#include "platform/geocore/shell_reference_system.h"

/// The geometry of grids, free of how systems compute.
namespace QvRefSystem {

/// A step that reads well: 1, 1.2, 1.25, 1.5, 2, 2.5, 3, 4, 5, 6, 7.5 or 8 times a power of ten.
/// Its multiples come out as the doubles next to their decimal numbers, so that their shortest
/// texts are as short as they look.
class ReadableStep {
 public:
  /// The greatest step that is not above `limit`, or a thousandth at most; `divides`, if not 0,
  /// must be a multiple of it, if a step near the limit is one. The limit must be above 0 and
  /// finite.
  [[nodiscard]] static ReadableStep AtMost(double limit, double divides = 0);

  [[nodiscard]] double Value() const { return Multiple(1); }
  [[nodiscard]] double Multiple(double count) const;
  /// The multiples on the outer side of a coordinate; one that lies within a millionth of a step
  /// beside a multiple counts as that multiple.
  [[nodiscard]] double CountBelow(double coordinate) const;
  [[nodiscard]] double CountAbove(double coordinate) const;

 private:
  ReadableStep(int digits, int exponent) : digits_(digits), exponent_(exponent) {}

  /// The step is digits_ times ten to the power exponent_.
  int digits_;
  int exponent_;
};

/// A plane as far as grids ask: X runs to the east, Y to the north, or both the other way.
struct GridPlane {
  /// The full circle in the plane's unit where X is a longitude and Y a latitude, otherwise 0.
  double fullCircle = 0;
  /// Longitudes are written from 0 to the full circle, otherwise from minus to plus half of it.
  bool positive = false;

  [[nodiscard]] bool IsGeographic() const { return fullCircle != 0; }
  [[nodiscard]] double Pole() const { return fullCircle / 4; }
  [[nodiscard]] double FirstLongitude() const { return positive ? 0 : -fullCircle / 2; }
};

/// How the places of one plane (X in First, Y in Second) move to another one and back. A place
/// without an image becomes HUGE_VAL.
struct GroundMap {
  using Move = std::function<void(std::span<TShellPoint>)>;

  GridPlane source;
  GridPlane target;
  Move forward;
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
