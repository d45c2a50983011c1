#pragma once

/// The directions of the two axes of a plane system, as records hold them: the sign of each axis,
/// and whether the first one runs along the meridian.
namespace QvRefSystem {

/// Where an axis points, by its place in the lists of the dialogs; kNone is no choice yet.
enum class AxisDirection : signed char { kNone = -1, kNorth = 0, kEast = 1, kSouth = 2, kWest = 3 };

/// The directions as the dialogs list them, untranslated, by the number of AxisDirection.
inline constexpr const char* kDirectionNames[] = {"North", "East", "South", "West"};

/// The directions of two axes as a record holds them.
struct AxisSigns {
  /// 1: the first axis points north or east; -1: south or west.
  int sign1 = 0;
  /// The same of the second axis.
  int sign2 = 0;
  /// 1: the first axis points north or south, 0: east or west.
  int swap = 0;
  bool operator==(const AxisSigns&) const = default;
};

/// The directions of two axes as a user chooses them.
struct AxisDirections {
  /// The direction of the first axis.
  AxisDirection first = AxisDirection::kNone;
  /// The direction of the second axis.
  AxisDirection second = AxisDirection::kNone;
  bool operator==(const AxisDirections&) const = default;
};

/// Whether an axis of that direction runs from south to north or back.
[[nodiscard]] constexpr bool IsAlongMeridian(AxisDirection direction) {
  return direction == AxisDirection::kNorth || direction == AxisDirection::kSouth;
}

/// The signs of two directions that do not lie on one line; of any others they make no sense.
[[nodiscard]] constexpr AxisSigns SignsOf(const AxisDirections& axes) {
  const auto sign = [](AxisDirection direction) {
    return direction == AxisDirection::kNorth || direction == AxisDirection::kEast ? 1 : -1;
  };
  return {sign(axes.first), sign(axes.second), IsAlongMeridian(axes.first) ? 1 : 0};
}

/// The directions of such signs, a sign of 0 counting as negative.
[[nodiscard]] constexpr AxisDirections DirectionsOf(const AxisSigns& signs) {
  const auto alongMeridian = [](int sign) {
    return sign > 0 ? AxisDirection::kNorth : AxisDirection::kSouth;
  };
  const auto acrossMeridian = [](int sign) {
    return sign > 0 ? AxisDirection::kEast : AxisDirection::kWest;
  };
  if (signs.swap != 0) return {alongMeridian(signs.sign1), acrossMeridian(signs.sign2)};
  return {acrossMeridian(signs.sign1), alongMeridian(signs.sign2)};
}

/// Whether records hold these axes as these signs, and give the same axes back.
consteval bool AreHeldAs(const AxisDirections& axes, const AxisSigns& signs) {
  return SignsOf(axes) == signs && DirectionsOf(signs) == axes;
}
static_assert(AreHeldAs({AxisDirection::kNorth, AxisDirection::kEast}, {1, 1, 1}));
static_assert(AreHeldAs({AxisDirection::kSouth, AxisDirection::kWest}, {-1, -1, 1}));
static_assert(AreHeldAs({AxisDirection::kNorth, AxisDirection::kWest}, {1, -1, 1}));
static_assert(AreHeldAs({AxisDirection::kEast, AxisDirection::kNorth}, {1, 1, 0}));
static_assert(AreHeldAs({AxisDirection::kWest, AxisDirection::kSouth}, {-1, -1, 0}));
static_assert(AreHeldAs({AxisDirection::kEast, AxisDirection::kSouth}, {1, -1, 0}));
static_assert(DirectionsOf({}).first == AxisDirection::kWest, "0 counts as negative");

}  // namespace QvRefSystem
