#pragma once

namespace QvRefSystem {

/// Why a part of a source, a file or a wish cannot be used for making heights.
enum class HeightRefusal : unsigned char {
  /// Nothing is refused.
  kNone,
  /// The source system has no height system.
  kNoHeights,
  /// The plane system of a file has a height system, which it must not have.
  kHasHeights,
  /// A chosen system cannot be computed; the failure tells why.
  kNoSystem,
  /// The ground of the heights has no image in the plane.
  kNoImage,
  /// An offset is no number in the C notation.
  kNoNumber,
  /// The record names no file that lies where height files lie.
  kNoFile,
  /// The file cannot be opened. The user was told.
  kNotOpened,
  /// The file cannot be read, or is empty.
  kNotRead,
  /// The file does not begin with a grid.
  kNoGrid,
  /// The file has too few values, or one that is no number.
  kNoValues,
  /// The user has cancelled.
  kCancelled,
  /// A new grid has less than two nodes along an axis.
  kCellTooGreat,
  /// The texts of a new grid are those of no grid.
  kUnusableGrid,
};

}  // namespace QvRefSystem
