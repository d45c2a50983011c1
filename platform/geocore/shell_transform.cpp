#include "platform/geocore/shell_transform.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <variant>
#include <vector>

#include "platform/geocore/geodesy_error.h"
#include "platform/geocore/geoids.h"
#include "platform/geocore/shell_machine.h"
#include "platform/geocore/shell_projection.h"
#include "platform/geocore/table_sampler.h"
#include "platform/geocore/wgs84.h"

namespace QvRefSystem {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kHalfPi = kPi / 2;
constexpr double kTurn = 2 * kPi;
// Rounding of a quarter turn in any unit.
constexpr double kPoleRounding = 1e-14;
// A longitude beyond two turns is no longitude but a mistaken unit.
constexpr double kMostLongitude = 2 * kTurn;

// To above -180 and up to 180 degrees.
double Normalised(double longitude) {
  if (longitude > -kPi && longitude <= kPi) return longitude;
  const double within = std::remainder(longitude, kTurn);
  return within <= -kPi ? within + kTurn : within;
}

// Makes every point that is not finite a failed one.
std::size_t CountFailed(Points<Axes> points) {
  std::size_t failed = 0;
  for (TShellPoint& point : points) {
    if (IsFinite(point)) continue;
    point = FailedPoint();
    ++failed;
  }
  return failed;
}

Points<Geographic> EnterAngles(const ShellDefinition& system, Points<Axes> points) {
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    const double latitude = point.First * system.angularUnit;
    const double longitude = point.Second * system.angularUnit;
    if (std::abs(latitude) > kHalfPi + kPoleRounding || std::abs(longitude) > kMostLongitude) {
      point = FailedPoint();
      continue;
    }
    point.First = longitude + system.primeMeridian;
    point.Second = std::clamp(latitude, -kHalfPi, kHalfPi);
  }
  return points.As<Geographic>();
}

void LeaveAngles(const ShellDefinition& system, Points<Geographic> points) {
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    const double latitude = point.Second;
    double longitude = Normalised(point.First - system.primeMeridian);
    if (system.model.positiveLongitude && longitude < 0) {
      longitude += kTurn;
      // The double next below 0 rounds to the full turn, which is no value of this notation.
      if (longitude >= kTurn) longitude = 0;
    }
    point.First = latitude / system.angularUnit;
    point.Second = longitude / system.angularUnit;
  }
}

// Fails what entering would fail and brings longitudes into range: all that is left to do between
// equal systems.
void Tidy(const ShellDefinition& system, Points<Axes> points) {
  if (system.Kind() != SystemKind::kGeodetic) return;
  const double low = system.model.positiveLongitude ? 0 : -kPi / system.angularUnit;
  for (TShellPoint& point : points) {
    TShellPoint copy = point;
    const auto entered = EnterAngles(system, Points<Axes>(&copy));
    if (IsFailed(copy)) point = copy;
    // A longitude in range keeps all its digits.
    if (point.Second >= low && point.Second < low + system.FullTurn()) continue;
    LeaveAngles(system, entered);
    point.Second = copy.Second;
  }
}

// Easting and northing in metres from the plane's own axes, signs and unit.
Points<Plane> ToMetres(const ShellDefinition& system, Points<Axes> points) {
  const ProjectionModel& projection = *system.model.projection;
  const double first = system.heightUnit * projection.axisSign[0];
  const double second = system.heightUnit * projection.axisSign[1];
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    point.First *= first;
    point.Second *= second;
    if (system.isNorthFirst) std::swap(point.First, point.Second);
  }
  return points.As<Plane>();
}

Points<Geographic> UnprojectBy(const ShellDefinition& system, Points<Plane> points) {
  if (system.equidistant) return system.equidistant->Unproject(points);
  return HasRoughInverse(system.model.projection->method)
             ? UnprojectExactly(system.projection, points)
             : Unproject(system.projection, points);
}

Points<Geographic> EnterProjection(const ShellDefinition& system, Points<Axes> points) {
  const Points<Geographic> places = UnprojectBy(system, ToMetres(system, points));
  for (TShellPoint& place : places) {
    if (!IsFailed(place)) place.First += system.primeMeridian;
  }
  return places;
}

void LeaveProjection(const ShellDefinition& system, Points<Geographic> places) {
  for (TShellPoint& place : places) {
    if (!IsFailed(place)) place.First = Normalised(place.First - system.primeMeridian);
  }
  const Points<Plane> points =
      system.equidistant ? system.equidistant->Project(places) : Project(system.projection, places);
  const ProjectionModel& projection = *system.model.projection;
  const double first = system.heightUnit * projection.axisSign[0];
  const double second = system.heightUnit * projection.axisSign[1];
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    if (system.isNorthFirst) std::swap(point.First, point.Second);
    point.First /= first;
    point.Second /= second;
  }
}

Points<Geographic> EnterPlane(const ShellDefinition& system, Points<Axes> points) {
  return system.Kind() == SystemKind::kGeodetic ? EnterAngles(system, points)
                                                : EnterProjection(system, points);
}

