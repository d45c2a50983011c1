#include "platform/widgets/data_set_model.h"

#include <algorithm>
#include <utility>

#include "platform/widgets/qt_text.h"

namespace QvPlatform {

DataSetTableModel::DataSetTableModel(TDataSource& source, std::vector<Column> columns,
                                     QObject* parent)
    : QAbstractTableModel(parent), source_(source), wanted_(std::move(columns)) {
  source_.AddObserver(this);
  Reload(true);
}

DataSetTableModel::~DataSetTableModel() {
  source_.RemoveObserver(this);
}

void DataSetTableModel::SetRowFilter(RowFilter filter) {
  filter_ = std::move(filter);
  Reload(false);
}

// The layout is asked for at each loading: a table may have been closed and opened since.
void DataSetTableModel::ReadColumns() {
  columns_ = wanted_;
  if (wanted_.empty()) {
    for (const TQvDbField& field : DataSet().Header().Fields()) {
      columns_.push_back({field.name, ToQt(field.name)});
    }
  }
  fields_.clear();
  for (const Column& column : columns_) {
    fields_.push_back(DataSet().FieldByName(column.field).GetIndex());
  }
}

void DataSetTableModel::Reload(bool rowsChanged) {
  stale_ = stale_ || rowsChanged;
  beginResetModel();
  positions_.clear();
  rows_ = 0;
  if (DataSet().GetActive()) {
    ReadColumns();
    if (filter_) positions_ = filter_(std::exchange(stale_, false));
    rows_ = filter_ ? static_cast<int>(positions_.size()) : DataSet().RecordCount();
  }
  endResetModel();
  emit CursorMoved();
}

void DataSetTableModel::OnRowChanged(int position) {
  // Under a filter the row may have come into sight or gone out of it.
  stale_ = true;
  if (filter_) return Reload(true);
  emit dataChanged(index(position, 0), index(position, columnCount() - 1));
  if (position == CurrentRow()) emit CursorMoved();
}

int DataSetTableModel::PositionOfRow(int row) const {
  if (row < 0 || row >= rows_) return -1;
  return filter_ ? positions_[static_cast<std::size_t>(row)] : row;
}

int DataSetTableModel::RowAtOrBehind(int position) const {
  if (!filter_) return std::clamp(position, 0, rows_);
  return static_cast<int>(std::lower_bound(positions_.begin(), positions_.end(), position) -
                          positions_.begin());
}

int DataSetTableModel::RowOfPosition(int position) const {
  const int row = RowAtOrBehind(position);
  return PositionOfRow(row) == position ? row : -1;
}

int DataSetTableModel::CurrentRow() const {
  if (!DataSet().GetActive()) return -1;
  const int position = DataSet().Position();
  return position < 0 ? -1 : RowOfPosition(position);
}

void DataSetTableModel::MoveToRow(int row) {
  const int position = PositionOfRow(row);
  if (position >= 0 && position != DataSet().Position()) DataSet().MoveTo(position);
}

int DataSetTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int DataSetTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant DataSetTableModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !index.isValid()) return {};
  // A paint may come while the data set is at work with its controls disabled.
  const int position = PositionOfRow(index.row());
  if (!DataSet().GetActive() || position < 0 || position >= DataSet().RecordCount()) return {};
  const RowView row = DataSet().Row(position);
  return ToQt(row.GetString(fields_[static_cast<std::size_t>(index.column())]));
}

QVariant DataSetTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  if (section < 0 || section >= columnCount()) return {};
  return columns_[static_cast<std::size_t>(section)].title;
}

}  // namespace QvPlatform
