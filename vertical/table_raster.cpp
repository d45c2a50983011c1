#include "vertical/table_raster.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <span>
#include <stdexcept>

#include "platform/storage/file_stream.h"
#include "platform/storage/stream.h"

namespace QvCommonUtils {

using Raster = TTableDibData<double>;

namespace {

// A channel of the colour palette for t from 0 to 1: a t (t - 1) + b on either side of a limit.
struct Channel {
  double limit;
  double belowA, belowB;
  double aboveA, aboveB;

  [[nodiscard]] std::uint8_t At(double t) const {
    const double value = t < limit ? belowA * t * (t - 1) + belowB : aboveA * t * (t - 1) + aboveB;
    return static_cast<std::uint8_t>(value * 256);
  }
};
constexpr Channel kRed{0.5, -3.92, 0, -1.56, 0.59};
constexpr Channel kGreen{0.5, -3.0, 0.23, -3.67, 0.063};

// The third one falls in a straight line.
std::uint8_t Blue(double t) {
  return static_cast<std::uint8_t>((t < 0.25 ? 0.16 - 0.64 * t : 0.0) * 256);
}

template <typename ColourOf>
RasterPalette MakePalette(ColourOf colourOf) {
  RasterPalette palette;
  for (std::size_t n = 0; n < palette.size(); ++n)
    palette[n] = colourOf(n);
  return palette;
}

// Bilinear in a cell, term by term as T2DTable::Interpolate has it, so that both round alike.
inline double Blend(const CellCorners& nodes, double fx, double fy) {
  return (1 - fx) * (1 - fy) * nodes.WestLow + (1 - fx) * fy * nodes.WestHigh +
         fx * (1 - fy) * nodes.EastLow + fx * fy * nodes.EastHigh;
}

// From heights to levels.
struct Scale {
  double base;
  double step;

  // Also for a height that is no number.
  [[nodiscard]] std::uint8_t LevelOf(double height) const {
    const double level = (height - base) / step;
    return level > 0 ? static_cast<std::uint8_t>(std::min(level, 255.0)) : std::uint8_t{0};
  }
};

// What a row of pixels lies between, for columns side by side.
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

const RasterPalette& ColourPalette() {
  static const RasterPalette palette = MakePalette([](std::size_t n) {
    const double t = static_cast<double>(n) / 255;
    return PaletteColour{kRed.At(t), kGreen.At(t), Blue(t)};
  });
  return palette;
}

const RasterPalette& GrayscalePalette() {
  static const RasterPalette palette = MakePalette([](std::size_t n) {
    const auto level = static_cast<std::uint8_t>(n);
    return PaletteColour{level, level, level};
  });
  return palette;
}

// The places along one axis of the pixels of a read, in the order of the read.
class Raster::Axis {
 public:
  Axis(std::uint32_t count, int pixels) : count_(count) {
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

CellCorners Raster::CornersAt(const Axis& columns, std::size_t column, const Axis& rows,
                              std::size_t row) const {
  const double* west = Table->Data[columns.Low(column)];
  const double* east = Table->Data[columns.High(column)];
  return {west[rows.Low(row)], west[rows.High(row)], east[rows.Low(row)], east[rows.High(row)]};
}

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
  Axis columns(Table->CountX, 1);
  Axis rows(Table->CountY, 1);
  columns.Add(*x, Table->OriginX, Table->CellX);
  rows.Add(*y, Table->OriginY, Table->CellY);
  return Blend(CornersAt(columns, 0, rows, 0), columns.Fraction(0), rows.Fraction(0));
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
  Axis columns(Table->CountX, size.X);
  Axis rows(Table->CountY, size.Y);
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
      // Of the pixels asked for, those whose place in the whole image is there.
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
  // The value by which the readers of images know a failed read.
  if (failed) throw 0;  // NOLINT(hicpp-exception-baseclass)
}

namespace {

constexpr int kStripeRows = 128;
constexpr std::uint32_t kHeaderBytes = 54;

void Put16(std::string* out, std::uint32_t value) {
  out->push_back(static_cast<char>(value & 0xFF));
  out->push_back(static_cast<char>(value >> 8 & 0xFF));
}

void Put32(std::string* out, std::uint32_t value) {
  Put16(out, value & 0xFFFF);
  Put16(out, value >> 16);
}

// The two headers and the palette of the file.
std::string BitmapHead(int width, int height) {
  std::string head = "BM";
  Put32(&head, 0);
  Put32(&head, 0);
  Put32(&head, kHeaderBytes + 4 * static_cast<std::uint32_t>(ColourPalette().size()));
  Put32(&head, 40);
  Put32(&head, static_cast<std::uint32_t>(width));
  Put32(&head, static_cast<std::uint32_t>(height));
  Put16(&head, 1);
  Put16(&head, 8);
  head.append(kHeaderBytes - head.size(), '\0');
  for (const PaletteColour& colour : ColourPalette()) {
    Put32(&head, colour.Blue | static_cast<std::uint32_t>(colour.Green) << 8 |
                     static_cast<std::uint32_t>(colour.Red) << 16);
  }
  return head;
}

}  // namespace

bool SaveBitmapFile(const Raster& raster, int subsample, const std::string& path,
                    QvRefSystem::TProgressInterface* progress) {
  const int step = std::max(subsample, 1);
  const int width = raster.Width() / step;
  const int height = raster.Height() / step;
  const int stripes = (height + kStripeRows - 1) / kStripeRows;
  if (progress != nullptr && progress->SetMax != nullptr) progress->SetMax(stripes);
  try {
    QvPlatform::TQvFileStream file;
    if (!file.Open(path, QvPlatform::QvOpenMode::kCreate)) return false;
    const std::string head = BitmapHead(width, height);
    file.Write(head.data(), head.size());
    BitmapHeader header;
    std::vector<std::uint8_t> pixels;
    for (int stripe = stripes - 1; stripe >= 0; --stripe) {
      const int top = stripe * kStripeRows;
      raster.Read({0, top, width, std::min(top + kStripeRows, height)}, &header, &pixels, step);
      file.Write(pixels.data(), pixels.size());
      if (progress != nullptr && progress->Next != nullptr && progress->Next() != 0) return false;
    }
    file.Commit();
    return true;
  } catch (const std::exception&) {
    return false;
  } catch (int) {
    return false;
  }
}

}  // namespace QvCommonUtils
