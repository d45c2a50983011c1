#include "vertical/table_raster.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <limits>
#include <span>
#include <stdexcept>

namespace QvCommonUtils {

using Raster = TTableDibData<double>;

namespace {

// The nodes at the corners of a cell of a table.
struct CellCorners {
  double WestLow = 0;
  double WestHigh = 0;
  double EastLow = 0;
  double EastHigh = 0;
};

// Interpolates in a cell, term by term as T2DTable::Interpolate does, so that both round alike.
inline double Blend(const CellCorners& nodes, double fx, double fy) {
  return (1 - fx) * (1 - fy) * nodes.WestLow + (1 - fx) * fy * nodes.WestHigh +
         fx * (1 - fy) * nodes.EastLow + fx * fy * nodes.EastHigh;
}

// Turns heights into levels.
struct Scale {
  double base;
  double step;

  // A height that is no number has level 0.
  [[nodiscard]] std::uint8_t LevelOf(double height) const {
    const double level = (height - base) / step;
    return level > 0 ? static_cast<std::uint8_t>(std::min(level, 255.0)) : std::uint8_t{0};
  }
};

// The nodes that a row of pixels lies between, for columns side by side.
struct CornerRow {
  explicit CornerRow(std::size_t count)
      : fx(count), westLow(count), westHigh(count), eastLow(count), eastHigh(count) {}
  std::vector<double> fx, westLow, westHigh, eastLow, eastHigh;

  // Takes the nodes of two rows out of the columns on either side of each pixel.
  void Gather(std::span<const double* const> west, std::span<const double* const> east,
              std::uint32_t low, std::uint32_t high) {
    double* const westLows = westLow.data();
    double* const westHighs = westHigh.data();
    double* const eastLows = eastLow.data();
    double* const eastHighs = eastHigh.data();
    for (std::size_t n = 0; n < west.size(); ++n) {
      westLows[n] = west[n][low];
      westHighs[n] = west[n][high];
      eastLows[n] = east[n][low];
      eastHighs[n] = east[n][high];
    }
  }
  void WriteLevels(double fy, const Scale& scale, std::span<std::uint8_t> levels) const {
    // Bytes may alias all that is not held here.
    const Scale held = scale;
    for (std::size_t n = 0; n < levels.size(); ++n) {
      levels[n] =
          held.LevelOf(Blend({westLow[n], westHigh[n], eastLow[n], eastHigh[n]}, fx[n], fy));
    }
  }
};

// The places along one axis of the pixels of a read, in the order of the read.
class PixelAxis {
 public:
  PixelAxis(std::uint32_t count, int pixels) : count_(count) {
    low_.reserve(static_cast<std::size_t>(pixels));
    fraction_.reserve(static_cast<std::size_t>(pixels));
  }
  void Add(double coordinate, double origin, double cell) {
    // An axis of one node has no cell: all lies on the node.
    const GridPlace place =
        count_ < 2 ? GridPlace{} : PlaceOnAxis(coordinate, origin, cell, count_);
    low_.push_back(place.index);
    fraction_.push_back(place.fraction);
  }
  [[nodiscard]] std::uint32_t Low(std::size_t n) const { return low_[n]; }
  [[nodiscard]] std::uint32_t High(std::size_t n) const {
    return count_ < 2 ? low_[n] : low_[n] + 1;
  }
  [[nodiscard]] double Fraction(std::size_t n) const { return fraction_[n]; }

