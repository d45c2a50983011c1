#include "platform/storage/waiting.h"

#include <utility>

namespace QvPlatform {

namespace {

/// Waiter of the innermost scope of this thread; null outside of all.
Waiter*& ScopedWaiter() {
  thread_local Waiter* waiter = nullptr;
  return waiter;
}

}  // namespace

Waiter& CurrentWaiter() {
  static TimedWaiter usual(kUsualWait);
  Waiter* const scoped = ScopedWaiter();
  return scoped != nullptr ? *scoped : usual;
}

WaiterScope::WaiterScope(Waiter& waiter) : before_(std::exchange(ScopedWaiter(), &waiter)) {}

WaiterScope::~WaiterScope() {
  ScopedWaiter() = before_;
}

}  // namespace QvPlatform
