#pragma once

#include <QDialog>
#include <span>

#include "platform/ui/user_interface.h"

class QHBoxLayout;
class QTableWidget;

namespace QvPlatform {

/// Shows in which fields somebody else has changed an object meanwhile, and asks what is to become
/// of it. Enter and Esc go back. It bears the object name "conflictBox", its buttons
/// "btnTakeTheirs", "btnKeepMine" and "btnGoBack".
class ConflictBox final : public QDialog {
  Q_OBJECT

 public:
  /// `title` is that of the form under which the box shows.
  ConflictBox(QWidget* parent, const QString& title, std::span<const ConflictRow> rows);

  /// What the user has answered; kGoBack until he has.
  [[nodiscard]] ConflictAnswer Answer() const { return answer_; }

 private:
  [[nodiscard]] QTableWidget* MakeTable(std::span<const ConflictRow> rows);
  void AddButton(QHBoxLayout* line, const char* objectName, const QString& caption,
                 ConflictAnswer answer);

  ConflictAnswer answer_ = ConflictAnswer::kGoBack;
};

}  // namespace QvPlatform
