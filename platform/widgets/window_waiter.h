#pragma once

#include <QDialog>
#include <QPointer>
#include <QTimer>

#include "platform/storage/waiting.h"

namespace QvPlatform {

/// Waits for another program that writes the same file until the user cancels. From the moment at
/// which he would notice, a small box tells it, and its Cancel makes the operation give up.
///
/// Meanwhile windows are painted, and of what the user does only Cancel gets through: keys, clicks
/// and timers of the program would meet a store in the middle of an operation. Timers fire when the
/// wait is over; keys and clicks are dropped. The box bears the object name "waitingBox", its
/// button "btnCancel".
class WindowWaiter final : public QObject, public Waiter {
  Q_OBJECT

 public:
  WindowWaiter();
  ~WindowWaiter() override;

  [[nodiscard]] bool KeepWaiting(std::chrono::milliseconds waited) override;
  /// Whether an operation of this program waits at present, with events being handled.
  [[nodiscard]] static bool IsWaiting();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ShowBox();
  void HandleEvents();
  [[nodiscard]] bool IsOfBox(const QObject* receiver) const;

  QPointer<QDialog> box_;
  QTimer hiding_;
  bool cancelled_ = false;
};

}  // namespace QvPlatform
