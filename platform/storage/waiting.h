#pragma once

#include <chrono>

namespace QvPlatform {

/// Who decides how long an operation waits for another program that is writing the same file.
class Waiter {
 public:
  Waiter() = default;
  Waiter(const Waiter&) = delete;
  Waiter& operator=(const Waiter&) = delete;
  virtual ~Waiter() = default;

  /// Is asked every 20 ms or more often while a file is locked. `waited` is how long the operation
  /// has waited already, 0 when it is asked first. With false the operation gives up and throws
  /// StorageError; an exception counts as false. It may repaint a window, but must not use any
  /// store: the operation that waits stands in the middle of one.
  [[nodiscard]] virtual bool KeepWaiting(std::chrono::milliseconds waited) = 0;
};

/// Waits for so long and no longer.
class TimedWaiter final : public Waiter {
 public:
  /// With a limit of 0 nothing is waited for.
  explicit TimedWaiter(std::chrono::milliseconds limit) : limit_(limit) {}
  [[nodiscard]] bool KeepWaiting(std::chrono::milliseconds waited) override {
    return waited < limit_;
  }

 private:
  std::chrono::milliseconds limit_;
};

/// How long an operation waits where nobody has said anything else.
constexpr std::chrono::milliseconds kUsualWait{5000};

/// Who decides in the present thread: the waiter of the innermost WaiterScope, or one that waits
/// kUsualWait.
[[nodiscard]] Waiter& CurrentWaiter();

/// Lets a waiter decide in the present thread until the end of a scope.
class WaiterScope {
 public:
  /// The waiter has to outlive the scope.
  explicit WaiterScope(Waiter& waiter);
  ~WaiterScope();
  WaiterScope(const WaiterScope&) = delete;
  WaiterScope& operator=(const WaiterScope&) = delete;

 private:
  Waiter* before_;
};

}  // namespace QvPlatform
