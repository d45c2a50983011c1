#pragma once

#include <QDialog>

#include "editor/georef_frame_editor.h"

class QCheckBox;
class QComboBox;
class QPushButton;

namespace QvRefSystem {

/// What the host tells the editor, and the demand that it makes of a choice.
struct THostOptions {
  TQvGeoRefFrameDialogOptions dialog;
  bool rejectGeodetic = false;
};

/// Lets the user change the host's options; the database stays as it is.
class TOptionsDialog final : public QDialog {
 public:
  TOptionsDialog(const THostOptions& options, QWidget* parent);
  [[nodiscard]] THostOptions Options() const;

 private:
  void ChooseColour();
  void ShowColour();

  THostOptions options_;
  QComboBox* comboMode_ = nullptr;
  QPushButton* btnColour_ = nullptr;
  QCheckBox* chboxImportExport_ = nullptr;
  QCheckBox* chboxRejectGeodetic_ = nullptr;
};

}  // namespace QvRefSystem
