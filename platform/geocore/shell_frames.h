#pragma once

#include <array>
#include <span>

#include "platform/geocore/shell_reference_system.h"
#include "platform/geocore/system_model.h"

/// The geometry in which systems meet: ellipsoids, datum shifts, topocentric horizons.
///
/// All work on points in place. A point whose First is HUGE_VAL has failed and is left alone.
namespace QvRefSystem {

using Vector3 = std::array<double, 3>;
using Matrix3 = std::array<Vector3, 3>;

/// An ellipsoid of revolution.
struct EllipsoidShape {
  /// Semi-major axis in metres.
  double a = 0;
  /// Flattening; 0 for a sphere.
  double f = 0;

  [[nodiscard]] double EccentricitySquared() const { return f * (2 - f); }
  /// From longitude and latitude in radians and height in metres to metres along X, Y, Z.
  void ToCartesian(std::span<TShellPoint> points) const;
  /// Back; longitudes from -pi to pi. Good to 10 nm for points further than 100 km from the
  /// centre; nearer ones fail: close to it a latitude is not unique.
  void ToGeodetic(std::span<TShellPoint> points) const;
};

/// The way from a datum's geocentric frame to the common one, in metres: translation + matrix * x.
/// The matrix is that of the registry's methods, linear in the rotations and times (1 + scale); the
/// way back takes its true inverse, so that nothing is lost there and back.
struct DatumFrame {
  Vector3 translation{};
  Matrix3 matrix{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  Matrix3 inverse{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

  [[nodiscard]] bool IsUnshifted() const;
  void ToCommon(std::span<TShellPoint> points) const;
  void FromCommon(std::span<TShellPoint> points) const;
};

/// A horizon: axes at a place on the Earth, in the frame of its datum, in metres.
struct HorizonFrame {
  Vector3 origin{};
  /// Directions of the first, second and third axis.
  Matrix3 axes{};

  void ToCartesian(std::span<TShellPoint> points) const;
  void FromCartesian(std::span<TShellPoint> points) const;
};

/// Metres, radians or unity that one unit is. Throws GeodesyError for factors that are not above 0.
[[nodiscard]] double FactorOf(const UnitModel& unit);
/// A number of a record; `what` names it in the GeodesyError for a text that is none.
[[nodiscard]] double NumberOf(const std::string& text, std::string_view what);
/// Throw GeodesyError for numbers that make no ellipsoid or no shift.
[[nodiscard]] EllipsoidShape ShapeOf(const EllipsoidModel& ellipsoid);
[[nodiscard]] DatumFrame FrameOf(const DatumShiftModel& shift);
/// `place` has longitude and latitude in radians and height in metres; `azimuth`, in radians
/// clockwise from north, is the direction of the axis to the north. The first axis is the one to
/// the east, or that to the north in a left-handed frame; the third points up.
[[nodiscard]] HorizonFrame HorizonAt(const EllipsoidShape& shape, const TShellPoint& place,
                                     double azimuth, bool leftHanded);

/// Whether two numbers are one, but for the rounding of unit conversions: 1e-12 of their size.
[[nodiscard]] bool SameNumber(double a, double b);
[[nodiscard]] bool SameShape(const EllipsoidShape& a, const EllipsoidShape& b);
[[nodiscard]] bool SameFrame(const DatumFrame& a, const DatumFrame& b);

/// Turns points about the third axis, counter-clockwise for an angle in radians above 0.
void TurnAboutAxis(std::span<TShellPoint> points, double angle);

/// A point that could not be computed.
[[nodiscard]] TShellPoint FailedPoint();

}  // namespace QvRefSystem
