#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "platform/data/height_table.h"
#include "platform/ui/progress_interface.h"

/// A table of heights as an image of 256 levels.
namespace QvCommonUtils {

struct PixelPair {
  int X = 0;
  int Y = 0;
};

/// Pixels left <= x < right, top <= y < bottom.
struct PixelRectangle {
  int Left = 0;
  int Top = 0;
  int Right = 0;
  int Bottom = 0;
};

/// The nodes at the corners of a cell of a table.
struct CellCorners {
  double WestLow = 0;
  double WestHigh = 0;
  double EastLow = 0;
  double EastHigh = 0;
};

/// What a bitmap says of itself.
struct BitmapHeader {
  int Width = 0;
  int Height = 0;
  int BitCount = 8;
};

struct PaletteColour {
  std::uint8_t Red = 0;
  std::uint8_t Green = 0;
  std::uint8_t Blue = 0;
  bool operator==(const PaletteColour&) const = default;
};
using RasterPalette = std::array<PaletteColour, 256>;

/// From dark blue-green over light tones to red; of saved images always.
[[nodiscard]] const RasterPalette& ColourPalette();
[[nodiscard]] const RasterPalette& GrayscalePalette();

/// The image of a table, made pixel by pixel on request: however much it is enlarged, nothing but
/// the table and what was asked for last is held. Level 0 is the table's MinValue, 255 its
/// MaxValue.
///
/// Reads may come from several threads; setting up may not run beside them.
template <typename T>
class TTableDibData;

template <>
class TTableDibData<double> {
 public:
  static constexpr int kMaxZoom = 25;

  TTableDibData() = default;
  ~TTableDibData() { Reset(); }
  TTableDibData(const TTableDibData&) = delete;
  TTableDibData& operator=(const TTableDibData&) = delete;

  const T2DTable<double>* Table = nullptr;
  bool OwnsTable = false;
  /// Height of one level; 0 in a table of equal values, all of which have level 0.
  double LevelStep = 0;
  double LevelBase = 0;
  /// Pixels for each cell of the table, 1 to 25.
  int Zoom = 0;
  /// Size of a pixel in the table's plane.
  double PixelX = 0;
  double PixelY = 0;
  /// Whether row 0 of the image is the north.
  bool FlipRows = false;
  bool Grayscale = false;

  /// Shows `table`, which must outlive this unless it is given away with `ownsTable`. Throws
  /// std::length_error for an image of more pixels along an axis than an int counts.
  void Setup(const T2DTable<double>* table, bool ownsTable, bool grayscale, bool flipRows,
             int zoom);
  void Reset();
  /// Another look at the same table; a zoom of 0 keeps the size. Throws as Setup does.
  void ChangeView(bool grayscale, bool flipRows, int zoom);

  /// (count - 1) * Zoom + 1 along each axis.
  [[nodiscard]] int Width() const { return width_; }
  [[nodiscard]] int Height() const { return height_; }
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
  class Axis;
  [[nodiscard]] CellCorners CornersAt(const Axis& columns, std::size_t column, const Axis& rows,
                                      std::size_t row) const;
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

/// Saves the image, every `subsample`th pixel of it, as an uncompressed bitmap file of 256 colours
/// in the colour palette. It is read and written in stripes of 128 rows; `progress`, which may be
/// null, counts them. False, and no file is left, if it cannot be written or is cancelled.
[[nodiscard]] bool SaveBitmapFile(const TTableDibData<double>& raster, int subsample,
                                  const std::string& path,
                                  QvRefSystem::TProgressInterface* progress);

}  // namespace QvCommonUtils
