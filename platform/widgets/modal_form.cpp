#include "platform/widgets/modal_form.h"

#include <QEventLoop>
#include <QHideEvent>
#include <QShowEvent>

namespace QvPlatform {

ModalForm::ModalForm(QWidget* owner) : QDialog(owner) {
  // With its owner hidden, a form that closes may be the last visible window of the program.
  setAttribute(Qt::WA_QuitOnClose, false);
  setWindowModality(Qt::ApplicationModal);
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  setSizeGripEnabled(true);
}

ModalForm::~ModalForm() {
  if (loop_ != nullptr) loop_->exit();
}

int ModalForm::RunModal() {
  if (loop_ != nullptr) return 0;
  QEventLoop loop;
  loop_ = &loop;
  first_ = true;
  setResult(0);
  const QPointer<ModalForm> alive(this);
  show();
  loop.exec(QEventLoop::DialogExec);
  if (!alive) return 0;
  loop_ = nullptr;
  // The application may have quit under the form.
  hide();
  return result();
}

void ModalForm::done(int result) {
  QDialog::done(result);
  if (loop_ != nullptr) loop_->exit();
}

void ModalForm::FormShow(bool first) {
  if (first) PlaceAtOwner();
}

void ModalForm::PlaceAtOwner() {
  if (Owner() != nullptr) move(Owner()->window()->pos());
}

void ModalForm::showEvent(QShowEvent* event) {
  if (!event->spontaneous()) {
    FormShow(first_);
    first_ = false;
  }
  QDialog::showEvent(event);
}

void ModalForm::hideEvent(QHideEvent* event) {
  if (!event->spontaneous()) FormHide();
  QDialog::hideEvent(event);
}

HiddenForm::HiddenForm(QWidget* form) {
  if (form == nullptr || !form->isWindow() || !form->isVisible()) return;
  form_ = form;
  form_->hide();
}

HiddenForm::~HiddenForm() {
  if (!form_) return;
  form_->show();
  form_->activateWindow();
}

}  // namespace QvPlatform