 private:
  std::uint32_t count_;
  std::vector<std::uint32_t> low_;
  std::vector<double> fraction_;
};

// The nodes round the first place of each axis.
CellCorners CornersAt(const T2DTable<double>& table, const PixelAxis& columns,
                      const PixelAxis& rows) {
  const double* west = table.Data[columns.Low(0)];
  const double* east = table.Data[columns.High(0)];
  return {west[rows.Low(0)], west[rows.High(0)], east[rows.Low(0)], east[rows.High(0)]};
}

std::size_t RowBytes(int width) {
  return (static_cast<std::size_t>(width) + 3) / 4 * 4;
}

int PixelsAlong(std::uint32_t count, int zoom) {
  if (count == 0) return 0;
  const std::int64_t pixels = (std::int64_t{count} - 1) * zoom + 1;
  if (pixels > std::numeric_limits<int>::max()) {
    throw std::length_error("an image of that size cannot be shown");
  }
  return static_cast<int>(pixels);
}

}  // namespace

void Raster::Setup(const T2DTable<double>* table, bool ownsTable, bool grayscale, bool flipRows,
                   int zoom) {
  Reset();
  Table = table;
  OwnsTable = ownsTable;
  if (table->MinValue < table->MaxValue) {
    LevelStep = (table->MaxValue - table->MinValue) * (1.0 / 255);
  }
  LevelBase = table->MinValue;
  ChangeView(grayscale, flipRows, zoom);
}

void Raster::Reset() {
  if (OwnsTable) delete Table;
  Table = nullptr;
  OwnsTable = false;
  LevelStep = LevelBase = PixelX = PixelY = 0;
  Zoom = width_ = height_ = 0;
}

void Raster::ChangeView(bool grayscale, bool flipRows, int zoom) {
  if (Table != nullptr && zoom != 0) {
    const int wanted = std::clamp(zoom, 1, kMaxZoom);
    const int width = PixelsAlong(Table->CountX, wanted);
    const int height = PixelsAlong(Table->CountY, wanted);
    Zoom = wanted;
    width_ = width;
    height_ = height;
    PixelX = Table->CellX / Zoom;
    PixelY = Table->CellY / Zoom;
  }
  Grayscale = grayscale;
  FlipRows = flipRows;
}

void Raster::PixelToCoords(int px, int py, double* x, double* y) const {
  *x = Table->OriginX + px * PixelX;
  *y = Table->OriginY + RowOf(py) * PixelY;
}

double Raster::HeightAt(int px, int py, double* x, double* y) const {
  PixelToCoords(px, py, x, y);
  if (Zoom == 1) {
    return Table->Get(static_cast<std::uint32_t>(px), static_cast<std::uint32_t>(RowOf(py)));
  }
  PixelAxis columns(Table->CountX, 1);
  PixelAxis rows(Table->CountY, 1);
  columns.Add(*x, Table->OriginX, Table->CellX);
  rows.Add(*y, Table->OriginY, Table->CellY);
  return Blend(CornersAt(*Table, columns, rows), columns.Fraction(0), rows.Fraction(0));
}

// A column of the table lies in one piece of memory while a row of the image does, too: tiles of
// rows keep the lines being written in the cache and the columns long enough to be read ahead.
constexpr int kTile = 512;
// Columns whose nodes fit into the nearest cache, be they all in cells of their own.
constexpr std::size_t kBlock = 256;

void Raster::ReadCells(PixelPair origin, PixelPair step, PixelPair size,
                       std::uint8_t* levels) const {
  const Scale scale{LevelBase, LevelStep};
  for (int top = 0; top < size.Y; top += kTile) {
    const int bottom = std::min(size.Y, top + kTile);
    for (int column = 0; column < size.X; ++column) {
      const double* cells = Table->Data[origin.X + column * step.X];
      for (int row = top; row < bottom; ++row) {
        levels[static_cast<std::size_t>(row) * static_cast<std::size_t>(size.X) +
               static_cast<std::size_t>(column)] =
            scale.LevelOf(cells[RowOf(origin.Y + row * step.Y)]);
      }
    }
  }
}

void Raster::ReadInterpolated(PixelPair origin, PixelPair step, PixelPair size,
                              std::uint8_t* levels) const {
  PixelAxis columns(Table->CountX, size.X);
  PixelAxis rows(Table->CountY, size.Y);
  double x = 0;
  double y = 0;
  for (int n = 0; n < size.X; ++n) {
    PixelToCoords(origin.X + n * step.X, 0, &x, &y);
    columns.Add(x, Table->OriginX, Table->CellX);
  }
  for (int n = 0; n < size.Y; ++n) {
    PixelToCoords(0, origin.Y + n * step.Y, &x, &y);
    rows.Add(y, Table->OriginY, Table->CellY);
  }
  // A block of columns at a time, row by row: the nodes are gathered once for all rows of a cell,
  // and what is left to do for each pixel runs along plain arrays.
  const auto width = static_cast<std::size_t>(size.X);
  const auto height = static_cast<std::size_t>(size.Y);
  CornerRow nodes(std::min(width, kBlock));
  std::array<const double*, kBlock> west;
  std::array<const double*, kBlock> east;
  for (std::size_t left = 0; left < width; left += kBlock) {
    const std::size_t count = std::min(width - left, kBlock);
    for (std::size_t n = 0; n < count; ++n) {
      nodes.fx[n] = columns.Fraction(left + n);
      west[n] = Table->Data[columns.Low(left + n)];
      east[n] = Table->Data[columns.High(left + n)];
    }
    for (std::size_t row = 0; row < height; ++row) {
      if (row == 0 || rows.Low(row) != rows.Low(row - 1)) {
        nodes.Gather({west.data(), count}, {east.data(), count}, rows.Low(row), rows.High(row));
      }
      nodes.WriteLevels(rows.Fraction(row), {LevelBase, LevelStep},
                        {levels + row * width + left, count});
    }
  }
}

void Raster::ReadPixels(PixelPair origin, PixelPair step, PixelPair size,
                        std::uint8_t* levels) const {
  if (size.X <= 0 || size.Y <= 0) return;
  if (LevelStep == 0) {
    std::memset(levels, 0, static_cast<std::size_t>(size.X) * static_cast<std::size_t>(size.Y));
  } else if (Zoom == 1) {
    ReadCells(origin, step, size, levels);
  } else {
    ReadInterpolated(origin, step, size, levels);
  }
}

void Raster::Read(const PixelRectangle& rectangle, BitmapHeader* header,
                  std::vector<std::uint8_t>* pixels, int subsample) const {
  const int step = std::max(subsample, 1);
  bool failed = false;
  {
    const std::lock_guard lock(reading_);
    try {
      header->Width = std::max(rectangle.Right - rectangle.Left, 0);
      header->Height = std::max(rectangle.Bottom - rectangle.Top, 0);
      header->BitCount = 8;
      const std::size_t rowBytes = RowBytes(header->Width);
      pixels->assign(rowBytes * static_cast<std::size_t>(header->Height), 0);
      // Counts the pixels asked for whose place in the whole image is there.
      const auto inside = [step](int first, int count, int limit) {
        if (first < 0 || limit <= 0) return 0;
        const std::int64_t last = (std::int64_t{limit} - 1) / step;
        return static_cast<int>(std::clamp<std::int64_t>(last - first + 1, 0, count));
      };
      const PixelPair size{inside(rectangle.Left, header->Width, width_),
                           inside(rectangle.Top, header->Height, height_)};
      if (size.X > 0 && size.Y > 0) {
        const auto width = static_cast<std::size_t>(size.X);
        const std::size_t needed = width * static_cast<std::size_t>(size.Y);
        if (buffer_.size() < needed) buffer_.resize(needed);
        ReadPixels({rectangle.Left * step, rectangle.Top * step}, {step, step}, size,
                   buffer_.data());
        for (int row = 0; row < size.Y; ++row) {
          const auto up = static_cast<std::size_t>(header->Height - 1 - row);
          std::memcpy(pixels->data() + up * rowBytes,
                      buffer_.data() + static_cast<std::size_t>(row) * width, width);
        }
      }
    } catch (const std::exception&) {
      failed = true;
    }
  }
  // Readers of images know a failed read by this value.
  if (failed) throw 0;  // NOLINT(hicpp-exception-baseclass)
}

}  // namespace QvCommonUtils
