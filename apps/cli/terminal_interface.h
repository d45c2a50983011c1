#pragma once

#include <memory>
#include <span>
#include <string>

#include "apps/cli/terminal.h"
#include "platform/ui/user_interface.h"

namespace RefframeCli {

/// Asks the user of a terminal. Messages go to its error stream. A question without a person to
/// answer it is answered No, and the message tells how to say Yes beforehand.
class TerminalInterface final : public QvPlatform::TUserInterface {
 public:
  /// `assumeYes`: every question is answered Yes without being asked.
  TerminalInterface(Terminal terminal, bool assumeYes);

  QvPlatform::MessageAnswer ShowMessage(QvPlatform::MessageKind kind, const std::string& text,
                                        QvPlatform::MessageButtons buttons) override;
  /// Lists the rows; nothing can be viewed from here.
  QvPlatform::UsedByAnswer ShowUsedBy(QvPlatform::TComponent* owner,
                                      std::span<const QvPlatform::UsedByRow> rows,
                                      bool viewAllowed) override;
  [[nodiscard]] std::unique_ptr<QvPlatform::TProgress> StartProgress(int options,
                                                                     const std::string& title,
                                                                     int count) override;
  /// Whether the user was told of a failure, so that the caller need not tell it again.
  [[nodiscard]] bool HasReported() const { return hasReported_; }
  /// From here on only what is told anew counts as reported.
  void ForgetReported() { hasReported_ = false; }

 private:
  [[nodiscard]] bool Confirm(const std::string& question);

  Terminal terminal_;
  bool assumeYes_;
  bool hasReported_ = false;
};

}  // namespace RefframeCli
