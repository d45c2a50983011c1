#include "platform/geocore/shell_frames.h"

#include <algorithm>
#include <cmath>

#include "platform/geocore/geodesy_error.h"
#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

Vector3 Times(const Matrix3& matrix, const Vector3& x) {
  Vector3 result;
  for (int i = 0; i < 3; ++i)
    result[i] = matrix[i][0] * x[0] + matrix[i][1] * x[1] + matrix[i][2] * x[2];
  return result;
}

Matrix3 InverseOf(const Matrix3& m) {
  Matrix3 cofactors;
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      const int i1 = (i + 1) % 3;
      const int i2 = (i + 2) % 3;
      const int j1 = (j + 1) % 3;
      const int j2 = (j + 2) % 3;
      cofactors[j][i] = m[i1][j1] * m[i2][j2] - m[i1][j2] * m[i2][j1];
    }
  }
  const double determinant =
      m[0][0] * cofactors[0][0] + m[0][1] * cofactors[1][0] + m[0][2] * cofactors[2][0];
  for (Vector3& row : cofactors) {
    for (double& value : row)
      value /= determinant;
  }
  return cofactors;
}

void Put(const Vector3& x, TShellPoint* point) {
  *point = {x[0], x[1], x[2]};
}

// Sine and cosine of a latitude, or of what stands for one.
struct Direction {
  double sine;
  double cosine;

  static Direction Of(double up, double out) {
    const double size = std::sqrt(up * up + out * out);
    return {up / size, out / size};
  }
};

}  // namespace

double EllipsoidShape::ParallelRatio(double latitude) const {
  const double sine = std::sin(latitude);
  return std::cos(latitude) / std::sqrt(1 - EccentricitySquared() * sine * sine);
}

Points<Geocentric> EllipsoidShape::ToCartesian(Points<Geographic> points) const {
  const double e2 = EccentricitySquared();
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    const double sine = std::sin(point.Second);
    const double cosine = std::cos(point.Second);
    const double normal = a / std::sqrt(1 - e2 * sine * sine);
    const double out = (normal + point.Third) * cosine;
    point = {out * std::cos(point.First), out * std::sin(point.First),
             (normal * (1 - e2) + point.Third) * sine};
  }
  return points.As<Geocentric>();
}

// Bowring, "The accuracy of geodetic latitude and height equations", Survey Review 28 (1985): the
// start is good to a nano-arc-second for any height in use; two rounds more reach the rounding from
// the deep interior on.
Points<Geographic> EllipsoidShape::ToGeodetic(Points<Geocentric> points) const {
  constexpr double kLeastRadius = 100e3;
  constexpr int kRounds = 2;
  const double e2 = EccentricitySquared();
  const double b = a * (1 - f);
  const double secondE2 = e2 / (1 - e2);
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    const auto [x, y, z] = point;
    const double out = std::sqrt(x * x + y * y);
    const double radius = std::sqrt(out * out + z * z);
    if (!(radius > kLeastRadius)) {
      point = FailedPoint();
      continue;
    }
    Direction reduced = Direction::Of(z * a * (1 + secondE2 * b / radius), out * b);
    Direction latitude{};
    for (int round = 0;; ++round) {
      const double sine3 = reduced.sine * reduced.sine * reduced.sine;
      const double cosine3 = reduced.cosine * reduced.cosine * reduced.cosine;
      latitude = Direction::Of(z + secondE2 * b * sine3, out - e2 * a * cosine3);
      if (round == kRounds) break;
      reduced = Direction::Of((1 - f) * latitude.sine, latitude.cosine);
    }
    const double depth = a * std::sqrt(1 - e2 * latitude.sine * latitude.sine);
    point = {std::atan2(y, x), std::atan2(latitude.sine, latitude.cosine),
             out * latitude.cosine + z * latitude.sine - depth};
  }
  return points.As<Geographic>();
}

bool DatumFrame::IsUnshifted() const {
  return translation == Vector3{} && matrix == DatumFrame{}.matrix;
}

void DatumFrame::ToCommon(Points<Geocentric> points) const {
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    Vector3 x = Times(matrix, {point.First, point.Second, point.Third});
    for (int i = 0; i < 3; ++i)
      x[i] += translation[i];
    Put(x, &point);
  }
}

void DatumFrame::FromCommon(Points<Geocentric> points) const {
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    Put(Times(inverse, {point.First - translation[0], point.Second - translation[1],
                        point.Third - translation[2]}),
        &point);
  }
}

Points<Geocentric> HorizonFrame::ToCartesian(Points<Axes> points) const {
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    Vector3 x = origin;
    for (int i = 0; i < 3; ++i) {
      x[i] += axes[0][i] * point.First + axes[1][i] * point.Second + axes[2][i] * point.Third;
    }
    Put(x, &point);
  }
  return points.As<Geocentric>();
}

Points<Axes> HorizonFrame::FromCartesian(Points<Geocentric> points) const {
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    Put(Times(axes, {point.First - origin[0], point.Second - origin[1], point.Third - origin[2]}),
        &point);
  }
  return points.As<Axes>();
}

