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

  [[nodiscard]] int ItemIndex() const { return buttons_.checkedId(); }
  void SetItemIndex(int index) { buttons_.button(index)->setChecked(true); }
  [[nodiscard]] QButtonGroup& Buttons() { return buttons_; }

 private:
  QButtonGroup buttons_;
};

}  // namespace QvRefSystem
