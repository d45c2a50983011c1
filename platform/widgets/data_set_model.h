#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <string>
#include <vector>

#include "platform/dbset/data_set.h"
#include "platform/dbset/data_set_observer.h"
#include "platform/dbset/data_source.h"

namespace QvPlatform {

/// Rows of a data set for the toolkit's views, read where they lie: nothing is copied but, under a
/// row filter, the places of the rows that show.
///
/// It hears of changes through the data source, so that it keeps still while the data set's
/// controls or the source are disabled. The source must outlive the model.
class DataSetTableModel final : public QAbstractTableModel, private TDataSetObserver {
  Q_OBJECT

 public:
  /// A column of the model.
  struct Column {
    /// The name of the field that it shows, which the table must have.
    std::string field;
    /// What stands above it, in the user's language.
    QString title;
  };
  /// Gives the ascending positions of the rows to show; `rowsChanged`: what it may have kept about
  /// the rows is out of date.
  using RowFilter = std::function<std::vector<int>(bool rowsChanged)>;

  /// Without columns the model shows every field of the table, titled by its name.
  DataSetTableModel(TDataSource& source, std::vector<Column> columns, QObject* parent);
  ~DataSetTableModel() override;

  /// An empty function shows all rows.
  void SetRowFilter(RowFilter filter);
  /// The data set behind the source.
  [[nodiscard]] TQvDataSet& DataSet() const { return *source_.DataSet(); }
  /// Position in the data set of a row of the model; -1 for a row that is not there.
  [[nodiscard]] int PositionOfRow(int row) const;
  /// Row of the model at or behind a position; rowCount() if there is none.
  [[nodiscard]] int RowAtOrBehind(int position) const;
  /// Row of the model for a position in the data set; -1 if it does not show.
  [[nodiscard]] int RowOfPosition(int position) const;
  /// Row of the data set's current record; -1 if it does not show.
  [[nodiscard]] int CurrentRow() const;
  /// Makes the record of a row the data set's current one.
  void MoveToRow(int row);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;

 signals:
  /// The data set's cursor moved, or the rows changed round it.
  void CursorMoved();

 private:
  void OnRowsReset() override { Reload(true); }
  void OnRowInserted(int) override { Reload(true); }
  void OnRowChanged(int position) override;
  void OnRowRemoved(int) override { Reload(true); }
  void OnCurrentMoved(int) override { emit CursorMoved(); }
  void Reload(bool rowsChanged);
  void ReadColumns();

  TDataSource& source_;
  const std::vector<Column> wanted_;
  std::vector<Column> columns_;
  std::vector<int> fields_;
  RowFilter filter_;
  std::vector<int> positions_;
  int rows_ = 0;
  /// Whether rows have changed since the filter was last asked.
  bool stale_ = true;
};

}  // namespace QvPlatform
