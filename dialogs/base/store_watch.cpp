#include "dialogs/base/store_watch.h"

#include <QApplication>
#include <QEvent>
#include <QScopedValueRollback>
#include <QWidget>
#include <algorithm>

#include "database/data_module.h"
#include "platform/storage/waiting.h"
#include "platform/widgets/qt_text.h"
#include "platform/widgets/window_waiter.h"

namespace QvRefSystem {

namespace {

constexpr int kLookEvery = 500;  // milliseconds

/// Waits for nobody: a look that comes in the way of a writer is taken again soon.
class Impatience final : public QvPlatform::Waiter {
 public:
  [[nodiscard]] bool KeepWaiting(std::chrono::milliseconds waited) override {
    constexpr std::chrono::milliseconds kAtMost{50};
    isLocked_ = true;
    return waited < kAtMost;
  }
  /// Whether anybody was waited for.
  [[nodiscard]] bool IsLocked() const { return isLocked_; }

 private:
  bool isLocked_ = false;
};

}  // namespace

std::shared_ptr<StoreWatch> StoreWatch::Shared() {
  static std::weak_ptr<StoreWatch> shared;
  std::shared_ptr<StoreWatch> watch = shared.lock();
  if (watch == nullptr) {
    watch.reset(new StoreWatch);
    shared = watch;
  }
  return watch;
}

StoreWatch::StoreWatch() {
  connect(&timer_, &QTimer::timeout, this, &StoreWatch::Look);
  timer_.start(kLookEvery);
}

void StoreWatch::Watch(QWidget* window) {
  windows_.push_back(window);
  window->installEventFilter(this);
  connect(window, &QObject::destroyed, this, [this](QObject* gone) { std::erase(windows_, gone); });
}

bool StoreWatch::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::WindowActivate) {
    QTimer::singleShot(0, this, &StoreWatch::Look);
  }
  return QObject::eventFilter(watched, event);
}

bool StoreWatch::MayLook() const {
  if (looking_ || QvPlatform::WindowWaiter::IsWaiting()) return false;
  if (datamoduleQvRfData == nullptr || datamoduleQvRfData->NotActive) return false;
  QWidget* modal = QApplication::activeModalWidget();
  if (modal != nullptr) return std::ranges::find(windows_, modal) != windows_.end();
  return std::ranges::any_of(
      windows_, [](QObject* window) { return static_cast<QWidget*>(window)->isVisible(); });
}

void StoreWatch::Look() {
  if (!MayLook()) return;
  const QScopedValueRollback looking(looking_, true);
  QString trouble;
  bool refreshed = false;
  Impatience impatience;
  try {
    const QvPlatform::WaiterScope scope(impatience);
    refreshed = datamoduleQvRfData->Refresh();
  } catch (const std::exception& error) {
    if (impatience.IsLocked()) return;
    trouble = QvPlatform::ToQt(error.what());
  }
  if (!refreshed && trouble == trouble_) return;
  trouble_ = trouble;
  emit Changed();
}

}  // namespace QvRefSystem
