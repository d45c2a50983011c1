#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <vector>

/// A regular grid of numbers over a plane: heights of the geoid, or errors of an approximation.
namespace QvCommonUtils {

/// Limits and cell sizes of a grid in the unit of its plane; `T` is a number or its decimal text.
template <typename T>
struct T2DTableExtents {
  /// The least X.
  T West{};
  /// The greatest X.
  T East{};
  /// The least Y.
  T South{};
  /// The greatest Y.
  T North{};
  /// The step from a node to the next one to the east.
  T CellEastWest{};
  /// The step from a node to the next one to the north.
  T CellNorthSouth{};
};

/// Where a coordinate lies along one axis of a grid: in the cell behind node `index`, `fraction`
/// (0 to 1) of the way to the next node. One outside lies on the nearest end of the axis.
struct GridPlace {
  /// The node at the western or southern side of the cell.
  std::uint32_t index = 0;
  /// The part of the cell, from 0 to 1, that lies before the coordinate.
  double fraction = 0;
};
/// `count` must be 2 at least.
[[nodiscard]] GridPlace PlaceOnAxis(double coordinate, double origin, double cell,
                                    std::uint32_t count);

template <typename T>
/// A grid of values; only that of doubles is there.
class T2DTable;

/// Values at the nodes of a grid. The first index runs from west to east, the second from south to
/// north, so that a column of the grid lies in one piece of memory. The coordinates of the plane
/// are those of its reference system, in its unit and sign: "west" is the edge with the smallest
/// coordinate.
///
/// All is zero in a table that holds nothing. The fields are open to readers; values go in through
/// Set and SetRows alone, which keep the limits and the flag of the checksum true.
template <>
class T2DTable<double> {
 public:
  T2DTable() = default;
  /// Deep, with checksum and limits.
  T2DTable(const T2DTable& other);
  T2DTable& operator=(const T2DTable&) = delete;
  virtual ~T2DTable() = default;

  /// Nodes from west to east.
  std::uint32_t CountX = 0;
  /// Nodes from south to north.
  std::uint32_t CountY = 0;
  /// The step from west to east in the unit of the plane.
  double CellX = 0;
  /// The step from south to north in the unit of the plane.
  double CellY = 0;
  /// X of the western nodes.
  double OriginX = 0;
  /// Y of the southern nodes.
  double OriginY = 0;
  /// Limits of all values set so far, those overwritten since among them. MinValue > MaxValue
  /// while none was set.
  double MinValue = std::numeric_limits<double>::max();
  /// The upper limit, to MinValue.
  double MaxValue = std::numeric_limits<double>::lowest();
  /// Data[i][j]: CountX columns of CountY values each. Null in an empty table.
  double* const* Data = nullptr;
  /// The checksum of ComputeCrc; it means nothing while CrcValid is 0.
  std::uint32_t Crc = 0;
  /// 1 if Crc is that of the values, else 0.
  std::uint8_t CrcValid = 0;

  /// The least X of a table that holds a node.
  [[nodiscard]] double West() const { return OriginX; }
  /// The least Y of a table that holds a node.
  [[nodiscard]] double South() const { return OriginY; }
  /// The greatest X of a table that holds a node.
  [[nodiscard]] double East() const { return (CountX - 1.0) * CellX + OriginX; }
  /// The greatest Y of a table that holds a node.
  [[nodiscard]] double North() const { return (CountY - 1.0) * CellY + OriginY; }

  /// Makes the table one that holds nothing, and returns its memory.
  void Clear();
  /// Clears, then makes a grid of zeros. Throws std::bad_alloc for more than the memory holds, and
  /// std::length_error where the size in bytes overflows; the table is empty then.
  void Resize(std::uint32_t countX, std::uint32_t countY, double cellX, double cellY,
              double originX, double originY);
  /// The indexes must be below the counts.
  void Set(std::uint32_t i, std::uint32_t j, double value);
  /// The value of a node; the indexes must be below the counts.
  [[nodiscard]] double Get(std::uint32_t i, std::uint32_t j) const { return Data[i][j]; }
  /// Whole rows as texts bring them: from west to east, the first one at the second index `north`,
  /// each further one to the south of the one before. The size must be a multiple of CountX, no
  /// value NaN, and the last row still in the grid. The same as Set for each value, yet many times
  /// faster, since a row runs across all columns.
  void SetRows(std::uint32_t north, std::span<const double> values);
  /// The same rows back.
  void GetRows(std::uint32_t north, std::span<double> values) const;
  /// How many rows SetRows and GetRows move best at a time: so few that they stay in the
  /// processor's cache and are small beside the table, so many that a column's part fills cache
  /// lines. 1 at least.
  [[nodiscard]] std::uint32_t RowsAtATime() const;
  /// Bilinear; a place outside takes the value of the nearest edge. Both counts must be 2 at least.
  [[nodiscard]] double Interpolate(double x, double y) const;
  /// Brings Crc up to date: zlib's CRC-32 chained over the raw doubles, column by column. False
  /// for an empty table.
  bool ComputeCrc();

 private:
  struct MemoryReturner {
    void operator()(double* values) const noexcept;
  };

  /// Memory of zeros for the counts.
  void Allocate();

  std::unique_ptr<double[], MemoryReturner> values_;
  std::vector<double*> columns_;
};

}  // namespace QvCommonUtils

namespace QvRefSystem {

/// A table of heights in the height unit of its reference system.
using THeightTable = QvCommonUtils::T2DTable<double>;

}  // namespace QvRefSystem
