#pragma once

#include <cstddef>

#include "platform/data/height_table.h"

namespace QvRefSystem {

/// Takes values of a table at any place: bilinear, exact at the nodes, the nearest edge outside.
///
/// `fullTurn` is the full circle in the unit of X where X is a longitude, otherwise 0. Longitudes
/// may come in any turn. In a table that goes around the Earth but for one cell, that cell lies
/// between its last and its first column. An axis with one node has one value all along.
class TableSampler {
 public:
  /// The table must hold a node at least, and outlive the sampler.
  TableSampler(const QvCommonUtils::T2DTable<double>& table, double fullTurn);

  /// The coordinates must be finite.
  [[nodiscard]] double At(double x, double y) const {
    const Place column = ColumnOf(x);
    const Place row = PlaceOf((y - south_) * perCellY_, lastRow_);
    const double* west = columns_[column.index] + row.index;
    const double* east = columns_[column.next] + row.index;
    const std::ptrdiff_t up = row.next - row.index;
    const double atWest = west[0] + row.fraction * (west[up] - west[0]);
    const double atEast = east[0] + row.fraction * (east[up] - east[0]);
    return atWest + column.fraction * (atEast - atWest);
  }

 private:
  struct Place {
    std::ptrdiff_t index;
    std::ptrdiff_t next;
    double fraction;
  };

  // A place along an axis, counted in cells from its first node.
  [[nodiscard]] static Place PlaceOf(double cells, std::ptrdiff_t last) {
    // A billionth of a cell beside a node is that node: rounding must not blur a table.
    constexpr double kNear = 1e-9;
    if (!(cells > kNear)) return {0, 0, 0};
    if (!(cells + kNear < static_cast<double>(last))) return {last, last, 0};
    const auto index = static_cast<std::ptrdiff_t>(cells + kNear);
    const double fraction = cells - static_cast<double>(index);
    return {index, index + 1, fraction > kNear ? fraction : 0};
  }

  [[nodiscard]] Place ColumnOf(double x) const;

  double* const* columns_;
  double west_;
  double south_;
  double perCellX_;
  double perCellY_;
  std::ptrdiff_t lastColumn_;
  std::ptrdiff_t lastRow_;
  /// In cells of X; 0 without longitudes.
  double turn_;
  bool closesCircle_;
};

}  // namespace QvRefSystem
