#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/geocore/geoids.h"
#include "platform/geocore/shell_definition.h"
#include "platform/geocore/shell_machine.h"
#include "platform/geocore/table_sampler.h"

/// The way of points through a definition: see the stages in its header.
namespace QvRefSystem {

using Definition = TShellReferenceSystem::Definition;

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kHalfPi = kPi / 2;
constexpr double kTurn = 2 * kPi;
// Rounding of a quarter turn in any unit.
constexpr double kPoleRounding = 1e-14;
// A longitude beyond two turns is no longitude but a mistaken unit.
constexpr double kMostLongitude = 2 * kTurn;

bool IsFinite(const TShellPoint& point) {
  return std::isfinite(point.First) && std::isfinite(point.Second) && std::isfinite(point.Third);
}

// To above -180 and up to 180 degrees.
double Normalised(double longitude) {
  if (longitude > -kPi && longitude <= kPi) return longitude;
  const double within = std::remainder(longitude, kTurn);
  return within <= -kPi ? within + kTurn : within;
}

// Makes every point that is not finite a failed one.
std::size_t CountFailed(std::span<TShellPoint> points) {
  std::size_t failed = 0;
  for (TShellPoint& point : points) {
    if (IsFinite(point)) continue;
    point = FailedPoint();
    ++failed;
  }
  return failed;
}

}  // namespace

void Definition::Tidy(std::span<TShellPoint> points) const {
  if (Kind() != SystemKind::kGeodetic) return;
  const double low = model_.positiveLongitude ? 0 : -kPi / angular_;
  for (TShellPoint& point : points) {
    TShellPoint copy = point;
    EnterAngles({&copy, 1});
    if (copy.First == HUGE_VAL) point = copy;
    // A longitude in range keeps all its digits.
    if (point.Second >= low && point.Second < low + FullTurn()) continue;
    LeaveAngles({&copy, 1});
    point.Second = copy.Second;
  }
}

void Definition::EnterAngles(std::span<TShellPoint> points) const {
  for (TShellPoint& point : points) {
    if (point.First == HUGE_VAL) continue;
    const double latitude = point.First * angular_;
    const double longitude = point.Second * angular_;
    if (std::abs(latitude) > kHalfPi + kPoleRounding || std::abs(longitude) > kMostLongitude) {
      point = FailedPoint();
      continue;
    }
    point.First = longitude + meridian_;
    point.Second = std::clamp(latitude, -kHalfPi, kHalfPi);
  }
}

void Definition::LeaveAngles(std::span<TShellPoint> points) const {
  for (TShellPoint& point : points) {
    if (point.First == HUGE_VAL) continue;
    const double latitude = point.Second;
    double longitude = Normalised(point.First - meridian_);
    if (model_.positiveLongitude && longitude < 0) {
      longitude += kTurn;
      // The double next below 0 rounds to the full turn, which is no value of this notation.
      if (longitude >= kTurn) longitude = 0;
    }
    point.First = latitude / angular_;
    point.Second = longitude / angular_;
  }
}

// Easting and northing in metres from the plane's own axes, signs and unit.
void Definition::ToMetres(std::span<TShellPoint> points) const {
  const ProjectionModel& projection = *model_.projection;
  const double first = linear_ * projection.axisSign[0];
  const double second = linear_ * projection.axisSign[1];
  for (TShellPoint& point : points) {
    if (point.First == HUGE_VAL) continue;
    point.First *= first;
    point.Second *= second;
    if (northFirst_) std::swap(point.First, point.Second);
  }
}

void Definition::EnterProjection(std::span<TShellPoint> points) const {
  ToMetres(points);
  if (equidistant_) {
    equidistant_->Unproject(points);
  } else if (HasRoughInverse(model_.projection->method)) {
    UnprojectExactly(projection_, points);
  } else {
    Unproject(projection_, points);
  }
  for (TShellPoint& point : points) {
    if (point.First != HUGE_VAL) point.First += meridian_;
  }
}

void Definition::LeaveProjection(std::span<TShellPoint> points) const {
  for (TShellPoint& point : points) {
    if (point.First != HUGE_VAL) point.First = Normalised(point.First - meridian_);
  }
  if (equidistant_) {
    equidistant_->Project(points);
  } else {
    QvRefSystem::Project(projection_, points);
  }
  const ProjectionModel& projection = *model_.projection;
  const double first = linear_ * projection.axisSign[0];
  const double second = linear_ * projection.axisSign[1];
  for (TShellPoint& point : points) {
    if (point.First == HUGE_VAL) continue;
    if (northFirst_) std::swap(point.First, point.Second);
    point.First /= first;
    point.Second /= second;
  }
}

