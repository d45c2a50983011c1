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

/// A constant offset that stands in for heights, and how well it does. All numbers are told as they
/// stand.
struct OffsetApproximation {
  /// The offset, in the unit.
  std::string Offset;
  /// The label of the unit of all numbers.
  std::string UnitLabel;
  /// The greatest error, in the unit.
  std::string Max;
  /// The root of the mean square of the errors, in the unit.
  std::string Rms;
  /// The plane of the errors, null for none; it stays the caller's.
  TShellReferenceSystem* Target = nullptr;
  /// The errors over the plane, which can be viewed; they stay the caller's.
  THeightTable* Errors = nullptr;
};

/// Tells how well a constant offset stands in for heights, and lets the user take it or leave it.
class TformQvRfOffsetApproximationReport final : public QvPlatform::ModalForm {
 public:
  /// Makes a report that the owner owns.
  explicit TformQvRfOffsetApproximationReport(QWidget* owner);

  /// Returns true if the user accepts. `text` holds the name of what was approximated, and on
  /// return the words for the description of the height system, which are empty unless the user
  /// wants them.
  [[nodiscard]] bool Run(const OffsetApproximation& result, std::string* text);
  /// Runs the report over the same, given one by one.
  [[nodiscard]] bool Run(const std::string& offset, const std::string& unitLabel, std::string* text,
                         TShellReferenceSystem* target, THeightTable* errors,
                         const std::string& max, const std::string& rms);

 protected:
  void FormShow(bool first) override;

 private:
  void ShowResult(const std::string& source);
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

  /// What the report shows; null while it does not run.
  const OffsetApproximation* result_ = nullptr;
};

}  // namespace QvRefSystem
