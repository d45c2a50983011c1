#pragma once

#include <QTableWidget>
#include <vector>

class QLineEdit;

namespace QvRefSystem {

/// The grid of a system's origin: the names of the axes beside the values. The cells of values are
/// lines of text in their own right, so that Tab and a click get there as to any other line.
class OriginGrid final : public QTableWidget {
  Q_OBJECT

 public:
  /// Makes a grid of as many rows as there are lines, at least one. The lines become the cells of
  /// column 1, and the grid owns them from then on.
  OriginGrid(QWidget* parent, const std::vector<QLineEdit*>& cells);

  /// Names the axis of a row, which counts from 0 and must be there.
  void SetAxisName(int row, const QString& name);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void FitRows();
  void FitNames();
  void EnterRow(int row);

  std::vector<QLineEdit*> cells_;
};

}  // namespace QvRefSystem
