#pragma once

/// Pixels of an image, counted from its upper left corner: x to the right, y down.
namespace QvCommonUtils {

/// A place in an image, a step, or a size, in pixels.
struct PixelPair {
  /// To the right.
  int X = 0;
  /// Down.
  int Y = 0;
};

/// The pixels with Left <= x < Right and Top <= y < Bottom.
struct PixelRectangle {
  /// The first column.
  int Left = 0;
  /// The first row.
  int Top = 0;
  /// The column behind the last one.
  int Right = 0;
  /// The row behind the last one.
  int Bottom = 0;
};

/// What a bitmap says of itself.
struct BitmapHeader {
  /// Pixels of a row.
  int Width = 0;
  /// Rows.
  int Height = 0;
  /// Bits of a pixel.
  int BitCount = 8;
};

}  // namespace QvCommonUtils
