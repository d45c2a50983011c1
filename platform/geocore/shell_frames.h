#pragma once

#include <array>
#include <string>
#include <string_view>

#include "platform/geocore/points.h"
#include "platform/geocore/system_model.h"

/// The geometry in which systems meet: ellipsoids, datum shifts, topocentric horizons.
///
/// All work on points in place. A failed point is left alone.
namespace QvRefSystem {

/// Three numbers along X, Y and Z.
using Vector3 = std::array<double, 3>;
/// Three rows.
using Matrix3 = std::array<Vector3, 3>;

/// An ellipsoid of revolution.
struct EllipsoidShape {
  /// Semi-major axis in metres.
  double a = 0;
  /// Flattening; 0 for a sphere.
  double f = 0;

  /// The square of the first eccentricity; 0 for a sphere.
  [[nodiscard]] double EccentricitySquared() const { return f * (2 - f); }
  /// Longitudes count from the meridian on which the axis of X lies.
  Points<Geocentric> ToCartesian(Points<Geographic> points) const;
  /// The radius of a parallel divided by the semi-major axis, for a latitude in radians.
  [[nodiscard]] double ParallelRatio(double latitude) const;
  /// Back; longitudes from -pi to pi. Good to 10 nm for points further than 100 km from the
  /// centre; nearer ones fail: close to it a latitude is not unique.
  Points<Geographic> ToGeodetic(Points<Geocentric> points) const;
};

/// The way from a datum's geocentric frame to the common one, in metres: translation + matrix * x.
/// The matrix is that of the registry's methods, linear in the rotations and times (1 + scale); the
/// way back takes its true inverse, so that nothing is lost there and back.
struct DatumFrame {
  /// Where the datum's centre lies in the common frame, in metres.
  Vector3 translation{};
  /// Rotations and scale, without a unit.
  Matrix3 matrix{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  /// The inverse of `matrix`.
  Matrix3 inverse{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

  /// Whether the datum's frame is the common one.
  [[nodiscard]] bool IsUnshifted() const;
  /// From the datum's frame to the common one.
  void ToCommon(Points<Geocentric> points) const;
  /// From the common frame to that of the datum.
  void FromCommon(Points<Geocentric> points) const;
};

/// A horizon: axes at a place on the Earth, in the frame of its datum, in metres.
struct HorizonFrame {
  /// The place of the origin, in metres from the centre.
  Vector3 origin{};
  /// Directions of the first, second and third axis, each of length 1.
  Matrix3 axes{};

  /// From metres along the axes of the horizon.
  Points<Geocentric> ToCartesian(Points<Axes> points) const;
  /// To metres along the axes of the horizon.
  Points<Axes> FromCartesian(Points<Geocentric> points) const;
};

/// Metres, radians or unity that one unit is. Throws GeodesyError for factors that are not above 0.
[[nodiscard]] double FactorOf(const UnitModel& unit);
/// A number of a record; `what` names it in the GeodesyError for a text that is none.
[[nodiscard]] double NumberOf(const std::string& text, std::string_view what);
/// The shape of a record's ellipsoid. Throws GeodesyError for numbers that make none.
[[nodiscard]] EllipsoidShape ShapeOf(const EllipsoidModel& ellipsoid);
/// The frame of a record's shift. Throws GeodesyError for numbers that make none.
[[nodiscard]] DatumFrame FrameOf(const DatumShiftModel& shift);
/// The horizon at `place`, a geographic point from the meridian of X; `azimuth`, in radians
/// clockwise from north, is the direction of the axis to the north. The first axis is the one to
/// the east, or that to the north in a left-handed frame; the third points up.
[[nodiscard]] HorizonFrame HorizonAt(const EllipsoidShape& shape, const TShellPoint& place,
                                     double azimuth, bool leftHanded);

/// Whether two numbers are one, but for the rounding of unit conversions: 1e-12 of their size.
[[nodiscard]] bool SameNumber(double a, double b);
/// Whether two ellipsoids have the same axes, by SameNumber.
[[nodiscard]] bool SameShape(const EllipsoidShape& a, const EllipsoidShape& b);
/// Whether two shifts bring every point of the Earth to the same place, to six nanometres.
[[nodiscard]] bool SameFrame(const DatumFrame& a, const DatumFrame& b);

/// Turns points about the third axis, counter-clockwise for an angle in radians above 0.
void TurnAboutAxis(Points<Geocentric> points, double angle);

}  // namespace QvRefSystem
