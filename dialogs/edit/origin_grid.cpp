#include "dialogs/edit/origin_grid.h"

#include <QEvent>
#include <QHeaderView>
#include <QLineEdit>

#include "dialogs/base/row_controls.h"
#include "platform/widgets/fit_columns.h"

namespace QvRefSystem {
namespace {

constexpr int kNameColumn = 0;
constexpr int kValueColumn = 1;
/// What long names of axes leave of the values, in characters: a coordinate to the millimetre.
constexpr int kLeastValue = 12;

}  // namespace

OriginGrid::OriginGrid(QWidget* parent, const std::vector<QLineEdit*>& cells)
    : QTableWidget(static_cast<int>(cells.size()), 2, parent), cells_(cells) {
  setObjectName("strgridOrigin");
  setFocusPolicy(Qt::NoFocus);
  setSelectionMode(NoSelection);
  setEditTriggers(NoEditTriggers);
  setTabKeyNavigation(false);
  setWordWrap(false);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  horizontalHeader()->hide();
  horizontalHeader()->setMinimumSectionSize(0);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  for (int row = 0; row < rowCount(); ++row) {
    auto* name = new QTableWidgetItem;
    name->setFlags(Qt::ItemIsEnabled);
    setItem(row, kNameColumn, name);
    QLineEdit* cell = cells_[static_cast<std::size_t>(row)];
    cell->setFrame(false);
    setCellWidget(row, kValueColumn, cell);
  }
  // Up and Down in a cell move the grid's current row, and a click on a name sets it.
  connect(this, &QTableWidget::currentCellChanged, this, [this](int row) { EnterRow(row); });
  connect(this, &QTableWidget::cellPressed, this, [this](int row) { EnterRow(row); });
  FitRows();
}

void OriginGrid::SetAxisName(int row, const QString& name) {
  item(row, kNameColumn)->setText(name);
  cells_.at(static_cast<std::size_t>(row))->setAccessibleName(name);
  FitNames();
}

void OriginGrid::EnterRow(int row) {
  if (row >= 0) cells_.at(static_cast<std::size_t>(row))->setFocus(Qt::OtherFocusReason);
}

// All rows show at once.
void OriginGrid::FitRows() {
  const int height = cells_.front()->sizeHint().height() + 1;  // the line below it
  verticalHeader()->setMinimumSectionSize(height);
  verticalHeader()->setDefaultSectionSize(height);
  setFixedHeight(height * rowCount() + 2 * frameWidth());
}

void OriginGrid::FitNames() {
  QvPlatform::FitColumns(*this, fontMetrics().averageCharWidth() * kLeastValue);
  for (int row = 0; row < rowCount(); ++row) {
    QTableWidgetItem* name = item(row, kNameColumn);
    const bool cut = fontMetrics().horizontalAdvance(name->text()) > columnWidth(kNameColumn);
    name->setToolTip(cut ? TipOf(name->text()) : QString());
  }
  // The view would place the cells only when the events at hand are done.
  updateEditorGeometries();
}

void OriginGrid::resizeEvent(QResizeEvent* event) {
  QTableWidget::resizeEvent(event);
  FitNames();
}

void OriginGrid::changeEvent(QEvent* event) {
  QTableWidget::changeEvent(event);
  if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
  // The base class changes fonts while it is being made.
  if (cells_.empty()) return;
  FitRows();
  FitNames();
}

}  // namespace QvRefSystem
