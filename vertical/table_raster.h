#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

#include "platform/data/height_table.h"
#include "vertical/pixels.h"
#include "vertical/raster_palette.h"

/// A table of heights as an image of 256 levels.
namespace QvCommonUtils {

/// The image of a table of such values; there is one for heights alone.
template <typename T>
class TTableDibData;

/// The image of a table, made pixel by pixel on request: however much it is enlarged, nothing but
/// the table and what was asked for last is held. Level 0 is the table's MinValue, 255 its
/// MaxValue.
///
/// Reads may come from several threads; setting up may not run beside them.
template <>
class TTableDibData<double> {
 public:
  /// The greatest zoom; a greater one counts as this.
  static constexpr int kMaxZoom = 25;

  /// An image of nothing, until Setup.
  TTableDibData() = default;
  ~TTableDibData() { Reset(); }
  TTableDibData(const TTableDibData&) = delete;
  TTableDibData& operator=(const TTableDibData&) = delete;

  /// The table that is shown; null where there is none.
  const T2DTable<double>* Table = nullptr;
  /// Whether the table goes with this.
  bool OwnsTable = false;
  /// Height of one level; 0 in a table of equal values, all of which have level 0.
  double LevelStep = 0;
  /// Height of level 0, in the unit of the table.
  double LevelBase = 0;
  /// Pixels for each cell of the table, 1 to 25.
  int Zoom = 0;
  /// Width of a pixel in the unit of the table's plane.
  double PixelX = 0;
  /// Height of a pixel in the unit of the table's plane.
  double PixelY = 0;
  /// Whether row 0 of the image is the north.
  bool FlipRows = false;
  /// Whether the levels show as grey tones.
  bool Grayscale = false;

  /// Shows `table`, which must outlive this unless it is given away with `ownsTable`. Throws
  /// std::length_error for an image of more pixels along an axis than an int counts.
  void Setup(const T2DTable<double>* table, bool ownsTable, bool grayscale, bool flipRows,
             int zoom);
  /// Lets the table go; the image is one of nothing.
  void Reset();
  /// Another look at the same table; a zoom of 0 keeps the size. Throws as Setup does.
  void ChangeView(bool grayscale, bool flipRows, int zoom);

  /// Pixels along x: (count - 1) * Zoom + 1.
  [[nodiscard]] int Width() const { return width_; }
  /// Pixels along y: (count - 1) * Zoom + 1.
  [[nodiscard]] int Height() const { return height_; }
  /// The colours in which the levels show.
  [[nodiscard]] const RasterPalette& Palette() const {
    return Grayscale ? GrayscalePalette() : ColourPalette();
  }

  /// Coordinates of a pixel in the table's plane.
  void PixelToCoords(int px, int py, double* x, double* y) const;
  /// The height of a pixel, and its coordinates.
  double HeightAt(int px, int py, double* x, double* y) const;

  /// The levels of the pixels origin + n * step, `size.X` columns by `size.Y` rows, row by row.
  /// All pixels must lie in the image.
  void ReadPixels(PixelPair origin, PixelPair step, PixelPair size, std::uint8_t* levels) const;
  /// The same as bitmap rows, the lowest first, each filled up to a multiple of 4 bytes: every
  /// `subsample`th pixel (below 1 counts as 1) for a rectangle counted in such pixels. What lies
  /// beyond the image is 0. A failure throws the integer 0.
  void Read(const PixelRectangle& rectangle, BitmapHeader* header,
            std::vector<std::uint8_t>* pixels, int subsample) const;

 private:
  void ReadCells(PixelPair origin, PixelPair step, PixelPair size, std::uint8_t* levels) const;
  void ReadInterpolated(PixelPair origin, PixelPair step, PixelPair size,
                        std::uint8_t* levels) const;
  [[nodiscard]] int RowOf(int py) const { return FlipRows ? height_ - 1 - py : py; }

  int width_ = 0;
  int height_ = 0;
  mutable std::mutex reading_;
  // Grows only, and is shared by all reads.
  mutable std::vector<std::uint8_t> buffer_;
};

}  // namespace QvCommonUtils
