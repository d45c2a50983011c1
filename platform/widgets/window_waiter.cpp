#include "platform/widgets/window_waiter.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QThread>
#include <QVBoxLayout>
#include <QWindow>

#include "platform/widgets/qt_text.h"

namespace QvPlatform {

namespace {

/// A wait that the user would not notice shows nothing.
constexpr std::chrono::milliseconds kUnnoticed{300};

bool isHandlingEvents = false;

// What would set the program to work, or drop what somebody has typed into it.
bool SetsToWork(QEvent::Type type) {
  switch (type) {
    case QEvent::Timer:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    case QEvent::TabletMove:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Close:
      return true;
    default:
      return false;
  }
}

}  // namespace

WindowWaiter::WindowWaiter() {
  // A timer waits while the operation does, and fires when it is over.
  hiding_.setSingleShot(true);
  connect(&hiding_, &QTimer::timeout, this, [this] { delete box_; });
}

WindowWaiter::~WindowWaiter() {
  delete box_;
}

bool WindowWaiter::IsWaiting() {
  return isHandlingEvents;
}

void WindowWaiter::ShowBox() {
  cancelled_ = false;
  QWidget* parent = QApplication::activeWindow();
  box_ = new QDialog(parent);
  box_->setObjectName("waitingBox");
  box_->setWindowTitle(Translated("Reference systems"));
  box_->setWindowModality(parent != nullptr ? Qt::WindowModal : Qt::ApplicationModal);
  auto* text = new QLabel(Translated("Another program is writing to the database."), box_);
  auto* cancel = new QPushButton(Translated("Cancel"), box_);
  cancel->setObjectName("btnCancel");
  auto* column = new QVBoxLayout(box_);
  column->addWidget(text);
  column->addWidget(cancel, 0, Qt::AlignHCenter);
  column->setSizeConstraint(QLayout::SetFixedSize);
  connect(cancel, &QPushButton::clicked, box_, &QDialog::reject);
  connect(box_, &QDialog::rejected, this, [this] { cancelled_ = true; });
  box_->show();
}

bool WindowWaiter::IsOfBox(const QObject* receiver) const {
  if (box_ == nullptr) return false;
  for (; receiver != nullptr; receiver = receiver->parent()) {
    if (receiver == box_ || receiver == box_->windowHandle()) return true;
  }
  return false;
}

bool WindowWaiter::eventFilter(QObject* watched, QEvent* event) {
  return SetsToWork(event->type()) && !IsOfBox(watched);
}

void WindowWaiter::HandleEvents() {
  const QScopedValueRollback handling(isHandlingEvents, true);
  qApp->installEventFilter(this);
  QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
  qApp->removeEventFilter(this);
}

bool WindowWaiter::KeepWaiting(std::chrono::milliseconds waited) {
  const bool hasWindows = qApp != nullptr && QThread::currentThread() == qApp->thread();
  if (!hasWindows || isHandlingEvents) return waited < kUsualWait;
  // The box of a wait that was over just now is not that of the next one.
  if (waited < kUnnoticed) delete box_;
  if (waited < kUnnoticed) return true;
  if (box_ == nullptr) ShowBox();
  hiding_.start(0);
  HandleEvents();
  if (cancelled_) delete box_;
  return !cancelled_;
}

}  // namespace QvPlatform
