#include "platform/widgets/data_grid.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QToolTip>

namespace QvPlatform {

DataGrid::DataGrid(QWidget* parent) : QTableView(parent) {
  setSelectionBehavior(SelectRows);
  setSelectionMode(SingleSelection);
  setEditTriggers(NoEditTriggers);
  setTabKeyNavigation(false);
  setAlternatingRowColors(true);
  setShowGrid(false);
  setWordWrap(false);
  setHorizontalScrollMode(ScrollPerPixel);
  // Rows of one fixed height: thousands of them cost nothing to lay out.
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
  verticalHeader()->hide();
  horizontalHeader()->setStretchLastSection(true);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
}

void DataGrid::SetDataSetModel(DataSetTableModel* model) {
  model_ = model;
  setModel(model);
  connect(model, &QAbstractItemModel::modelAboutToBeReset, this, &DataGrid::KeepPlace);
  connect(model, &DataSetTableModel::CursorMoved, this, &DataGrid::FollowCursor);
  FollowCursor();
}

void DataGrid::SetEmptyText(const QString& text) {
  emptyText_ = text;
  viewport()->update();
}

void DataGrid::EqualiseColumns() {
  const int columns = horizontalHeader()->count();
  for (int column = 0; column + 1 < columns; ++column) {
    setColumnWidth(column, viewport()->width() / columns);
  }
}

// The grid follows the cursor without moving it in turn.
void DataGrid::FollowCursor() {
  if (!model_) return;
  const QScopedValueRollback guard(following_, true);
  const int row = model_->CurrentRow();
  if (row < 0) {
    setCurrentIndex({});
    clearSelection();
    return;
  }
  const int column = currentIndex().isValid() ? currentIndex().column() : 0;
  setCurrentIndex(model_->index(row, column));
  selectRow(row);
  RestorePlace();
}

void DataGrid::KeepPlace() {
  const int top = rowAt(0);
  if (top < 0 || !currentIndex().isValid()) return;
  top_ = top;
  const int offset = currentIndex().row() - top;
  const bool shows =
      offset >= 0 && rowViewportPosition(currentIndex().row()) < viewport()->height();
  offset_ = shows ? std::optional(offset) : std::nullopt;
}

void DataGrid::RestorePlace() {
  if (!top_) return;
  updateGeometries();
  verticalScrollBar()->setValue(offset_ ? currentIndex().row() - *offset_ : *top_);
  top_.reset();
}

// Of whole rows Home and End are the first and the last one, not the ends of a row.
QModelIndex DataGrid::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
  if (action == MoveHome || action == MoveEnd) modifiers |= Qt::ControlModifier;
  return QTableView::moveCursor(action, modifiers);
}

void DataGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  if (!following_ && current.isValid() && model_) model_->MoveToRow(current.row());
}

void DataGrid::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (emptyText_.isEmpty() || model() == nullptr || model()->rowCount() > 0) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  const int margin = fontMetrics().height();
  painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                   Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, emptyText_);
}

// A view that was hidden when its cursor moved has not scrolled to it.
void DataGrid::showEvent(QShowEvent* event) {
  QTableView::showEvent(event);
  if (currentIndex().isValid()) scrollTo(currentIndex(), PositionAtCenter);
}

// A cell that is cut shows its whole text when pointed at, in as many lines as it takes.
bool DataGrid::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QTableView::viewportEvent(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const QModelIndex index = indexAt(help->pos());
  const QString text = index.data().toString();
  const bool cut = fontMetrics().horizontalAdvance(text) + fontMetrics().averageCharWidth() >
                   visualRect(index).width();
  QToolTip::showText(help->globalPos(),
                     cut ? QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped()) : QString(),
                     viewport());
  return true;
}

QSize DataGrid::sizeHint() const {
  const QFontMetrics metrics = fontMetrics();
  return {metrics.averageCharWidth() * 80, verticalHeader()->defaultSectionSize() * 14};
}

}  // namespace QvPlatform
