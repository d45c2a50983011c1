#include "platform/geocore/shell_definition.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/text/text.h"

namespace QvRefSystem {

bool ShellDefinition::IsOnEarth() const {
  return Kind() != SystemKind::kLocal && Kind() != SystemKind::kLocalCartesian;
}

bool ShellDefinition::HasLatitude() const {
  return Kind() == SystemKind::kGeodetic || Kind() == SystemKind::kProjected;
}

TShellPoint ShellDefinition::FromPlane(double x, double y, double h) const {
  return isNorthFirst ? TShellPoint{y, x, h} : TShellPoint{x, y, h};
}

TShellPoint ShellDefinition::ToPlane(const TShellPoint& point) const {
  return FromPlane(point.First, point.Second, point.Third);
}

double ShellDefinition::PlaneUnit() const {
  return Kind() == SystemKind::kGeodetic ? angularUnit : heightUnit;
}

double ShellDefinition::FullTurn() const {
  return Kind() == SystemKind::kGeodetic ? 2 * std::numbers::pi / angularUnit : 0;
}

bool ShellDefinition::HasSameDatum(const ShellDefinition& other) const {
  return SameShape(shape, other.shape) && SameFrame(frame, other.frame);
}

bool ShellDefinition::HasSameProjection(const ShellDefinition& other) const {
  const ProjectionModel& a = *model.projection;
  const ProjectionModel& b = *other.model.projection;
  if (a.method != b.method || a.swap != b.swap || a.axisSign[0] != b.axisSign[0] ||
      a.axisSign[1] != b.axisSign[1]) {
    return false;
  }
  return std::ranges::equal(parameters, other.parameters, SameNumber);
}

bool ShellDefinition::HasSameOrigin(const ShellDefinition& other) const {
  for (int i = 0; i < 3; ++i) {
    // A tenth of a micrometre and the angle that it spans on the Earth.
    if (std::abs(horizon.origin[i] - other.horizon.origin[i]) > 1e-7) return false;
    for (int j = 0; j < 3; ++j) {
      if (std::abs(horizon.axes[i][j] - other.horizon.axes[i][j]) > 1e-14) return false;
    }
  }
  return true;
}

namespace {

// Origins of local systems are texts that nobody checks: two that are no numbers are one if they
// read the same.
bool SameText(const std::string& a, const std::string& b) {
  double first = 0;
  double second = 0;
  if (!QvPlatform::TextToDouble(a, &first) || !QvPlatform::TextToDouble(b, &second)) {
    return QvPlatform::TrimView(a) == QvPlatform::TrimView(b);
  }
  return SameNumber(first, second);
}

}  // namespace

bool ShellDefinition::HasSamePlane(const ShellDefinition& other) const {
  if (Kind() != other.Kind() || isNorthFirst != other.isNorthFirst) return false;
  if (!SameNumber(PlaneUnit(), other.PlaneUnit())) return false;
  switch (Kind()) {
    case SystemKind::kGeodetic:
      return SameNumber(primeMeridian, other.primeMeridian) && HasSameDatum(other) &&
             model.positiveLongitude == other.model.positiveLongitude;
    case SystemKind::kProjected:
      return SameNumber(primeMeridian, other.primeMeridian) && HasSameDatum(other) &&
             HasSameProjection(other);
    case SystemKind::kGeocentric:
      return SameNumber(primeMeridian, other.primeMeridian) && SameFrame(frame, other.frame);
    case SystemKind::kTopocentric:
      return SameFrame(frame, other.frame) && HasSameOrigin(other);
    case SystemKind::kLocal:
      return SameShape(shape, other.shape) && SameText(model.origin[0], other.model.origin[0]) &&
             SameText(model.origin[1], other.model.origin[1]);
    case SystemKind::kLocalCartesian:
      break;
  }
  return true;
}

bool ShellDefinition::HasSameHeights(const ShellDefinition& other) const {
  if (!SameNumber(heightUnit, other.heightUnit) || surface != other.surface) return false;
  switch (surface) {
    case HeightSurface::kEllipsoid:
      return true;
    case HeightSurface::kOffset:
      return SameNumber(offset, other.offset);
    case HeightSurface::kGeoid:
      return geoid == other.geoid;
    case HeightSurface::kTable:
      // Two tables of the same values are rare enough to be treated as two.
      return table == other.table;
  }
  return false;
}

}  // namespace QvRefSystem
