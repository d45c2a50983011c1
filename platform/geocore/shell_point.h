#pragma once

#include <cmath>

namespace QvRefSystem {

/// A point by the axes of a system: first, second and third axis in their order, sign and unit
/// (degrees or grads as the system's angular unit says; heights in its height unit). Longitudes
/// come out from -180 to 180 degrees from the system's prime meridian, or from 0 up to 360 in a
/// system of positive longitudes.
///
/// A point that could not be computed has failed: it is FailedPoint, and stays it on every further
/// way.
struct TShellPoint {
  /// The coordinate along the first axis; HUGE_VAL in a failed point, and in no other that a
  /// computation gives.
  double First = 0;
  /// The coordinate along the second axis.
  double Second = 0;
  /// The coordinate along the third axis, or the height.
  double Third = 0;
};

/// What stands in place of a number that could not be computed.
inline constexpr double kFailed = HUGE_VAL;

/// A point that could not be computed.
[[nodiscard]] constexpr TShellPoint FailedPoint() {
  return {kFailed, kFailed, kFailed};
}

/// Whether a number could not be computed.
[[nodiscard]] constexpr bool IsFailed(double number) {
  return number == kFailed;
}

/// Whether a point could not be computed.
[[nodiscard]] constexpr bool IsFailed(const TShellPoint& point) {
  return IsFailed(point.First);
}

/// Whether all three coordinates are finite numbers; a failed point's are not.
[[nodiscard]] inline bool IsFinite(const TShellPoint& point) {
  return std::isfinite(point.First) && std::isfinite(point.Second) && std::isfinite(point.Third);
}

}  // namespace QvRefSystem
