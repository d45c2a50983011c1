#include "platform/geocore/table_sampler.h"

#include <cmath>

namespace QvRefSystem {

TableSampler::TableSampler(const QvCommonUtils::T2DTable<double>& table, double fullTurn)
    : columns_(table.Data),
      west_(table.OriginX),
      south_(table.OriginY),
      perCellX_(1 / table.CellX),
      perCellY_(1 / table.CellY),
      lastColumn_(static_cast<std::ptrdiff_t>(table.CountX) - 1),
      lastRow_(static_cast<std::ptrdiff_t>(table.CountY) - 1),
      turn_(fullTurn / table.CellX),
      closesCircle_(turn_ != 0 && std::abs(turn_ - table.CountX) < 1e-3) {}

TableSampler::Place TableSampler::ColumnOf(double x) const {
  double cells = (x - west_) * perCellX_;
  if (turn_ == 0) return PlaceOf(cells, lastColumn_);
  const auto last = static_cast<double>(lastColumn_);
  if (cells >= 0 && cells <= last) return PlaceOf(cells, lastColumn_);
  cells -= turn_ * std::floor(cells / turn_);
  if (cells <= last) return PlaceOf(cells, lastColumn_);
  if (closesCircle_) return {lastColumn_, 0, cells - last};
  // Of both edges the one that lies nearer around the Earth.
  return cells - last < turn_ - cells ? Place{lastColumn_, lastColumn_, 0} : Place{0, 0, 0};
}

}  // namespace QvRefSystem
