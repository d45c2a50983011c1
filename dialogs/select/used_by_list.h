#pragma once

#include <memory>
#include <span>
#include <vector>

#include "platform/ui/user_interface.h"
#include "platform/widgets/modal_form.h"

class QPushButton;
class QTableWidget;

namespace QvRefSystem {

/// Tells why an object cannot be deleted, and opens those that refer to it. Rows are numbered from
/// 1; the title is row 0.
class TformQvRfUsedByList final : public QvPlatform::ModalForm {
 public:
  /// Makes a list without rows.
  explicit TformQvRfUsedByList(QWidget* owner);

  /// One empty row under the titles.
  void BeginList();
  /// Fills the empty first row, or adds one.
  void AddRow(const QvPlatform::UsedByRow& row);
  /// Runs the list; View shows if allowed, and opens the object of the current row before the run
  /// ends.
  QvPlatform::UsedByAnswer ShowList(bool viewAllowed);
  /// Opens the object of that row in the viewer. A row that holds none does nothing.
  void ViewRow(int row);

 protected:
  void FormShow(bool first) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void BuildList();
  void bitbtnViewClick();

  QTableWidget* strgridList = nullptr;
  QPushButton* bitbtnView = nullptr;
  QPushButton* bitbtnClose = nullptr;
  std::vector<QvPlatform::UsedByRow> rows_;
};

/// The list among the owner's children, or a new one that it owns.
[[nodiscard]] TformQvRfUsedByList* GetUsedByListFor(QvPlatform::TComponent* owner);

/// The user interface of the dialogs: message boxes, and the list above.
[[nodiscard]] std::unique_ptr<QvPlatform::TUserInterface> MakeDialogInterface();

}  // namespace QvRefSystem
