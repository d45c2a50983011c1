#pragma once

#include "platform/geocore/system_model.h"

/// The World Geodetic System 1984, in whose geocentric frame all systems meet.
namespace QvRefSystem::Wgs84 {

/// The name of the system and of its ellipsoid.
inline constexpr char kName[] = "WGS 84";
/// The name of its datum.
inline constexpr char kDatumName[] = "World Geodetic System 1984";
/// The semi-major axis of the ellipsoid in metres.
inline constexpr int kSemiMajorAxis = 6378137;
/// 1 / f of the ellipsoid.
inline constexpr double kInverseFlattening = 298.257223563;
/// EPSG code of the system of latitude and longitude.
inline constexpr int kGeographic2D = 4326;
/// EPSG code of the system of latitude, longitude and ellipsoidal height.
inline constexpr int kGeographic3D = 4979;

/// The ellipsoid as a record holds it, in metres.
[[nodiscard]] EllipsoidModel Ellipsoid();
/// Latitude and longitude in degrees from Greenwich on the ellipsoid alone, heights in metres.
[[nodiscard]] SystemModel Geographic();

}  // namespace QvRefSystem::Wgs84
