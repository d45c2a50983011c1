#include "dialogs/select/selector_keys.h"

#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>

#include "dialogs/base/guarded.h"
#include "dialogs/select/selector_controls.h"
#include "dialogs/select/selector_search.h"
#include "platform/widgets/data_grid.h"

namespace QvRefSystem {
namespace {

constexpr Qt::KeyboardModifiers kControlShift = Qt::ControlModifier | Qt::ShiftModifier;

bool IsEnter(int key) {
  return key == Qt::Key_Return || key == Qt::Key_Enter;
}

bool HasControlShift(const QKeyEvent& event) {
  return (event.modifiers() & kControlShift) == kControlShift;
}

// Whether the button could be clicked now; a key does no more than its button.
bool IsOffered(const QPushButton* button) {
  return button->isEnabled() && !button->isHidden();
}

}  // namespace

SelectorKeys::SelectorKeys(QDialog* form, const SelectorControls& controls, SelectorSearch& search,
                           SelectorActions& actions, QvPlatform::TUserInterface& ui)
    : QObject(form), controls_(controls), search_(search), actions_(actions), ui_(ui) {
  for (QWidget* widget : std::initializer_list<QWidget*>{
           controls.dbgridList, controls.dbgridShowAll, controls.comboSearch,
           controls.bitbtnSearchDown, controls.bitbtnSearchUp}) {
    widget->installEventFilter(this);
  }
  ConnectShortcuts(form);
}

void SelectorKeys::ConnectShortcuts(QDialog* form) {
  const auto onKeys = [&](const QKeySequence& keys, auto&& action) {
    connect(new QShortcut(keys, form), &QShortcut::activated, this,
            [this, action] { Guarded(ui_, action); });
  };
  onKeys(Qt::Key_F3, [this] { search_.Find(true); });
  onKeys(Qt::SHIFT | Qt::Key_F3, [this] { search_.Find(false); });
  const auto choose = [this] {
    if (IsOffered(controls_.bitbtnOk)) actions_.DoChoose();
  };
  onKeys(Qt::CTRL | Qt::Key_Return, choose);
  onKeys(Qt::CTRL | Qt::Key_Enter, choose);
}

bool SelectorKeys::eventFilter(QObject* watched, QEvent* event) {
  bool taken = false;
  if (event->type() == QEvent::KeyPress) {
    Guarded(ui_, [&] { taken = KeyDown(watched, static_cast<const QKeyEvent&>(*event)); });
  }
  return taken || QObject::eventFilter(watched, event);
}

bool SelectorKeys::KeyDown(const QObject* watched, const QKeyEvent& event) {
  if (watched == controls_.dbgridList) return dbgridListKeyDown(event);
  if (watched == controls_.dbgridShowAll) return dbgridShowAllKeyDown(event);
  if (watched == controls_.comboSearch) return comboSearchKeyDown(event);
  // On an arrow Enter means the arrow, not the dialog's default button.
  if (IsEnter(event.key())) search_.Find(watched == controls_.bitbtnSearchDown);
  return IsEnter(event.key());
}

bool SelectorKeys::dbgridListKeyDown(const QKeyEvent& event) {
  if (HasControlShift(event)) return ControlShiftKey(event.key());
  if (IsEnter(event.key()) && event.modifiers().testFlag(Qt::ControlModifier)) return false;
  if (IsEnter(event.key())) return EnterInList();
  if (event.key() == Qt::Key_Insert && IsOffered(controls_.bitbtnNew)) {
    actions_.DoNew();
    return true;
  }
  if (event.key() == Qt::Key_Delete && IsOffered(controls_.bitbtnRemove)) {
    actions_.DoRemove();
    return true;
  }
  return PlainKey(event);
}

// Whoever goes up from the first row, or types in the list, is looking for a name.
bool SelectorKeys::PlainKey(const QKeyEvent& event) {
  const bool up = event.key() == Qt::Key_Up && controls_.dbgridList->currentIndex().row() <= 0;
  const bool plain = (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
  const bool typed = plain && !event.text().isEmpty() && event.text().front().isLetterOrNumber();
  if (!up && !typed) return false;
  controls_.comboSearch->setFocus(Qt::OtherFocusReason);
  if (!up) controls_.comboSearch->lineEdit()->setText(event.text());
  return true;
}

bool SelectorKeys::ControlShiftKey(int key) {
  switch (key) {
    case Qt::Key_F2:
      actions_.DoExport();
      return true;
    case Qt::Key_F3:
      actions_.DoImport();
      return true;
    case Qt::Key_F11:
      actions_.ShowAllFields(true);
      return true;
    default:
      return false;
  }
}

// Enter edits where the user may edit; else it does what the dialog is for.
bool SelectorKeys::EnterInList() {
  if (IsOffered(controls_.bitbtnEdit)) {
    actions_.DoEdit();
  } else if (IsOffered(controls_.bitbtnOk)) {
    actions_.DoChoose();
  } else if (!controls_.bitbtnClose->isHidden() && IsOffered(controls_.bitbtnDetails)) {
    controls_.bitbtnDetails->click();
  }
  return true;
}

bool SelectorKeys::dbgridShowAllKeyDown(const QKeyEvent& event) {
  const bool leave = event.key() == Qt::Key_F12 && HasControlShift(event);
  if (!leave && event.key() != Qt::Key_Escape) return false;
  actions_.ShowAllFields(false);
  return true;
}

bool SelectorKeys::comboSearchKeyDown(const QKeyEvent& event) {
  if (event.key() == Qt::Key_Down && event.modifiers() == Qt::NoModifier) {
    GoToList();
    return true;
  }
  return IsEnter(event.key()) && !event.modifiers().testFlag(Qt::ControlModifier) &&
         EnterInSearch();
}

// One row left is what the user meant. Of several the list shows which one is current, and a
// second Enter there takes it: nobody gets a neighbour of the system that they meant.
bool SelectorKeys::EnterInSearch() {
  if (search_.RowCount() == 0) {
    search_.Find(true);
    return true;
  }
  search_.Remember();
  if (search_.RowCount() == 1 && search_.HasVisibleCurrent() && IsOffered(controls_.bitbtnOk)) {
    actions_.DoChoose();
  } else {
    GoToList();
  }
  return true;
}

void SelectorKeys::GoToList() {
  if (controls_.dbgridList->isHidden()) actions_.ShowList();
  controls_.dbgridList->setFocus(Qt::OtherFocusReason);
}

}  // namespace QvRefSystem
