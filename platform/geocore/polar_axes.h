#pragma once

#include <optional>

#include "platform/geocore/system_model.h"

namespace QvRefSystem {

/// The pole on which a projection is centred. There all axes point south (north pole) or north
/// (south pole), each along a meridian of its own: the northing grows along the meridian of the
/// origin (south pole) or the one opposite (north pole), the easting 90 degrees east of the origin.
struct PolarAspect {
  /// Whether it is the north pole.
  bool northPole = false;
  /// Degrees from the system's prime meridian.
  double originLongitude = 0;

  /// Meridian along which a northing (or else an easting) of that sign grows, in degrees above
  /// -180 and up to 180.
  [[nodiscard]] double MeridianOf(bool northing, int sign) const;
};

/// The aspect of a projection, or nothing if it is not centred on a pole. Angles are taken in the
/// projection's angular unit.
[[nodiscard]] std::optional<PolarAspect> PolarAspectOf(const ProjectionModel& projection);

}  // namespace QvRefSystem
