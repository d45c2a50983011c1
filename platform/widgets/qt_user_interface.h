#pragma once

#include <functional>

#include "platform/ui/user_interface.h"

namespace QvPlatform {

/// Asks by message boxes and dialogs, with the active window as their parent. Boxes bear the
/// object name "messageBox", their buttons "btnOk", "btnYes" and "btnNo".
class QtUserInterface final : public TUserInterface {
 public:
  /// Runs the used-by list over the rows, as ShowUsedBy does.
  using UsedByView = std::function<UsedByAnswer(TComponent* owner, std::span<const UsedByRow> rows,
                                                bool viewAllowed)>;

  /// `showUsedBy` runs the used-by list, a dialog of a floor above this one.
  explicit QtUserInterface(UsedByView showUsedBy) : showUsedBy_(std::move(showUsedBy)) {}

  MessageAnswer ShowMessage(MessageKind kind, const std::string& text,
                            MessageButtons buttons) override;
  ConflictAnswer AskConflict(const std::string& name, std::span<const ConflictRow> rows) override;
  UsedByAnswer ShowUsedBy(TComponent* owner, std::span<const UsedByRow> rows,
                          bool viewAllowed) override;
  [[nodiscard]] std::unique_ptr<TProgress> StartProgress(int options, const std::string& title,
                                                         int count) override;

 private:
  UsedByView showUsedBy_;
};

}  // namespace QvPlatform