void LeavePlane(const ShellDefinition& system, Points<Geographic> points) {
  if (system.Kind() == SystemKind::kGeodetic) {
    LeaveAngles(system, points);
  } else {
    LeaveProjection(system, points);
  }
}

Points<Geocentric> EnterCartesian(const ShellDefinition& system, Points<Axes> points) {
  const double metres = system.heightUnit;
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    point = {point.First * metres, point.Second * metres, point.Third * metres};
  }
  if (system.Kind() == SystemKind::kTopocentric) return system.horizon.ToCartesian(points);
  TurnAboutAxis(points.As<Geocentric>(), system.primeMeridian);
  return points.As<Geocentric>();
}

void LeaveCartesian(const ShellDefinition& system, Points<Geocentric> points) {
  if (system.Kind() == SystemKind::kTopocentric) {
    system.horizon.FromCartesian(points);
  } else {
    TurnAboutAxis(points, -system.primeMeridian);
  }
  const double metres = system.heightUnit;
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    point = {point.First / metres, point.Second / metres, point.Third / metres};
  }
}

// Undulation of the table at a place in the system's own axes, in the height unit.
double TableValue(const ShellDefinition& system, const TShellPoint& point) {
  const TShellPoint plane = system.ToPlane(point);
  return TableSampler(*system.table, system.FullTurn()).At(plane.First, plane.Second);
}

// Metres above the system's ellipsoid. The undulation is the height at which the way to the geoid's
// base system ends on the geoid. Where it ends hardly depends on the height, so the second round is
// exact.
std::vector<double> GeoidValues(const ShellDefinition& system, ConstPoints<Geographic> places) {
  constexpr int kRounds = 3;
  std::vector<double> heights(places.size(), 0.0);
  std::vector<TShellPoint> based(places.size());
  std::vector<TShellPoint> grid;
  static constexpr EllipsoidShape kWgs84{Wgs84::kSemiMajorAxis, 1 / Wgs84::kInverseFlattening};
  const bool isBase = system.frame.IsUnshifted() && SameShape(system.shape, kWgs84);
  for (int round = 0; round < (isBase ? 1 : kRounds); ++round) {
    for (std::size_t i = 0; i < places.size(); ++i)
      based[i] = {places[i].First, places[i].Second, heights[i]};
    Points<Geographic> moved(based);
    if (!isBase) {
      const Points<Geocentric> common = system.shape.ToCartesian(moved);
      system.frame.ToCommon(common);
      moved = kWgs84.ToGeodetic(common);
    }
    MoveToGeoidBase(*system.geoid, moved);
    grid = based;
    PutGridUndulations(*system.geoid, Points<Geographic>(grid));
    for (std::size_t i = 0; i < places.size(); ++i) {
      const bool failed = IsFailed(based[i]) || IsFailed(grid[i]);
      heights[i] = failed ? kFailed : heights[i] + grid[i].Third - based[i].Third;
    }
  }
  return heights;
}

HeightSurface SurfaceOf(const WayEnd& end) {
  return end.third == Third::kHeight ? end.system.surface : HeightSurface::kEllipsoid;
}

// Adds the undulations of the geoid to ellipsoidal heights, or with a sign of -1 takes them off.
void AddGeoidValues(const ShellDefinition& system, double sign, Points<Geographic> points) {
  const std::vector<double> undulations = GeoidValues(system, points);
  for (std::size_t i = 0; i < points.size(); ++i) {
    points[i].Third += sign * undulations[i];
    if (IsFailed(undulations[i])) points[i] = FailedPoint();
  }
}

// To longitude and latitude from Greenwich with ellipsoidal height; all points must be finite or
// failed, and the system have a latitude.
Points<Geographic> EnterGeographic(const WayEnd& end, Points<Axes> points) {
  const ShellDefinition& system = end.system;
  const HeightSurface surface = SurfaceOf(end);
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    if (surface == HeightSurface::kTable) point.Third += TableValue(system, point);
    if (surface == HeightSurface::kOffset) point.Third += system.offset;
    point.Third *= system.heightUnit;
  }
  const Points<Geographic> places = EnterPlane(system, points);
  if (surface == HeightSurface::kGeoid) AddGeoidValues(system, 1, places);
  return places;
}

// The way back.
void LeaveGeographic(const WayEnd& end, Points<Geographic> points) {
  const ShellDefinition& system = end.system;
  const HeightSurface surface = SurfaceOf(end);
  if (surface == HeightSurface::kGeoid) AddGeoidValues(system, -1, points);
  LeavePlane(system, points);
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    point.Third /= system.heightUnit;
    if (surface == HeightSurface::kTable) point.Third -= TableValue(system, point);
    if (surface == HeightSurface::kOffset) point.Third -= system.offset;
  }
}

// Where a system meets others: geographic for one with a latitude, else in the geocentric frame of
// its datum.
using Meeting = std::variant<Points<Geographic>, Points<Geocentric>>;

Meeting Enter(const WayEnd& end, Points<Axes> points) {
  for (TShellPoint& point : points) {
    if (!IsFinite(point)) point = FailedPoint();
  }
  if (end.system.HasLatitude()) return EnterGeographic(end, points);
  return EnterCartesian(end.system, points);
}

