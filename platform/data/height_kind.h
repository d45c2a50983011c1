#pragma once

#include <optional>

/// The kinds of height systems, by which records, trees and models tell where the heights of a
/// reference system count from.
namespace QvRefSystem {

/// The kinds by their number: VDATA_TYPE of a record, and the member "type" of a tree.
enum class HeightKind {
  /// Undulations of the geoid on a grid, in a file of their own.
  kTable = 1,
  /// One offset for all heights, with its unit.
  kOffset = 2,
  /// A geoid that is built in. No record has this kind: the reference system holds its code.
  kSystemGeoid = 3
};

/// The kind of that number; nothing for any other number.
[[nodiscard]] constexpr std::optional<HeightKind> HeightKindOf(int number) {
  if (number < static_cast<int>(HeightKind::kTable) ||
      number > static_cast<int>(HeightKind::kSystemGeoid)) {
    return std::nullopt;
  }
  return static_cast<HeightKind>(number);
}

}  // namespace QvRefSystem