void Definition::EnterPlane(std::span<TShellPoint> points) const {
  if (Kind() == SystemKind::kGeodetic) {
    EnterAngles(points);
  } else {
    EnterProjection(points);
  }
}

void Definition::LeavePlane(std::span<TShellPoint> points) const {
  if (Kind() == SystemKind::kGeodetic) {
    LeaveAngles(points);
  } else {
    LeaveProjection(points);
  }
}

void Definition::EnterCartesian(std::span<TShellPoint> points) const {
  for (TShellPoint& point : points) {
    if (point.First == HUGE_VAL) continue;
    point = {point.First * linear_, point.Second * linear_, point.Third * linear_};
  }
  if (Kind() == SystemKind::kTopocentric) {
    horizon_.ToCartesian(points);
  } else {
    TurnAboutAxis(points, meridian_);
  }
}

void Definition::LeaveCartesian(std::span<TShellPoint> points) const {
  if (Kind() == SystemKind::kTopocentric) {
    horizon_.FromCartesian(points);
  } else {
    TurnAboutAxis(points, -meridian_);
  }
  for (TShellPoint& point : points) {
    if (point.First == HUGE_VAL) continue;
    point = {point.First / linear_, point.Second / linear_, point.Third / linear_};
  }
}

double Definition::TableValue(const TShellPoint& point) const {
  const TShellPoint plane = ToPlane(point);
  return TableSampler(*table_, FullTurn()).At(plane.First, plane.Second);
}

// The undulation above this ellipsoid is the height at which the way to the geoid's base system
// ends on the geoid. Where it ends hardly depends on the height, so the second round is exact.
std::vector<double> Definition::GeoidValues(std::span<const TShellPoint> places) const {
  constexpr int kRounds = 3;
  std::vector<double> heights(places.size(), 0.0);
  std::vector<TShellPoint> based(places.size());
  std::vector<TShellPoint> grid;
  static constexpr EllipsoidShape kWgs84{6378137, 1 / 298.257223563};
  const bool isBase = frame_.IsUnshifted() && SameShape(shape_, kWgs84);
  for (int round = 0; round < (isBase ? 1 : kRounds); ++round) {
    for (std::size_t i = 0; i < places.size(); ++i)
      based[i] = {places[i].First, places[i].Second, heights[i]};
    if (!isBase) {
      shape_.ToCartesian(based);
      frame_.ToCommon(based);
      kWgs84.ToGeodetic(based);
    }
    MoveToGeoidBase(*geoid_, based);
    grid = based;
    PutGridUndulations(*geoid_, grid);
    for (std::size_t i = 0; i < places.size(); ++i) {
      const bool failed = based[i].First == HUGE_VAL || grid[i].First == HUGE_VAL;
      heights[i] = failed ? HUGE_VAL : heights[i] + grid[i].Third - based[i].Third;
    }
  }
  return heights;
}

void Definition::Enter(std::span<TShellPoint> points, Third third) const {
  for (TShellPoint& point : points) {
    if (!IsFinite(point)) point = FailedPoint();
  }
  if (!HasLatitude()) return EnterCartesian(points);
  const HeightSurface surface = third == Third::kHeight ? surface_ : HeightSurface::kEllipsoid;
  for (TShellPoint& point : points) {
    if (point.First == HUGE_VAL) continue;
    if (surface == HeightSurface::kTable) point.Third += TableValue(point);
    if (surface == HeightSurface::kOffset) point.Third += offset_;
    point.Third *= linear_;
  }
  EnterPlane(points);
  if (surface != HeightSurface::kGeoid) return;
  const std::vector<double> undulations = GeoidValues(points);
  for (std::size_t i = 0; i < points.size(); ++i) {
    points[i].Third += undulations[i];
    if (undulations[i] == HUGE_VAL) points[i] = FailedPoint();
  }
}

void Definition::Leave(std::span<TShellPoint> points, Third third) const {
  if (!HasLatitude()) return LeaveCartesian(points);
  const HeightSurface surface = third == Third::kHeight ? surface_ : HeightSurface::kEllipsoid;
  if (surface == HeightSurface::kGeoid) {
    const std::vector<double> undulations = GeoidValues(points);
    for (std::size_t i = 0; i < points.size(); ++i) {
      points[i].Third -= undulations[i];
      if (undulations[i] == HUGE_VAL) points[i] = FailedPoint();
    }
  }
  LeavePlane(points);
  for (TShellPoint& point : points) {
    if (point.First == HUGE_VAL) continue;
    point.Third /= linear_;
    if (surface == HeightSurface::kTable) point.Third -= TableValue(point);
    if (surface == HeightSurface::kOffset) point.Third -= offset_;
  }
}

