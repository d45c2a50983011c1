// The keys of a selector, and its search.

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QToolButton>
#include <algorithm>

#include "dialogs/base/guarded.h"
#include "dialogs/select/details_view.h"
#include "dialogs/select/selector.h"
#include "platform/text/text.h"
#include "platform/widgets/data_grid.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::FromQt;
using QvPlatform::TextId;
using QvPlatform::Translated;

namespace {

bool IsEnter(int key) {
  return key == Qt::Key_Return || key == Qt::Key_Enter;
}

// Whether the button could be clicked now; a key does no more than its button.
bool IsOffered(const QPushButton* button) {
  return button->isEnabled() && !button->isHidden();
}

}  // namespace

void TformQvRfSelector::ConnectControls() {
  ConnectButtons();
  ConnectKeys();
  connect(dbgridList, &QAbstractItemView::doubleClicked, this, [this] { bitbtnOkClick(); });
  connect(comboSearch, &QComboBox::editTextChanged, this, [this] { SearchTextChanged(); });
  connect(listModel_.get(), &QvPlatform::DataSetTableModel::CursorMoved, this,
          [this] { CursorMoved(); });
  for (QWidget* widget : std::initializer_list<QWidget*>{dbgridList, dbgridShowAll, comboSearch,
                                                         bitbtnSearchDown, bitbtnSearchUp}) {
    widget->installEventFilter(this);
  }
}

void TformQvRfSelector::ConnectButtons() {
  const auto onClick = [this](QAbstractButton* button, auto&& action) {
    connect(button, &QAbstractButton::clicked, this,
            [this, action] { Guarded(Data().Ui(), action); });
  };
  onClick(bitbtnOk, [this] { bitbtnOkClick(); });
  onClick(bitbtnCancel, [this] { bitbtnCloseClick(); });
  onClick(bitbtnClose, [this] { bitbtnCloseClick(); });
  onClick(bitbtnNew, [this] { DoNew(); });
  onClick(bitbtnEdit, [this] { DoEdit(); });
  onClick(bitbtnRemove, [this] { DoRemove(); });
  onClick(bitbtnImport, [this] { bitbtnImportClick(); });
  onClick(bitbtnExport, [this] {
    bitbtnExportClick(QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier));
  });
  onClick(bitbtnSearchDown, [this] { Search(true); });
  onClick(bitbtnSearchUp, [this] { Search(false); });
  // The button that was clicked is gone, and the focus goes to what took its view's place.
  onClick(bitbtnList, [this] {
    bitbtnListClick();
    dbgridList->setFocus();
  });
  onClick(bitbtnDetails, [this] {
    bitbtnDetailsClick();
    tabDetails->FocusPage();
  });
}

void TformQvRfSelector::ConnectKeys() {
  const auto onKeys = [this](const QKeySequence& keys, auto&& action) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this,
            [this, action] { Guarded(Data().Ui(), action); });
  };
  onKeys(Qt::Key_F3, [this] { Search(true); });
  onKeys(Qt::SHIFT | Qt::Key_F3, [this] { Search(false); });
  const auto choose = [this] {
    if (IsOffered(bitbtnOk)) bitbtnOkClick();
  };
  onKeys(Qt::CTRL | Qt::Key_Return, choose);
  onKeys(Qt::CTRL | Qt::Key_Enter, choose);
}

bool TformQvRfSelector::eventFilter(QObject* watched, QEvent* event) {
  bool taken = false;
  if (event->type() == QEvent::KeyPress) {
    const auto& key = static_cast<const QKeyEvent&>(*event);
    Guarded(Data().Ui(), [&] {
      if (watched == dbgridList) taken = dbgridListKeyDown(key);
      if (watched == dbgridShowAll) taken = dbgridShowAllKeyDown(key);
      if (watched == comboSearch) taken = comboSearchKeyDown(key);
      // On an arrow Enter means the arrow, not the dialog's default button.
      if ((watched == bitbtnSearchDown || watched == bitbtnSearchUp) && IsEnter(key.key())) {
        Search(watched == bitbtnSearchDown);
        taken = true;
      }
    });
  }
  return taken || ModalForm::eventFilter(watched, event);
}