double FactorOf(const UnitModel& unit) {
  const double factor = unit.factorB / unit.factorC;
  if (!(unit.factorB > 0) || !(unit.factorC > 0) || !std::isfinite(factor)) {
    throw GeodesyError("the factors of the unit " + unit.name + " are not positive");
  }
  return factor;
}

double NumberOf(const std::string& text, std::string_view what) {
  double value = 0;
  if (!QvPlatform::TextToDouble(text, &value)) {
    throw GeodesyError(std::string(what) + " is not a number: \"" + text + "\"");
  }
  return value;
}

EllipsoidShape ShapeOf(const EllipsoidModel& ellipsoid) {
  const double metres = FactorOf(ellipsoid.unit);
  EllipsoidShape shape;
  shape.a = NumberOf(ellipsoid.a, "the semi-major axis of " + ellipsoid.name) * metres;
  if (!ellipsoid.sphere) {
    shape.f = ellipsoid.f;
    if (!ellipsoid.useF) {
      const double b = NumberOf(ellipsoid.b, "the semi-minor axis of " + ellipsoid.name) * metres;
      shape.f = (shape.a - b) / shape.a;
    }
  }
  if (!(shape.a > 0) || !(shape.f >= 0 && shape.f < 1)) {
    throw GeodesyError("the numbers of " + ellipsoid.name + " make no ellipsoid");
  }
  return shape;
}

DatumFrame FrameOf(const DatumShiftModel& shift) {
  DatumFrame frame;
  const double metres = FactorOf(shift.linearUnit);
  const std::string* translations[] = {&shift.tx, &shift.ty, &shift.tz};
  for (int i = 0; i < 3; ++i) {
    frame.translation[i] = NumberOf(*translations[i], "a translation of " + shift.name) * metres;
  }
  if (shift.type == 1) return frame;
  if (shift.type != 2 && shift.type != 3) {
    throw GeodesyError("the type of the datum shift " + shift.name + " is not known");
  }
  // The coordinate frame turns the other way than the position vector.
  const double sense = (shift.type == 2 ? 1 : -1) * FactorOf(shift.angularUnit);
  const double x = NumberOf(shift.rx, "a rotation of " + shift.name) * sense;
  const double y = NumberOf(shift.ry, "a rotation of " + shift.name) * sense;
  const double z = NumberOf(shift.rz, "a rotation of " + shift.name) * sense;
  const double scale =
      1 + NumberOf(shift.s, "the scale difference of " + shift.name) * FactorOf(shift.scaleUnit);
  if (!(scale > 0))
    throw GeodesyError("the scale of the datum shift " + shift.name + " is not positive");
  frame.matrix = {{{scale, -z * scale, y * scale},
                   {z * scale, scale, -x * scale},
                   {-y * scale, x * scale, scale}}};
  frame.inverse = InverseOf(frame.matrix);
  return frame;
}

HorizonFrame HorizonAt(const EllipsoidShape& shape, const TShellPoint& place, double azimuth,
                       bool leftHanded) {
  const double sinLon = std::sin(place.First);
  const double cosLon = std::cos(place.First);
  const double sinLat = std::sin(place.Second);
  const double cosLat = std::cos(place.Second);
  const Vector3 east{-sinLon, cosLon, 0};
  const Vector3 north{-sinLat * cosLon, -sinLat * sinLon, cosLat};
  HorizonFrame frame;
  frame.axes[2] = {cosLat * cosLon, cosLat * sinLon, sinLat};
  for (int i = 0; i < 3; ++i) {
    const double along = std::sin(azimuth) * east[i] + std::cos(azimuth) * north[i];
    const double across = std::cos(azimuth) * east[i] - std::sin(azimuth) * north[i];
    frame.axes[0][i] = leftHanded ? along : across;
    frame.axes[1][i] = leftHanded ? across : along;
  }
  TShellPoint origin = place;
  (void)shape.ToCartesian(Points<Geographic>(&origin));
  frame.origin = {origin.First, origin.Second, origin.Third};
  return frame;
}

void TurnAboutAxis(Points<Geocentric> points, double angle) {
  if (angle == 0) return;
  const double sine = std::sin(angle);
  const double cosine = std::cos(angle);
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    point = {cosine * point.First - sine * point.Second, sine * point.First + cosine * point.Second,
             point.Third};
  }
}

bool SameNumber(double a, double b) {
  return std::abs(a - b) <= 1e-12 * std::max(std::abs(a), std::abs(b));
}

bool SameShape(const EllipsoidShape& a, const EllipsoidShape& b) {
  // A flattening told by two axes has lost half of its digits: what counts is the semi-minor axis.
  return SameNumber(a.a, b.a) && SameNumber(a.a * (1 - a.f), b.a * (1 - b.f));
}

bool SameFrame(const DatumFrame& a, const DatumFrame& b) {
  for (int i = 0; i < 3; ++i) {
    if (!SameNumber(a.translation[i], b.translation[i])) return false;
    for (int j = 0; j < 3; ++j) {
      // The matrix is near the unit one: on the Earth this is six nanometres.
      if (std::abs(a.matrix[i][j] - b.matrix[i][j]) > 1e-15) return false;
    }
  }
  return true;
}

}  // namespace QvRefSystem
