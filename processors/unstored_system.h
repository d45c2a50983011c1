#pragma once

#include <array>
#include <string>

#include "platform/geocore/system_model.h"

namespace QvRefSystem {

/// A geodetic or projected system before it is stored. What it refers to stands in the tables and
/// is told by keys, 0 for none.
struct UnstoredSystem {
  /// Geodetic or projected.
  SystemKind kind = SystemKind::kGeodetic;
  /// NAME of the record that would be.
  std::string name;
  /// DESCRIPTION of it.
  std::string description;
  /// ABBREVIATION of it.
  std::string abbreviation;
  /// The abbreviations of the axes, the height last.
  std::array<std::string, 3> axes;
  /// Unit of the plane and of the heights.
  int linearUnit = 0;
  /// Of a geodetic system.
  int angularUnit = 0;
  /// Counts where there is no datum.
  int ellipsoid = 0;
  /// 0 for a system that has an ellipsoid alone.
  int datum = 0;
  /// Where its longitudes count from.
  int primeMeridian = 0;
  /// Of a projected system.
  int mapProjection = 0;
  /// Of a geodetic system: longitudes run from 0 to 360 degrees.
  bool positiveLongitude = false;
};

}  // namespace QvRefSystem
