#pragma once

#include <QDialog>
#include <QPointer>

#include "platform/ui/user_interface.h"

class QEventLoop;

namespace QvPlatform {

/// A dialog that may be hidden while a dialog of its own runs, and shown again, without that ending
/// its run. (The toolkit's own modal loop ends when its dialog is hidden, for whatever reason.)
///
/// A form is the component that owns the forms it makes: its Qt parent is its owner.
class ModalForm : public QDialog, public TComponent {
 public:
  /// A null owner makes a form that stands alone, the caller's to destroy.
  explicit ModalForm(QWidget* owner);
  ~ModalForm() override;

  /// Shows the form and returns its result once accept, reject, done or the window's close button
  /// has ended the run. A form that is running already is left alone: the answer is 0.
  int RunModal();
  /// Whether RunModal has not returned yet; the form may be hidden meanwhile.
  [[nodiscard]] bool IsRunning() const { return loop_ != nullptr; }
  /// Ends the run with that result, and hides the form.
  void done(int result) override;
  /// Null for a form that stands alone.
  [[nodiscard]] QWidget* Owner() const { return parentWidget(); }

 protected:
  /// Called each time the form is shown by its program, ahead of being drawn. `first`: the run has
  /// just begun, and the form is not merely back from being hidden by a dialog of its own.
  virtual void FormShow(bool first);
  virtual void FormHide() {}
  /// Takes the left and top of the owner's window; without one the toolkit places the form.
  void PlaceAtOwner();

  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  QEventLoop* loop_ = nullptr;
  bool first_ = false;
};

/// Hides a form while it lives, and shows it again if it was visible.
class HiddenForm {
 public:
  /// Null, and a widget that is no window of its own, are left alone.
  explicit HiddenForm(QWidget* form);
  ~HiddenForm();
  HiddenForm(const HiddenForm&) = delete;
  HiddenForm& operator=(const HiddenForm&) = delete;

 private:
  QPointer<QWidget> form_;
};

}  // namespace QvPlatform
