#pragma once

#include <QTableWidget>
#include <string>
#include <string_view>
#include <vector>

class QComboBox;

namespace QvRefSystem {

/// A grid of names and values, as text. A value that is chosen from a list gets its list laid over
/// the cell by a click or by Enter; it can be typed all the same.
class ParamGrid final : public QTableWidget {
  Q_OBJECT

 public:
  /// Makes an empty grid, which the parent owns.
  explicit ParamGrid(QWidget* parent);

  /// Removes all rows and their lists.
  void Clear();
  /// Appends a row. `code` is that of the parameter; the choices are the items of the cell's list,
  /// and a cell without choices has no list.
  void AddRow(int code, std::string_view name, const std::string& value,
              const std::vector<std::string>& choices);
  /// Gives the names the width of the widest one, and the values the rest.
  void FitColumns();
  /// Sets how many characters can be typed into a value at most.
  void SetLimit(int characters);
  /// Takes over a value that is still being typed.
  void CommitEditor();
  /// The code with which the row was added. The row counts from 0 and must be there.
  [[nodiscard]] int Code(int row) const;
  /// The name with which the row was added.
  [[nodiscard]] std::string Name(int row) const;
  /// The value as it stands in the row, which must be there. One that the user has left alone comes
  /// back byte for byte.
  [[nodiscard]] std::string Value(int row) const;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 private:
  /// The list of a cell, or null for a cell without one and for a place outside the grid.
  [[nodiscard]] QComboBox* ListAt(int row, int column) const;
  void ShowList(int row);
  void HideList(QComboBox* list);
  void TakeChoice(QComboBox* list, int item);

  /// The list of each row, null for a row without one.
  std::vector<QComboBox*> lists_;
};

}  // namespace QvRefSystem
