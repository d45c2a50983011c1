#include "platform/ui/progress_display.h"

#include <algorithm>

namespace QvRefSystem {

namespace {

/// More steps than that no bar on a screen can show.
constexpr int kMostShown = 1000;

thread_local ProgressDisplay* innermost = nullptr;

}  // namespace

ProgressDisplay::ProgressDisplay(QvPlatform::TUserInterface& ui, int options,
                                 const std::string& title)
    : ui_(ui), progress_(ui_.StartProgress(options, title, 0)), outer_(innermost) {
  interface_.Next = Next;
  interface_.SetMax = SetMax;
  innermost = this;
}

ProgressDisplay::~ProgressDisplay() {
  innermost = outer_;
}

int ProgressDisplay::Next() {
  ProgressDisplay* display = innermost;
  if (display == nullptr || display->progress_ == nullptr) return 0;
  if (++display->taken_ >= display->stepsAtATime_) {
    display->taken_ = 0;
    if (!display->progress_->Next()) display->cancelled_ = true;
  }
  return display->cancelled_ ? 1 : 0;
}

void ProgressDisplay::SetMax(int count) {
  ProgressDisplay* display = innermost;
  if (display == nullptr || display->progress_ == nullptr) return;
  display->taken_ = 0;
  display->stepsAtATime_ = std::max(1, count / kMostShown);
  display->progress_->SetMax(count / display->stepsAtATime_);
}

}  // namespace QvRefSystem
