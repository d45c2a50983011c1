#pragma once

#include <array>
#include <optional>

/// The kinds of reference systems. Trees, records, models and forms tell them by one number.
namespace QvRefSystem {

/// The kinds by their number: TYPE of a record, and the member "type" of a tree.
enum class SystemKind {
  /// A plane with two axes and heights that is tied to nothing.
  kLocalCartesian = 1,
  /// A plane over a point of an ellipsoid.
  kLocal = 2,
  /// X, Y and Z from the centre of the earth.
  kGeocentric = 3,
  /// Latitude, longitude and height.
  kGeodetic = 4,
  /// The plane of a map projection.
  kProjected = 5,
  /// East, north and up at a point of another system, its primary one.
  kTopocentric = 6
};

/// All kinds, by number.
inline constexpr std::array kSystemKinds{SystemKind::kLocalCartesian, SystemKind::kLocal,
                                         SystemKind::kGeocentric,     SystemKind::kGeodetic,
                                         SystemKind::kProjected,      SystemKind::kTopocentric};

/// The kind of that number; nothing for any other number.
[[nodiscard]] constexpr std::optional<SystemKind> SystemKindOf(int number) {
  for (const SystemKind kind : kSystemKinds) {
    if (static_cast<int>(kind) == number) return kind;
  }
  return std::nullopt;
}

}  // namespace QvRefSystem