void Leave(const WayEnd& end, const Meeting& meeting) {
  if (const auto* places = std::get_if<Points<Geographic>>(&meeting)) {
    LeaveGeographic(end, *places);
  } else {
    LeaveCartesian(end.system, std::get<Points<Geocentric>>(meeting));
  }
}

// From where one system enters to where the other can leave from.
Meeting Cross(const ShellDefinition& from, const ShellDefinition& to, Meeting meeting) {
  if (const auto* places = std::get_if<Points<Geographic>>(&meeting)) {
    if (to.HasLatitude() && from.HasSameDatum(to)) return meeting;
    meeting = from.shape.ToCartesian(*places);
  }
  const auto points = std::get<Points<Geocentric>>(meeting);
  if (!SameFrame(from.frame, to.frame)) {
    from.frame.ToCommon(points);
    to.frame.FromCommon(points);
  }
  if (to.HasLatitude()) return to.shape.ToGeodetic(points);
  return points;
}

bool HasSameThird(const WayEnd& from, const WayEnd& to) {
  if (from.third == Third::kHeight && to.third == Third::kHeight) {
    return from.system.HasSameHeights(to.system);
  }
  return from.third == to.third && SameNumber(from.system.heightUnit, to.system.heightUnit);
}

std::string WhyNotEntered(const ShellDefinition& system, TShellPoint point) {
  if (system.Kind() == SystemKind::kGeodetic) {
    return std::abs(point.First * system.angularUnit) > kHalfPi + kPoleRounding
               ? "the latitude is beyond a pole"
               : "the longitude is beyond two turns";
  }
  ToMetres(system, Points<Axes>(&point));
  return "its place in " + system.model.name +
         " cannot be computed: " + WhyNotUnprojected(system.projection, point);
}

}  // namespace

void RequireMeeting(const ShellDefinition& from, const ShellDefinition& to) {
  if (from.IsOnEarth() && to.IsOnEarth()) return;
  if (!from.HasSamePlane(to) || !SameNumber(from.heightUnit, to.heightUnit)) {
    throw GeodesyError("no coordinates lead from " + from.model.name + " to " + to.model.name +
                       ": a local system meets only its equals");
  }
}

std::size_t MovePoints(const WayEnd& from, const WayEnd& to, Points<Axes> points) {
  constexpr std::size_t kBlock = 1024;
  RequireMeeting(from.system, to.system);
  if (HasSameThird(from, to) && from.system.HasSamePlane(to.system)) {
    Tidy(from.system, points);
    return CountFailed(points);
  }
  for (std::size_t at = 0; at < points.size(); at += kBlock) {
    const auto block = points.Part(at, std::min(kBlock, points.size() - at));
    Leave(to, Cross(from.system, to.system, Enter(from, block)));
  }
  return CountFailed(points);
}

std::string WhyFailed(const ShellDefinition& from, const ShellDefinition& to, TShellPoint point) {
  RequireMeeting(from, to);
  if (!IsFinite(point)) return "a coordinate is not a finite number";
  TShellPoint place = point;
  const Points<Axes> one(&place);
  Enter({from, Third::kEllipsoidal}, one);
  if (!IsFinite(place)) return WhyNotEntered(from, point);
  place = point;
  const Meeting entered = Enter({from, Third::kHeight}, one);
  if (!IsFinite(place)) return "the geoid of " + from.model.name + " has no data there";
  const Meeting meeting = Cross(from, to, entered);
  if (!IsFinite(place)) return "it is too near to the centre of the Earth";
  const TShellPoint crossed = place;
  Leave({to, Third::kEllipsoidal}, meeting);
  if (!IsFinite(place)) {
    const TShellPoint angles{Normalised(crossed.First - to.primeMeridian), crossed.Second, 0};
    return to.model.name + " has no coordinates for it: " + WhyNotProjected(to.projection, angles);
  }
  place = crossed;
  Leave({to, Third::kHeight}, meeting);
  return IsFinite(place) ? std::string() : "the geoid of " + to.model.name + " has no data there";
}

TShellPoint PlaceOf(const ShellDefinition& system, TShellPoint point) {
  Enter({system, Third::kHeight}, Points<Axes>(&point));
  return point;
}

void PutUndulations(const ShellDefinition& system, Points<Axes> points) {
  if (system.surface != HeightSurface::kGeoid) {
    for (TShellPoint& point : points) {
      const bool known = std::isfinite(point.First) && std::isfinite(point.Second);
      point.Third =
          system.surface == HeightSurface::kTable ? TableValue(system, point) : system.offset;
      if (!known) point = FailedPoint();
    }
    return;
  }
  std::vector<TShellPoint> places(points.begin(), points.end());
  for (TShellPoint& place : places)
    place.Third = 0;
  Enter({system, Third::kEllipsoidal}, Points<Axes>(places));
  const std::vector<double> undulations = GeoidValues(system, Points<Geographic>(places));
  for (std::size_t i = 0; i < points.size(); ++i) {
    points[i].Third = undulations[i] / system.heightUnit;
    if (IsFailed(undulations[i])) points[i] = FailedPoint();
  }
}

}  // namespace QvRefSystem