void Definition::PutUndulations(std::span<TShellPoint> points) const {
  if (surface_ != HeightSurface::kGeoid) {
    for (TShellPoint& point : points) {
      const bool known = std::isfinite(point.First) && std::isfinite(point.Second);
      point.Third = surface_ == HeightSurface::kTable ? TableValue(point) : offset_;
      if (!known) point = FailedPoint();
    }
    return;
  }
  std::vector<TShellPoint> places(points.begin(), points.end());
  for (TShellPoint& place : places)
    place.Third = 0;
  Enter(places, Third::kEllipsoidal);
  const std::vector<double> undulations = GeoidValues(places);
  for (std::size_t i = 0; i < points.size(); ++i) {
    points[i].Third = undulations[i] / linear_;
    if (undulations[i] == HUGE_VAL) points[i] = FailedPoint();
  }
}

void Definition::RequireMeeting(const Definition& from, const Definition& to) {
  if (from.IsOnEarth() && to.IsOnEarth()) return;
  if (!from.HasSamePlane(to) || !SameNumber(from.linear_, to.linear_)) {
    throw GeodesyError("no coordinates lead from " + from.model_.name + " to " + to.model_.name +
                       ": a local system meets only its equals");
  }
}

void Definition::Cross(const Definition& from, const Definition& to,
                       std::span<TShellPoint> points) {
  if (from.HasLatitude() && to.HasLatitude() && from.HasSameDatum(to)) return;
  if (from.HasLatitude()) from.shape_.ToCartesian(points);
  if (!SameFrame(from.frame_, to.frame_)) {
    from.frame_.ToCommon(points);
    to.frame_.FromCommon(points);
  }
  if (to.HasLatitude()) to.shape_.ToGeodetic(points);
}

std::size_t Definition::Move(const Definition& from, Third fromThird, const Definition& to,
                             Third toThird, std::span<TShellPoint> points) {
  RequireMeeting(from, to);
  constexpr std::size_t kBlock = 1024;
  const bool sameThird = fromThird == Third::kHeight && toThird == Third::kHeight
                             ? from.HasSameHeights(to)
                             : fromThird == toThird && SameNumber(from.linear_, to.linear_);
  if (sameThird && from.HasSamePlane(to)) {
    from.Tidy(points);
    return CountFailed(points);
  }
  for (std::size_t at = 0; at < points.size(); at += kBlock) {
    const auto block = points.subspan(at, std::min(kBlock, points.size() - at));
    from.Enter(block, fromThird);
    Cross(from, to, block);
    to.Leave(block, toThird);
  }
  return CountFailed(points);
}

std::string Definition::WhyNotEntered(TShellPoint point) const {
  if (Kind() == SystemKind::kGeodetic) {
    return std::abs(point.First * angular_) > kHalfPi + kPoleRounding
               ? "the latitude is beyond a pole"
               : "the longitude is beyond two turns";
  }
  ToMetres({&point, 1});
  return "its place in " + model_.name +
         " cannot be computed: " + WhyNotProjected(projection_, point, true);
}

std::string Definition::WhyFailed(const Definition& from, const Definition& to, TShellPoint point) {
  RequireMeeting(from, to);
  if (!IsFinite(point)) return "a coordinate is not a finite number";
  TShellPoint place = point;
  const std::span<TShellPoint> one(&place, 1);
  from.Enter(one, Third::kEllipsoidal);
  if (!IsFinite(place)) return from.WhyNotEntered(point);
  place = point;
  from.Enter(one, Third::kHeight);
  if (!IsFinite(place)) return "the geoid of " + from.model_.name + " has no data there";
  Cross(from, to, one);
  if (!IsFinite(place)) return "it is too near to the centre of the Earth";
  const TShellPoint crossed = place;
  to.Leave(one, Third::kEllipsoidal);
  if (!IsFinite(place)) {
    const TShellPoint angles{Normalised(crossed.First - to.meridian_), crossed.Second, 0};
    return to.model_.name +
           " has no coordinates for it: " + WhyNotProjected(to.projection_, angles, false);
  }
  place = crossed;
  to.Leave(one, Third::kHeight);
  return IsFinite(place) ? std::string() : "the geoid of " + to.model_.name + " has no data there";
}

}  // namespace QvRefSystem
