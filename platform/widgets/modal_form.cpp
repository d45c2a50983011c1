#include "platform/widgets/modal_form.h"

#include <QEventLoop>
#include <QHideEvent>
#include <QShowEvent>

namespace QvPlatform {

TModalForm::TModalForm(QWidget* owner) : QDialog(owner) {
  // With its owner hidden, a form that closes may be the last visible window of the program.
  setAttribute(Qt::WA_QuitOnClose, false);
  setWindowModality(Qt::ApplicationModal);
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  setSizeGripEnabled(true);
}

TModalForm::~TModalForm() {
  if (loop_ != nullptr) loop_->exit();
}

int TModalForm::RunModal() {
  if (loop_ != nullptr) return 0;
  QEventLoop loop;
  loop_ = &loop;
  first_ = true;
  setResult(0);
  const QPointer<TModalForm> alive(this);
  show();
  loop.exec(QEventLoop::DialogExec);
  if (!alive) return 0;
  loop_ = nullptr;
  // The application may have quit under the form.
  hide();
  return result();
}

void TModalForm::done(int result) {
  QDialog::done(result);
  if (loop_ != nullptr) loop_->exit();
}

void TModalForm::FormShow(bool first) {
  if (first) PlaceAtOwner();
}

void TModalForm::PlaceAtOwner() {
  if (Owner() != nullptr) move(Owner()->window()->pos());
}

void TModalForm::showEvent(QShowEvent* event) {
  if (!event->spontaneous()) {
    FormShow(first_);
    first_ = false;
  }
  QDialog::showEvent(event);
}

void TModalForm::hideEvent(QHideEvent* event) {
  if (!event->spontaneous()) FormHide();
  QDialog::hideEvent(event);
}

THiddenForm::THiddenForm(QWidget* form) {
  if (form == nullptr || !form->isWindow() || !form->isVisible()) return;
  form_ = form;
  form_->hide();
}

THiddenForm::~THiddenForm() {
  if (!form_) return;
  form_->show();
  form_->activateWindow();
}

}  // namespace QvPlatform
