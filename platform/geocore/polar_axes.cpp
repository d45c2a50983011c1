#include "platform/geocore/polar_axes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

struct PolarMethod {
  /// EPSG method code, and the parameters that tell the pole and the origin's meridian.
  int method;
  int latitude;
  int longitude;
  /// The latitude is that of a standard parallel, of which only the sign matters; else it must be
  /// that of a pole.
  bool latitudeIsParallel;
};

// Lambert azimuthal equal area (ellipsoidal and spherical), polar stereographic variants A, B, C.
constexpr PolarMethod kPolarMethods[] = {
    {1027, 8801, 8802, false}, {9810, 8801, 8802, false}, {9820, 8801, 8802, false},
    {9829, 8832, 8833, true},  {9830, 8832, 8833, true},
};

constexpr double kPole = 90;
constexpr double kPoleTolerance = 1e-9;

// Degrees; nothing for a parameter that is missing or no number.
std::optional<double> AngleOf(const ProjectionModel& projection, int code) {
  const auto found =
      std::ranges::find(projection.parameters, code, &ProjectionParameterModel::code);
  double value = 0;
  if (found == projection.parameters.end() || !projection.angularUnit ||
      !QvPlatform::TextToDouble(found->value, &value)) {
    return std::nullopt;
  }
  const UnitModel& unit = *projection.angularUnit;
  return value * (unit.factorB / unit.factorC) * (180 / std::numbers::pi);
}

}  // namespace

double PolarAspect::MeridianOf(bool northing, int sign) const {
  double turn = northing ? (northPole ? 180 : 0) : 90;
  if (sign < 0) turn += 180;
  // The origin was computed from radians: rounding to a nanodegree gives the entered degrees back.
  const double degrees = std::round((originLongitude + turn) * 1e9) / 1e9;
  const double within = std::remainder(degrees, 360);
  return within <= -180 ? within + 360 : within;
}

std::optional<PolarAspect> PolarAspectOf(const ProjectionModel& projection) {
  const auto* method = std::ranges::find(kPolarMethods, projection.method, &PolarMethod::method);
  if (method == std::end(kPolarMethods)) return std::nullopt;
  const auto latitude = AngleOf(projection, method->latitude);
  const auto longitude = AngleOf(projection, method->longitude);
  if (!latitude || !longitude) return std::nullopt;
  const bool atPole =
      method->latitudeIsParallel || std::abs(std::abs(*latitude) - kPole) < kPoleTolerance;
  if (!atPole) return std::nullopt;
  return PolarAspect{*latitude > 0, *longitude};
}

}  // namespace QvRefSystem
