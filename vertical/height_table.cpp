#include "vertical/height_table.h"

#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace QvCommonUtils {

using Table = T2DTable<double>;

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

void Table::Allocate() {
  const std::size_t count = std::size_t{CountX} * CountY;
  if (count > std::numeric_limits<std::ptrdiff_t>::max() / sizeof(double)) {
    throw std::length_error("a grid of that many nodes cannot be held");
  }
  values_ = std::make_unique<double[]>(count);
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

TGridPlace PlaceOnAxis(double coordinate, double origin, double cell, std::uint32_t count) {
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
