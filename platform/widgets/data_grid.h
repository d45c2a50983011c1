#pragma once

#include <QPointer>
#include <QTableView>
#include <optional>

#include "platform/widgets/data_set_model.h"

namespace QvPlatform {

/// A read-only grid over a data set, whole rows selected, whose current row is the data set's
/// current record, both ways. A record that a filter hides leaves the grid without a current row.
/// Where rows come or go, the current one stays where it stands on the screen.
class DataGrid final : public QTableView {
  Q_OBJECT

 public:
  /// The grid is empty until it has a model.
  explicit DataGrid(QWidget* parent);

  /// Shows another model, which need not outlive the grid.
  void SetDataSetModel(DataSetTableModel* model);
  /// Null before SetDataSetModel, and once the model is gone.
  [[nodiscard]] DataSetTableModel* DataSetModel() const { return model_; }
  /// What stands in the place of the rows while there are none.
  void SetEmptyText(const QString& text);
  /// The text of SetEmptyText.
  [[nodiscard]] const QString& EmptyText() const { return emptyText_; }
  /// Gives all columns the same share of the width; the last one takes what is left, now and when
  /// the grid is resized.
  void EqualiseColumns();

 protected:
  [[nodiscard]] QModelIndex moveCursor(CursorAction action,
                                       Qt::KeyboardModifiers modifiers) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  [[nodiscard]] bool viewportEvent(QEvent* event) override;
  [[nodiscard]] QSize sizeHint() const override;

 private:
  void FollowCursor();
  void KeepPlace();
  void RestorePlace();

  QPointer<DataSetTableModel> model_;
  QString emptyText_;
  bool following_ = false;
  /// While the rows change: how far the current row stands below the first one that shows, if it
  /// shows, and that first one.
  std::optional<int> offset_;
  std::optional<int> top_;
};

}  // namespace QvPlatform
