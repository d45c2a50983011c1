#pragma once

/// The directions of the two axes of a plane system, as records hold them: the sign of each axis,
/// and whether the first one runs along the meridian.
namespace QvRefSystem {

/// In the order in which the dialogs list them.
enum class TDirection : signed char { kNone = -1, kNorth = 0, kEast = 1, kSouth = 2, kWest = 3 };

inline constexpr const char* kDirectionNames[] = {"North", "East", "South", "West"};

struct TAxisSigns {
  int sign1 = 0;
  int sign2 = 0;
  /// 1: the first axis points north or south, 0: east or west.
  int swap = 0;
  bool operator==(const TAxisSigns&) const = default;
};

struct TAxisDirections {
  TDirection first = TDirection::kNone;
  TDirection second = TDirection::kNone;
  bool operator==(const TAxisDirections&) const = default;
};

[[nodiscard]] constexpr bool IsAlongMeridian(TDirection direction) {
  return direction == TDirection::kNorth || direction == TDirection::kSouth;
}

/// For two directions that do not lie on one line.
[[nodiscard]] constexpr TAxisSigns SignsOf(const TAxisDirections& axes) {
  const auto sign = [](TDirection direction) {
    return direction == TDirection::kNorth || direction == TDirection::kEast ? 1 : -1;
  };
  return {sign(axes.first), sign(axes.second), IsAlongMeridian(axes.first) ? 1 : 0};
}

/// A sign of 0 counts as negative.
[[nodiscard]] constexpr TAxisDirections DirectionsOf(const TAxisSigns& signs) {
  const auto alongMeridian = [](int sign) {
    return sign > 0 ? TDirection::kNorth : TDirection::kSouth;
  };
  const auto acrossMeridian = [](int sign) {
    return sign > 0 ? TDirection::kEast : TDirection::kWest;
  };
  if (signs.swap != 0) return {alongMeridian(signs.sign1), acrossMeridian(signs.sign2)};
  return {acrossMeridian(signs.sign1), alongMeridian(signs.sign2)};
}

}  // namespace QvRefSystem
