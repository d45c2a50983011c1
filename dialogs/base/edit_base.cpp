#include "dialogs/base/edit_base.h"

#include <QLayout>
#include <QPushButton>
#include <QToolTip>
#include <algorithm>
#include <map>
#include <optional>
#include <stdexcept>
#include <typeindex>

#include "dialogs/base/processor_of.h"
#include "platform/widgets/colour.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::HiddenForm;

namespace {

// Where the user has put the dialogs of a class and how large he has made them, while the program
// runs.
struct Place {
  std::optional<QPoint> position;
  std::optional<QSize> size;
};

Place& PlaceOf(const TformQvRfEdit& form) {
  static std::map<std::type_index, Place> places;
  return places[typeid(form)];
}

// Locks a record while its dialog runs.
class RecordLock {
 public:
  RecordLock(TQvRfDataProcessor& processor, int key) : processor_(processor), key_(key) {
    processor_.PushEditKey();
  }
  ~RecordLock() {
    const auto lock = std::ranges::find(processor_.EditKeys, key_);
    if (lock != processor_.EditKeys.end()) processor_.EditKeys.erase(lock);
  }
  RecordLock(const RecordLock&) = delete;
  RecordLock& operator=(const RecordLock&) = delete;

 private:
  TQvRfDataProcessor& processor_;
  const int key_;
};

}  // namespace

TformQvRfEdit::TformQvRfEdit(QWidget* owner, const Chooser& chooser, TObjectType object)
    : ModalForm(owner),
      ErrorColour(QvPlatform::ColourFromBgr(
          datamoduleQvRfData != nullptr ? datamoduleQvRfData->ErrorColour : 0)),
      Processor(&ProcessorOf(object)),
      chooser_(chooser) {}

ObjectList& TformQvRfEdit::ListOf(TObjectType object) {
  ObjectList* list = chooser_.ListFor(this, object);
  if (list == nullptr) throw std::invalid_argument("no list of this object type");
  return *list;
}

bool TformQvRfEdit::EditCurrent() {
  const ControlsGuard controls(*Processor->DataSet);
  const int key = Processor->GetCurrentKey();
  if (!Processor->CheckNotEditing()) {
    Processor->LocateKey(key);
    return false;
  }
  if (key == 0 || IsRunning()) return false;
  // The owner shows again once the record is current.
  const HiddenForm hidden(Owner());
  const RecordLock lock(*Processor, key);
  const bool saved = EditRecord();
  // One that was removed meanwhile may have been saved under another key.
  Processor->LocateKey(saved ? Key : key);
  return saved;
}

bool TformQvRfEdit::CreateNew() {
  if (IsRunning()) return false;
  const ControlsGuard controls(*Processor->DataSet);
  const int key = Processor->GetCurrentKey();
  const HiddenForm hidden(Owner());
  const bool made = NewRecord();
  if (!made) Processor->LocateKey(key);
  return made;
}

void TformQvRfEdit::BeginRun(int key) {
  Key = key;
  EditMode = key != 0 ? 1 : 0;
  Saved = false;
}

void TformQvRfEdit::bitbtnSaveClick() {
  if (!StoreRecord()) return;
  Saved = true;
  accept();
}

void TformQvRfEdit::TellNotSaved(QPushButton* bitbtnSave, const QString& why) {
  const QString tip = QStringLiteral("<qt>%1</qt>")
                          .arg(QvPlatform::Translated("Not saved: %1").arg(why).toHtmlEscaped());
  bitbtnSave->setToolTip(tip);
  QToolTip::showText(bitbtnSave->mapToGlobal(QPoint(0, bitbtnSave->height())), tip, bitbtnSave);
}

bool TformQvRfEdit::RunEdit() {
  RunModal();
  if (!Saved) CancelEdit();
  return Saved;
}

void TformQvRfEdit::PlaceAndSize(const QSize& usual) {
  const Place& kept = PlaceOf(*this);
  layout()->activate();
  resize(kept.size.value_or(usual).expandedTo(minimumSizeHint()));
  if (kept.position) {
    move(*kept.position);
  } else {
    PlaceUsually();
  }
  placed_ = QRect(pos(), size());
}

// What the user has changed is kept; the rest goes by its owner and the screen again.
void TformQvRfEdit::FormHide() {
  Place& kept = PlaceOf(*this);
  if (pos() != placed_.topLeft()) kept.position = pos();
  if (size() != placed_.size()) kept.size = size();
}

}  // namespace QvRefSystem
