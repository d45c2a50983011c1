#pragma once

#include <QDialog>

#include "editor/georef_frame_editor.h"

class QCheckBox;
class QComboBox;
class QPushButton;

namespace QvRefSystem {

/// What the host tells the editor, and the demand that it makes of a choice.
struct HostOptions {
  /// The options that the editor is initialised with.
  TQvGeoRefFrameDialogOptions dialog;
  /// Whether a geodetic system is refused when the user chooses one.
  bool rejectGeodetic = false;
};

/// Lets the user change the host's options; the database stays as it is.
class OptionsDialog final : public QDialog {
 public:
  /// The dialog begins with these options.
  OptionsDialog(const HostOptions& options, QWidget* parent);
  /// The options as the controls show them; what has no control is as it was given.
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
