#pragma once

#include <memory>
#include <optional>

#include "dialogs/heights/grid_controls.h"
#include "platform/geocore/shell_reference_system.h"
#include "platform/widgets/modal_form.h"

class QHBoxLayout;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace QvRefSystem {

class Chooser;

/// A calculator for data grids: turns a grid that is known in one reference system into the one
/// that covers the same ground in another. It changes nothing by itself.
class TformQvRfRecalculateGridParams final : public QvPlatform::ModalForm {
 public:
  /// Makes a dialog that the owner owns; `chooser` must outlive it.
  TformQvRfRecalculateGridParams(QWidget* owner, const Chooser& chooser);
  ~TformQvRfRecalculateGridParams() override;

  /// Lets the user find a grid of `target`. Returns true if it is to be applied; `result` is then
  /// that grid as texts, all empty if none was computed. Nothing is shown, and `result` stays,
  /// without a target or a result, and for a target that cannot tell its axes.
  [[nodiscard]] bool Run(TShellReferenceSystem* target, TShell2DTableExtents* result);

 protected:
  void FormShow(bool first) override;

 private:
  /// What a side shows: a grid, and the system in which it lies.
  struct Side {
    std::optional<GridControls> grid;
    QLineEdit* edRefSystemName = nullptr;
    QPlainTextEdit* memoRefSystemDescription = nullptr;
    [[nodiscard]] bool Show(const TShellReferenceSystem& system);
    void Clear();
  };

  void BuildSource(QHBoxLayout* place);
  void BuildTarget(QHBoxLayout* place);
  void BuildButtons();
  void BuildSystem(QWidget* box, const char* prefix, Side* side);
  [[nodiscard]] bool SetTarget(TShellReferenceSystem* target);
  [[nodiscard]] bool SetSource(std::unique_ptr<TShellReferenceSystem> source);
  void btnSrcRefSystemSelectClick();
  void bitbtnRecalculateClick();

  std::unique_ptr<TShellReferenceSystem> sourceSystem_;
  TShellReferenceSystem* targetSystem_ = nullptr;
  const Chooser& chooser_;

  Side source_;
  Side target_;
  QPushButton* btnSrcRefSystemSelect = nullptr;
  QPushButton* bitbtnRecalculate = nullptr;
  QPushButton* btnApply = nullptr;
  QPushButton* btnClose = nullptr;
};

}  // namespace QvRefSystem
