#pragma once

#include <QButtonGroup>
#include <QGroupBox>
#include <QRadioButton>
#include <QStringList>
#include <QVBoxLayout>

namespace QvRefSystem {

/// A box of radio buttons, of which exactly one is checked; they are numbered from 0.
class RadioGroup : public QGroupBox {
 public:
  /// The first of the items is checked at the beginning; there must be one at least.
  RadioGroup(const QString& caption, const QStringList& items, QWidget* parent)
      : QGroupBox(caption, parent), buttons_(this) {
    auto* column = new QVBoxLayout(this);
    for (const QString& item : items) {
      auto* button = new QRadioButton(item, this);
      buttons_.addButton(button, static_cast<int>(buttons_.buttons().size()));
      column->addWidget(button);
    }
    SetItemIndex(0);
  }

  /// The number of the item that is checked.
  [[nodiscard]] int ItemIndex() const { return buttons_.checkedId(); }
  /// Checks the item of that number, which must exist.
  void SetItemIndex(int index) { buttons_.button(index)->setChecked(true); }
  /// The buttons by their numbers, for those who listen to clicks.
  [[nodiscard]] QButtonGroup& Buttons() { return buttons_; }

 private:
  QButtonGroup buttons_;
};

}  // namespace QvRefSystem
