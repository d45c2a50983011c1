#pragma once

#include <array>
#include <string>

#include "platform/geocore/system_model.h"

namespace QvRefSystem {

/// A geodetic or projected system before it is stored. What it refers to stands in the tables and
/// is told by keys, 0 for none.
struct UnstoredSystem {
  SystemKind kind = SystemKind::kGeodetic;
  std::string name;
  std::string description;
  std::string abbreviation;
  std::array<std::string, 3> axes;
  int linearUnit = 0;
  /// Of a geodetic system.
  int angularUnit = 0;
  /// Counts where there is no datum.
  int ellipsoid = 0;
  int datum = 0;
  int primeMeridian = 0;
  /// Of a projected system.
  int mapProjection = 0;
  /// Of a geodetic system: longitudes run from 0 to 360 degrees.
  bool positiveLongitude = false;
};

}  // namespace QvRefSystem