bool TformQvRfSelector::dbgridListKeyDown(const QKeyEvent& event) {
  const Qt::KeyboardModifiers both = Qt::ControlModifier | Qt::ShiftModifier;
  if ((event.modifiers() & both) == both) return ControlShiftKey(event.key());
  if (IsEnter(event.key()) && event.modifiers().testFlag(Qt::ControlModifier)) return false;
  if (IsEnter(event.key())) return EnterInList();
  if (event.key() == Qt::Key_Insert && IsOffered(bitbtnNew)) {
    DoNew();
    return true;
  }
  if (event.key() == Qt::Key_Delete && IsOffered(bitbtnRemove)) {
    DoRemove();
    return true;
  }
  if (event.key() == Qt::Key_Up && dbgridList->currentIndex().row() <= 0) {
    comboSearch->setFocus(Qt::OtherFocusReason);
    return true;
  }
  // Whoever types in the list is looking for a name.
  const bool plain = (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
  if (plain && !event.text().isEmpty() && event.text().front().isLetterOrNumber()) {
    comboSearch->setFocus(Qt::OtherFocusReason);
    comboSearch->lineEdit()->setText(event.text());
    return true;
  }
  return false;
}

bool TformQvRfSelector::ControlShiftKey(int key) {
  switch (key) {
    case Qt::Key_F2:
      bitbtnExportClick(false);
      return true;
    case Qt::Key_F3:
      bitbtnImportClick();
      return true;
    case Qt::Key_F11:
      ShowAllFields(true);
      return true;
    default:
      return false;
  }
}

// Enter edits where the user may edit; else it does what the dialog is for.
bool TformQvRfSelector::EnterInList() {
  if (IsOffered(bitbtnEdit)) {
    DoEdit();
  } else if (IsOffered(bitbtnOk)) {
    bitbtnOkClick();
  } else if (!bitbtnClose->isHidden() && IsOffered(bitbtnDetails)) {
    bitbtnDetails->click();
  }
  return true;
}

bool TformQvRfSelector::dbgridShowAllKeyDown(const QKeyEvent& event) {
  const Qt::KeyboardModifiers both = Qt::ControlModifier | Qt::ShiftModifier;
  const bool leave = event.key() == Qt::Key_F12 && (event.modifiers() & both) == both;
  if (!leave && event.key() != Qt::Key_Escape) return false;
  ShowAllFields(false);
  return true;
}

bool TformQvRfSelector::comboSearchKeyDown(const QKeyEvent& event) {
  if (event.key() == Qt::Key_Down && event.modifiers() == Qt::NoModifier) {
    if (dbgridList->isHidden()) bitbtnListClick();
    dbgridList->setFocus(Qt::OtherFocusReason);
    return true;
  }
  if (IsEnter(event.key()) && !event.modifiers().testFlag(Qt::ControlModifier)) {
    return EnterInSearch();
  }
  return false;
}

// One row left is what the user meant. Of several the list shows which one is current, and a
// second Enter there takes it: nobody gets a neighbour of the system that they meant.
bool TformQvRfSelector::EnterInSearch() {
  const int rows = listModel_->rowCount();
  if (rows == 0) {
    Search(true);
    return true;
  }
  RememberSearch();
  if (rows == 1 && HasVisibleCurrent() && IsOffered(bitbtnOk)) {
    bitbtnOkClick();
  } else {
    if (dbgridList->isHidden()) bitbtnListClick();
    dbgridList->setFocus(Qt::OtherFocusReason);
  }
  return true;
}

void TformQvRfSelector::ShowAllFields(bool show) {
  if (show && allModel_ == nullptr) {
    allModel_ = std::make_unique<QvPlatform::DataSetTableModel>(
        source_, std::vector<QvPlatform::DataSetTableModel::Column>{}, nullptr);
    dbgridShowAll->SetDataSetModel(allModel_.get());
  }
  dbgridShowAll->setEnabled(show);
  if (show) {
    dbgridShowAll->setGeometry(rect());
    dbgridShowAll->raise();
    dbgridShowAll->show();
    dbgridShowAll->setFocus();
  } else {
    dbgridShowAll->hide();
    dbgridShowAll->lower();
    dbgridList->setFocus();
  }
}

void TformQvRfSelector::Search(bool down) {
  const std::string text = FromQt(comboSearch->currentText());
  const bool found = down ? Processor->FindNextByName(text) : Processor->FindPriorByName(text);
  if (!found) {
    std::string message = QvPlatform::SystemText(TextId::kNotFound);
    const std::size_t place = message.find("%s");
    if (place != std::string::npos) message.replace(place, 2, text);
    Data().Ui().ShowMessage(QvPlatform::MessageKind::kPlain, message,
                            QvPlatform::MessageButtons::kOk);
  }
  RememberSearch();
}

// The history keeps a text as it was first typed.
void TformQvRfSelector::RememberSearch() {
  const QString text = comboSearch->currentText();
  const std::string folded = QvPlatform::UpperCase(FromQt(text));
  for (int i = 0; i < comboSearch->count(); ++i) {
    if (QvPlatform::UpperCase(FromQt(comboSearch->itemText(i))) == folded) return;
  }
  // The first item of a combo box becomes its text, whatever was typed.
  const QSignalBlocker quiet(comboSearch);
  comboSearch->insertItem(0, text);
  comboSearch->setEditText(text);
}

void TformQvRfSelector::ClearSearch() {
  if (comboSearch->currentText().isEmpty()) {
    SearchTextChanged();
  } else {
    comboSearch->setEditText(QString());
  }
}

void TformQvRfSelector::SearchTextChanged() {
  const std::string text = FromQt(comboSearch->currentText());
  if (text.empty()) {
    listModel_->SetRowFilter({});
  } else {
    bitbtnListClick();
    listModel_->SetRowFilter([this, text](bool rowsChanged) {
      if (rowsChanged) names_.Invalidate();
      return names_.Match(text);
    });
  }
  if (!HasVisibleCurrent()) listModel_->MoveToRow(0);
  CursorMoved();
}

// The row at the place of a current record that went out of sight, or else the last one.
void TformQvRfSelector::KeepCurrentInSight() {
  const int rows = listModel_->rowCount();
  if (rows == 0 || HasVisibleCurrent()) return;
  listModel_->MoveToRow(
      std::min(listModel_->RowAtOrBehind(Processor->DataSet->Position()), rows - 1));
}

void TformQvRfSelector::ShowCurrentRecord() {
  if (!HasVisibleCurrent()) ClearSearch();
}

void TformQvRfSelector::CursorMoved() {
  UpdateEditButtons();
  UpdateCount();
  if (!tabDetails->isHidden()) bitbtnDetailsClick();
}

void TformQvRfSelector::UpdateCount() {
  const int rows = listModel_->rowCount();
  const bool active = Processor->DataSet->GetActive();
  const int all = active ? Processor->DataSet->RecordCount() : 0;
  const QString text = comboSearch->currentText();
  const QLocale locale;
  // Room for the widest text from the start: the search field keeps its width while one types.
  const QString total = locale.toString(all);
  const QString part = Translated("%1 of %2");
  lblCount->setMinimumWidth(lblCount->fontMetrics().horizontalAdvance(part.arg(total, total)));
  lblCount->setText(text.isEmpty() ? Translated("All %1").arg(total)
                                   : part.arg(locale.toString(rows), total));
  dbgridList->SetEmptyText(all == 0 ? Translated("There is nothing here yet.")
                                    : Translated("No name contains \"%1\".").arg(text));
}

}  // namespace QvRefSystem
