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
  /// What happens elsewhere while the user is asked.
  std::function<void()> onQuestion;
  /// What the user does in the used-by list.
  std::function<QvPlatform::UsedByAnswer()> onUsedBy;

  QvPlatform::MessageAnswer ShowMessage(QvPlatform::MessageKind, const std::string& text,
                                        QvPlatform::MessageButtons buttons) override {
    messages.push_back(text);
    if (buttons == QvPlatform::MessageButtons::kOk) return QvPlatform::MessageAnswer::kOk;
    if (onQuestion) onQuestion();
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

  /// The fields of the last conflict, as "caption: before/theirs/mine", and what the user answers.
  std::vector<std::string> conflict;
  QvPlatform::ConflictAnswer conflictAnswer = QvPlatform::ConflictAnswer::kGoBack;
  int conflictsAsked = 0;

  QvPlatform::ConflictAnswer AskConflict(const std::string&,
                                         std::span<const QvPlatform::ConflictRow> rows) override {
    ++conflictsAsked;
    conflict.clear();
    for (const auto& [caption, before, theirs, mine] : rows)
      conflict.push_back(std::string(caption).append(": ").append(before + "/" + theirs) + "/" +
                         mine);
    return conflictAnswer;
  }

  /// What a progress display was told.
  struct Shown {
    int options = 0;
    int count = 0;
    int steps = 0;
  };
  /// The titles of all progress displays, and what they were told.
  std::vector<std::string> progress;
  std::vector<Shown> displays;
  /// Whether the user cancels each display: at its first step, or at that step.
  bool cancels = false;
  int cancelAt = -1;

  std::unique_ptr<QvPlatform::TProgress> StartProgress(int options, const std::string& title,
                                                       int count) override {
    class Recorder : public QvPlatform::TProgress {
     public:
      explicit Recorder(ScriptedUi& ui) : ui_(ui), at_(ui.displays.size() - 1) {}
      bool Next() override { return ++ui_.displays[at_].steps != ui_.cancelAt && !ui_.cancels; }
      void SetMax(int max) override { ui_.displays[at_].count = max; }

     private:
      ScriptedUi& ui_;
      std::size_t at_;
    };
    progress.push_back(title);
    displays.push_back({options, count, 0});
    return std::make_unique<Recorder>(*this);
  }
};

}  // namespace refframe_tests
