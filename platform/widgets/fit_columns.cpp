#include "platform/widgets/fit_columns.h"

#include <QTableWidget>
#include <algorithm>

namespace QvPlatform {
namespace {

int WidestCell(const QTableWidget& grid, int column) {
  const QFontMetrics metrics = grid.fontMetrics();
  int width = 0;
  for (int row = 0; row < grid.rowCount(); ++row) {
    const QTableWidgetItem* item = grid.item(row, column);
    if (item != nullptr) width = std::max(width, metrics.horizontalAdvance(item->text()));
  }
  if (const QTableWidgetItem* title = grid.horizontalHeaderItem(column)) {
    width = std::max(width, metrics.horizontalAdvance(title->text()));
  }
  return width > 0 ? width + metrics.horizontalAdvance(QStringLiteral("  ")) : 0;
}

}  // namespace

void FitColumns(QTableWidget& grid, int leastLast) {
  int rest = grid.viewport()->width();
  const int last = grid.columnCount() - 1;
  for (int column = 0; column < last; ++column) {
    int width = WidestCell(grid, column);
    if (leastLast > 0) width = std::clamp(width, 0, std::max(0, rest - leastLast));
    grid.setColumnWidth(column, width);
    rest -= width;
  }
  grid.setColumnWidth(last, std::max(WidestCell(grid, last), rest));
}

}  // namespace QvPlatform
