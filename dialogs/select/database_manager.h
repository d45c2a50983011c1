#pragma once

#include <memory>

#include "dialogs/select/dialog_options.h"
#include "platform/widgets/modal_form.h"

class QListWidget;
class QPushButton;

namespace QvRefSystem {

class StoreWatch;
class TformQvRfSelector;

/// Lists the object types, and opens the browsing dialog of one. The data module must be open.
///
/// The selectors belong to the dialog, which makes each on first need, and live as long as it does:
/// one that is opened again shows what it showed, in the size that the user gave it.
class TformGeoRefFrameDatabaseManager final : public QvPlatform::ModalForm {
 public:
  /// Makes an empty list; Fill comes before the run.
  explicit TformGeoRefFrameDatabaseManager(QWidget* owner);

  /// Lists the object types that the database has. A DialogMode that is neither simple nor full
  /// leaves the list empty.
  void Fill(const TQvGeoRefFrameDialogOptions* options);

 protected:
  void FormShow(bool first) override;

 private:
  void bitbtnEditClick();
  void bitbtnCloseClick() { reject(); }
  void UpdateEditButton();
  /// The selector of the entry that is selected, or null.
  [[nodiscard]] TformQvRfSelector* SelectedSelector();

  std::shared_ptr<StoreWatch> watch_;
  QListWidget* listboxContent = nullptr;
  QPushButton* bitbtnEdit = nullptr;
  QPushButton* bitbtnClose = nullptr;
};

}  // namespace QvRefSystem
