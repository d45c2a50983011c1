#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "platform/ui/user_interface.h"

namespace refframe_tests {

/// A user who follows a script: answers questions in order (Yes when the script is at its end) and
/// keeps what was shown.
class ScriptedUi : public QvPlatform::TUserInterface {
 public:
  std::vector<std::string> messages;
  std::deque<QvPlatform::MessageAnswer> answers;
  std::vector<QvPlatform::UsedByRow> usedBy;
  int usedByShown = 0;
  bool viewAllowed = false;
  /// What the user does in the used-by list.
  std::function<QvPlatform::UsedByAnswer()> onUsedBy;

  QvPlatform::MessageAnswer ShowMessage(QvPlatform::MessageKind, const std::string& text,
                                        QvPlatform::MessageButtons buttons) override {
    messages.push_back(text);
    if (buttons == QvPlatform::MessageButtons::kOk) return QvPlatform::MessageAnswer::kOk;
    if (answers.empty()) return QvPlatform::MessageAnswer::kYes;
    const QvPlatform::MessageAnswer answer = answers.front();
    answers.pop_front();
    return answer;
  }

  QvPlatform::UsedByAnswer ShowUsedBy(QvPlatform::TComponent*,
                                      std::span<const QvPlatform::UsedByRow> rows,
                                      bool allowed) override {
    ++usedByShown;
    usedBy.assign(rows.begin(), rows.end());
    viewAllowed = allowed;
    return onUsedBy ? onUsedBy() : QvPlatform::UsedByAnswer::kClosed;
  }

  /// The titles of all progress displays, and whether the user cancels each at its first step.
  std::vector<std::string> progress;
  bool cancels = false;

  std::unique_ptr<QvPlatform::TProgress> StartProgress(int, const std::string& title,
                                                       int) override {
    class Silent : public QvPlatform::TProgress {
     public:
      explicit Silent(bool goesOn) : goesOn_(goesOn) {}
      bool Next() override { return goesOn_; }

     private:
      bool goesOn_;
    };
    progress.push_back(title);
    return std::make_unique<Silent>(!cancels);
  }
};

}  // namespace refframe_tests
