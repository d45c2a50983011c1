#pragma once

#include <memory>
#include <string>

#include "platform/ui/progress_interface.h"
#include "platform/ui/user_interface.h"

namespace QvRefSystem {

/// Shows the course of one operation to the user while it lives, and lends it to computations as a
/// TProgressInterface. Displays may nest: the functions act on the innermost one of the thread that
/// made it.
///
/// A computation may take millions of steps, which no display could follow: where more than some
/// thousand are announced, the display takes many of them for one of an accordingly smaller count.
/// Without an announcement it is told each of them.
class ProgressDisplay {
 public:
  /// Options of a display whose count the work announces by SetMax.
  static constexpr int kCounted = 33;
  /// Options of a display that runs free, for work that knows no count.
  static constexpr int kFree = 65;

  /// Shows the display; the user has to outlive it. `options` are one of the two above.
  ProgressDisplay(QvPlatform::TUserInterface& ui, int options, const std::string& title);
  ~ProgressDisplay();
  ProgressDisplay(const ProgressDisplay&) = delete;
  ProgressDisplay& operator=(const ProgressDisplay&) = delete;

  /// What computations are lent; valid as long as the display lives.
  [[nodiscard]] TProgressInterface* Interface() { return &interface_; }
  /// The Next of the interface, for operations that take it alone.
  [[nodiscard]] static int Next();
  /// Whether the user has cancelled the operation.
  [[nodiscard]] bool Cancelled() const { return cancelled_; }

 private:
  static void SetMax(int count);

  QvPlatform::TUserInterface& ui_;
  TProgressInterface interface_;
  std::unique_ptr<QvPlatform::TProgress> progress_;
  ProgressDisplay* outer_;
  /// Steps of the computation that make one step of the display, and those taken since the last.
  int stepsAtATime_ = 1;
  int taken_ = 0;
  bool cancelled_ = false;
};

}  // namespace QvRefSystem
