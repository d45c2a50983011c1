#pragma once

#include "platform/ctui/ctui.h"

namespace refframe_tests {

/// DHDN with 3 degree zones of Gauss-Krueger on the Bessel ellipsoid, northing first, without a
/// shift of its own: zone 4 is the registry's EPSG:31468 but for its name.
inline QvPlatform::TProjectionInfo311 GaussKrueger() {
  QvPlatform::TProjectionInfo311 info;
  info.SystemName = "Old Gauss-Krueger of the survey";
  info.ProjectionName = "Gauss-Krueger, 3 degrees";
  info.NorthingFirst = 1;
  info.Method = 9807;
  info.EllipsoidName = "Bessel 1841";
  info.UnitName = "metre";
  info.UnitFactor = 1;
  info.SemiMajorAxis = 6377397.155;
  info.InverseFlattening = 299.1528128;
  info.DatumName = "Deutsches Hauptdreiecksnetz";
  info.ZoneWidth = 3;
  info.Parameters = {{8801, 0}, {8802, 0}, {8805, 1}, {8806, 500000}, {8807, 0}};
  return info;
}
inline constexpr std::uint32_t kGaussKruegerFlags =
    QvPlatform::kLegacyProjected | QvPlatform::kLegacyZones;

}  // namespace refframe_tests
