#include "platform/ui/progress_interface.h"

namespace QvRefSystem {

namespace {

thread_local TProgressDisplay* innermost = nullptr;

}  // namespace

TProgressDisplay::TProgressDisplay(QvPlatform::TUserInterface& ui, int options,
                                   const std::string& title)
    : ui_(ui), progress_(ui_.StartProgress(options, title, 0)), outer_(innermost) {
  interface_.Next = Next;
  interface_.SetMax = SetMax;
  innermost = this;
}

TProgressDisplay::~TProgressDisplay() {
  innermost = outer_;
}

int TProgressDisplay::Next() {
  TProgressDisplay* display = innermost;
  if (display == nullptr || display->progress_ == nullptr) return 0;
  if (!display->progress_->Next()) display->cancelled_ = true;
  return display->cancelled_ ? 1 : 0;
}

void TProgressDisplay::SetMax(int count) {
  if (innermost != nullptr && innermost->progress_ != nullptr) innermost->progress_->SetMax(count);
}

}  // namespace QvRefSystem
