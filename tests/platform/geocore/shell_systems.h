#pragma once

#include <memory>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include "platform/geocore/definition_from_model.h"
#include "platform/geocore/shell_reference_system.h"

/// Systems made of their numbers, for the tests of computations.
namespace refframe_tests {

using QvRefSystem::SystemKind;
using QvRefSystem::SystemModel;
using QvRefSystem::TShellPoint;
using QvRefSystem::TShellReferenceSystem;
using QvRefSystem::UnitModel;

inline UnitModel Unit(double b, double c = 1, const std::string& name = "unit") {
  UnitModel unit;
  unit.name = name;
  unit.factorB = b;
  unit.factorC = c;
  return unit;
}

inline UnitModel Degree() {
  return Unit(std::numbers::pi, 180, "degree");
}

inline UnitModel Grad() {
  return Unit(std::numbers::pi, 200, "grad");
}

/// Geodetic on WGS 84 without a shift, in degrees and metres from Greenwich.
inline SystemModel Wgs84() {
  SystemModel system;
  system.name = "WGS 84";
  system.angularUnit = Degree();
  system.primeMeridian.name = "Greenwich";
  system.primeMeridian.longitude = "0";
  system.primeMeridian.unit = Degree();
  system.ellipsoid.emplace();
  system.ellipsoid->name = "WGS 84";
  system.ellipsoid->a = "6378137";
  system.ellipsoid->useF = true;
  system.ellipsoid->f = 1 / 298.257223563;
  return system;
}

inline SystemModel Geocentric() {
  SystemModel system = Wgs84();
  system.kind = SystemKind::kGeocentric;
  return system;
}

/// Gives the system a datum of its ellipsoid with a shift in metres, arc-seconds and parts per
/// million.
inline void SetShift(SystemModel* system, int type, std::vector<std::string> values) {
  system->datum.emplace();
  system->datum->name = "datum";
  system->datum->ellipsoid = *system->ellipsoid;
  system->ellipsoid.reset();
  auto& shift = system->datum->shift;
  shift.type = type;
  values.resize(7, "0");
  std::string* const parameters[] = {&shift.tx, &shift.ty, &shift.tz, &shift.rx,
                                     &shift.ry, &shift.rz, &shift.s};
  for (int i = 0; i < 7; ++i)
    *parameters[i] = values[i];
  shift.angularUnit = Unit(std::numbers::pi, 180 * 3600);
  shift.scaleUnit = Unit(1, 1e6);
}

using ParameterValues = std::vector<std::pair<int, std::string>>;

/// A projection in degrees, metres and unity on the base of `system`, with east and north axes.
inline SystemModel Projected(SystemModel system, int method, const ParameterValues& values) {
  system.kind = SystemKind::kProjected;
  system.name = "plane";
  auto& projection = system.projection.emplace();
  projection.name = "projection";
  projection.method = method;
  for (const auto& [code, value] : values)
    projection.parameters.push_back({code, "parameter", value});
  projection.linearUnit = projection.scaleUnit = UnitModel{};
  projection.angularUnit = Degree();
  return system;
}

inline SystemModel Utm(SystemModel base, const std::string& meridian) {
  return Projected(
      std::move(base), 9807,
      {{8801, "0"}, {8802, meridian}, {8805, "0.9996"}, {8806, "500000"}, {8807, "0"}});
}

inline SystemModel Topocentric(SystemModel primary, std::vector<std::string> origin,
                               const std::string& azimuth = {}) {
  SystemModel system;
  system.kind = SystemKind::kTopocentric;
  system.name = "horizon";
  system.primary = std::make_shared<SystemModel>(std::move(primary));
  for (int i = 0; i < 3; ++i)
    system.origin[i] = origin[i];
  system.azimuth = azimuth;
  return system;
}

inline SystemModel InFeet(SystemModel system) {
  system.linearUnit = Unit(0.3048);
  return system;
}

inline SystemModel InGrads(SystemModel system) {
  system.angularUnit = Grad();
  return system;
}

/// With longitudes from 0 to 360 degrees.
inline SystemModel Positive(SystemModel system) {
  system.positiveLongitude = true;
  return system;
}

/// The plane with its axes the other way round: other numbers first, the same places.
inline SystemModel NorthFirst(SystemModel system) {
  system.projection->swap = true;
  return system;
}

/// The plane with both axes turned round.
inline SystemModel SouthWest(SystemModel system) {
  system.projection->axisSign[0] = system.projection->axisSign[1] = -1;
  return system;
}

/// Heights over a table (kind 1) or an offset (kind 2) in a unit of so many metres.
inline SystemModel WithHeights(SystemModel system, int kind, const std::string& offset = {},
                               double offsetMetres = 1) {
  system.heights.emplace();
  system.heights->kind = static_cast<QvRefSystem::HeightKind>(kind);
  system.heights->offset = offset;
  system.heights->offsetUnit = Unit(offsetMetres);
  return system;
}

inline TShellReferenceSystem Shell(
    SystemModel model, std::shared_ptr<const QvRefSystem::THeightTable> table = nullptr) {
  return TShellReferenceSystem(
      QvRefSystem::DefinitionFromModel(std::move(model), std::move(table)));
}

/// One point on its way; three times HUGE_VAL if it fails.
inline TShellPoint Move(const TShellReferenceSystem& from, const TShellReferenceSystem& to,
                        TShellPoint point) {
  (void)from.Transform(to, {&point, 1});
  return point;
}

}  // namespace refframe_tests
