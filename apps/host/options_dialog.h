#pragma once

#include <QDialog>

#include "editor/georef_frame_editor.h"

class QCheckBox;
class QComboBox;
class QPushButton;

namespace QvRefSystem {

/// What the host tells the editor, and the demand that it makes of a choice.
struct HostOptions {
  TQvGeoRefFrameDialogOptions dialog;
  bool rejectGeodetic = false;
};

/// Lets the user change the host's options; the database stays as it is.
class OptionsDialog final : public QDialog {
 public:
  OptionsDialog(const HostOptions& options, QWidget* parent);
  [[nodiscard]] HostOptions Options() const;

 private:
  void ChooseColour();
  void ShowColour();

  HostOptions options_;
  QComboBox* comboMode_ = nullptr;
  QPushButton* btnColour_ = nullptr;
  QCheckBox* chboxImportExport_ = nullptr;
  QCheckBox* chboxRejectGeodetic_ = nullptr;
};

}  // namespace QvRefSystem
