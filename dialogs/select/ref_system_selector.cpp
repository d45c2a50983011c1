#include "dialogs/select/ref_system_selector.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScreen>
#include <algorithm>

#include "dialogs/base/guarded.h"
#include "dialogs/select/legacy_tool.h"

namespace QvRefSystem {

TformQvRfRefSystemSelector::TformQvRfRefSystemSelector(QWidget* owner, const Chooser& chooser)
    : TypedSelector(owner, chooser, {.type = TObjectType::kReferenceSystem, .ownSource = true},
                    TObjectType::kReferenceSystemType) {
  bitbtnImport->installEventFilter(this);
}

bool TformQvRfRefSystemSelector::eventFilter(QObject* watched, QEvent* event) {
  if (watched == bitbtnImport && event->type() == QEvent::KeyPress &&
      bitbtnImportKeyDown(static_cast<const QKeyEvent&>(*event))) {
    return true;
  }
  return TypedSelector::eventFilter(watched, event);
}

bool TformQvRfRefSystemSelector::bitbtnImportKeyDown(const QKeyEvent& event) {
  const Qt::KeyboardModifiers both = Qt::ControlModifier | Qt::ShiftModifier;
  if (event.key() != Qt::Key_F2 || (event.modifiers() & both) != both) return false;
  Guarded(Data().Ui(), [this] { RunLegacyTool(this, Data()); });
  return true;
}

bool TformQvRfRefSystemSelector::SelectFiltered(TStringTree* tree, int id, int type, bool hideOwner,
                                                int* key, int index) {
  return SelectWhere(OfType(type), {tree, id, index, hideOwner, key});
}

bool TformQvRfRefSystemSelector::SelectWhere(const RowFilter& where, const Choice& choice) {
  const QScopedValueRollback fixed(fixedType_, where.value);
  return TypedSelector::SelectWhere(where, choice);
}

int TformQvRfRefSystemSelector::TypeOfNew() {
  return fixedType_ != 0 ? fixedType_ : TypedSelector::TypeOfNew();
}

void TformQvRfRefSystemSelector::FormShow(bool first) {
  TypedSelector::FormShow(first);
  if (!first) return;
  const QScreen* shown = screen() != nullptr ? screen() : QGuiApplication::primaryScreen();
  const QRect room = shown->availableGeometry();
  const QPoint middle = room.center() - rect().center();
  // On a screen that is too small the beginning of each line shows.
  move(std::max(middle.x(), room.left()), std::max(middle.y(), room.top()));
}

}  // namespace QvRefSystem
