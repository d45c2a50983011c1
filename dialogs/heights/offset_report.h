#pragma once

#include <string>

#include "platform/geocore/shell_reference_system.h"
#include "platform/widgets/modal_form.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace QvRefSystem {

/// Tells how well a constant offset stands in for heights, and lets the user take it or leave it.
class TformQvRfOffsetApproximationReport final : public QvPlatform::ModalForm {
 public:
  explicit TformQvRfOffsetApproximationReport(QWidget* owner);

  /// True if the user accepts. `text` holds the name of what was approximated, and on return the
  /// words for the description of the height system: empty unless the user wants them. `errors`,
  /// which lies in the plane of `target`, can be viewed; both stay the caller's. `max` and `rms`
  /// are told as they stand, in the unit of the offset.
  [[nodiscard]] bool Run(const std::string& offset, const std::string& unitLabel, std::string* text,
                         TShellReferenceSystem* target, THeightTable* errors,
                         const std::string& max, const std::string& rms);

 protected:
  void FormShow(bool first) override;

 private:
  void BuildNumbers();
  void BuildInfo();
  void BuildButtons();
  void btnAccuracyViewRasterClick();

  QLineEdit* edOffsetValue = nullptr;
  QLabel* lblOffsetUnit = nullptr;
  QLineEdit* edAccuracyRms = nullptr;
  QLabel* lblAccuracyRmsUnit = nullptr;
  QLineEdit* edAccuracyMax = nullptr;
  QLabel* lblAccuracyMaxUnit = nullptr;
  QPushButton* btnAccuracyViewRaster = nullptr;
  QPlainTextEdit* memoInfoText = nullptr;
  QCheckBox* chboxInfoInsert = nullptr;
  QPushButton* btnAccept = nullptr;
  QPushButton* btnReject = nullptr;

  THeightTable* errors_ = nullptr;
  TShellReferenceSystem* target_ = nullptr;
};

}  // namespace QvRefSystem
