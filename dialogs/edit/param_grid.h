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
  explicit ParamGrid(QWidget* parent);

  void Clear();
  void AddRow(int code, std::string_view name, const std::string& value,
              const std::vector<std::string>& choices);
  /// Gives the names the width of the widest one, and the values the rest.
  void FitColumns();
  /// Most characters that can be typed into a value.
  void SetLimit(int characters);
  /// Takes over a value that is still being typed.
  void CommitEditor();
  [[nodiscard]] int Code(int row) const;
  /// A value that the user has left alone comes back byte for byte.
  [[nodiscard]] std::string Value(int row) const;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 private:
  /// Null for a cell without a list.
  [[nodiscard]] QComboBox* ListAt(int row, int column) const;
  void ShowList(int row);
  void HideList(QComboBox* list);
  void TakeChoice(QComboBox* list, int item);

  /// Of each row, null for one without a list.
  std::vector<QComboBox*> lists_;
};

}  // namespace QvRefSystem
