#include "platform/data/height_table.h"

#include <sys/mman.h>
#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <new>
#include <stdexcept>
#include <type_traits>

namespace QvCommonUtils {

using Table = T2DTable<double>;

namespace {

/// A large grid is walked row by row and column by column; with pages of the usual size almost
/// every step of one of both walks would look up a new page.
void PreferHugePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) {
#ifdef MADV_HUGEPAGE
  constexpr std::size_t kHugePage = std::size_t{2} << 20;
  if (size < 2 * kHugePage) return;
  void* begin = memory;
  std::size_t room = size;
  if (std::align(kHugePage, kHugePage, begin, room) == nullptr) return;
  // A refusal costs speed alone.
  (void)madvise(begin, room / kHugePage * kHugePage, MADV_HUGEPAGE);
#endif
}

}  // namespace

Table::T2DTable(const T2DTable& other)
    : CountX(other.CountX),
      CountY(other.CountY),
      CellX(other.CellX),
      CellY(other.CellY),
      OriginX(other.OriginX),
      OriginY(other.OriginY),
      MinValue(other.MinValue),
      MaxValue(other.MaxValue),
      Crc(other.Crc),
      CrcValid(other.CrcValid) {
  if (other.Data == nullptr) return;
  Allocate();
  std::copy_n(other.values_.get(), std::size_t{CountX} * CountY, values_.get());
}

void Table::Clear() {
  columns_.clear();
  values_.reset();
  Data = nullptr;
  CountX = CountY = 0;
  CellX = CellY = OriginX = OriginY = 0;
  MinValue = std::numeric_limits<double>::max();
  MaxValue = std::numeric_limits<double>::lowest();
  Crc = 0;
  CrcValid = 0;
}

void Table::Resize(std::uint32_t countX, std::uint32_t countY, double cellX, double cellY,
                   double originX, double originY) {
  Clear();
  CountX = countX;
  CountY = countY;
  try {
    Allocate();
  } catch (...) {
    Clear();
    throw;
  }
  CellX = cellX;
  CellY = cellY;
  OriginX = originX;
  OriginY = originY;
}

void Table::MemoryReturner::operator()(double* values) const noexcept {
  std::free(values);
}

void Table::Allocate() {
  const std::size_t count = std::size_t{CountX} * CountY;
  if (count > std::numeric_limits<std::ptrdiff_t>::max() / sizeof(double)) {
    throw std::length_error("a grid of that many nodes cannot be held");
  }
  // Fresh pages are zero already, which calloc knows: a large grid is then not written twice.
  values_.reset(static_cast<double*>(std::calloc(std::max(count, std::size_t{1}), sizeof(double))));
  if (values_ == nullptr) throw std::bad_alloc();
  PreferHugePages(values_.get(), count * sizeof(double));
  columns_.resize(CountX);
  for (std::size_t i = 0; i < CountX; ++i)
    columns_[i] = values_.get() + i * CountY;
  Data = columns_.data();
}

void Table::Set(std::uint32_t i, std::uint32_t j, double value) {
  Data[i][j] = value;
  CrcValid = 0;
  if (MinValue > MaxValue) {
    MinValue = MaxValue = value;
  } else {
    MinValue = std::min(MinValue, value);
    MaxValue = std::max(MaxValue, value);
  }
}

namespace {

/// Values of a cache line. Blocks of that many columns are moved at a time, so that a line of the
/// rows is read once.
constexpr std::size_t kLine = 64 / sizeof(double);

/// Columns of a block of rows: those that make whole lines, then the rest.
template <typename Move>
void ForEachBlock(std::size_t columns, const Move& move) {
  std::size_t i = 0;
  for (; i + kLine <= columns; i += kLine)
    move(i, std::integral_constant<std::size_t, kLine>());
  for (; i < columns; ++i)
    move(i, std::integral_constant<std::size_t, 1>());
}

}  // namespace

void Table::SetRows(std::uint32_t north, std::span<const double> values) {
  if (values.empty()) return;
  CrcValid = 0;
  // One lane for each column of a block: minima of lanes do not wait for each other.
  double least[kLine];
  double greatest[kLine];
  std::ranges::fill(least, std::min(MinValue, values[0]));
  std::ranges::fill(greatest, std::max(MaxValue, values[0]));
  ForEachBlock(CountX, [&](std::size_t i, auto width) {
    std::size_t j = north;
    for (const double* row = values.data() + i; row < values.data() + values.size();
         row += CountX, --j) {
      for (std::size_t lane = 0; lane < width; ++lane) {
        const double value = row[lane];
        Data[i + lane][j] = value;
        least[lane] = value < least[lane] ? value : least[lane];
        greatest[lane] = value > greatest[lane] ? value : greatest[lane];
      }
    }
  });
  MinValue = *std::ranges::min_element(least);
  MaxValue = *std::ranges::max_element(greatest);
}

void Table::GetRows(std::uint32_t north, std::span<double> values) const {
  ForEachBlock(CountX, [&](std::size_t i, auto width) {
    std::size_t j = north;
    for (double* row = values.data() + i; row < values.data() + values.size(); row += CountX, --j) {
      for (std::size_t lane = 0; lane < width; ++lane)
        row[lane] = Data[i + lane][j];
    }
  });
}

std::uint32_t Table::RowsAtATime() const {
  // 2 MB of doubles.
  constexpr std::uint32_t kValues = 256 << 10;
  constexpr std::uint32_t kMost = 64;
  const std::uint32_t fitting = std::min(kValues / std::max(CountX, 1U), kMost);
  // Wide rows leave the cache, yet a table of many of them is worth whole lines.
  const std::uint32_t least = CountY / 16 >= kLine ? static_cast<std::uint32_t>(kLine) : 1;
  return std::max(fitting, least);
}

GridPlace PlaceOnAxis(double coordinate, double origin, double cell, std::uint32_t count) {
  // Also for a coordinate that is no number.
  if (!(coordinate >= origin)) return {};
  const double index = std::floor((coordinate - origin) / cell);
  if (index >= count - 1.0) return {count - 2, 1};
  return {static_cast<std::uint32_t>(index), ((coordinate - origin) - index * cell) / cell};
}

double Table::Interpolate(double x, double y) const {
  const auto [i, fx] = PlaceOnAxis(x, OriginX, CellX, CountX);
  const auto [j, fy] = PlaceOnAxis(y, OriginY, CellY, CountY);
  const double* west = Data[i] + j;
  const double* east = Data[i + 1] + j;
  return (1 - fx) * (1 - fy) * west[0] + (1 - fx) * fy * west[1] + fx * (1 - fy) * east[0] +
         fx * fy * east[1];
}

bool Table::ComputeCrc() {
  if (CrcValid == 0 && CountX != 0 && CountY != 0) {
    uLong crc = 0;
    for (std::uint32_t i = 0; i < CountX; ++i) {
      crc = crc32_z(crc, reinterpret_cast<const Bytef*>(Data[i]), std::size_t{CountY} * 8);
    }
    Crc = static_cast<std::uint32_t>(crc);
    CrcValid = 1;
  }
  return CrcValid != 0;
}

}  // namespace QvCommonUtils
