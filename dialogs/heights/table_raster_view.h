#pragma once

#include "dialogs/heights/table_raster_controls.h"
#include "platform/geocore/shell_reference_system.h"
#include "platform/widgets/modal_form.h"
#include "vertical/table_raster.h"

namespace QvRefSystem {

/// Shows a table as an image, in a main window and a lens, with a marker at which height and
/// coordinates can be read.
class TformQvRfTableRasterView final : public QvPlatform::ModalForm, protected TableRasterControls {
 public:
  /// Makes a view that the owner owns.
  explicit TformQvRfTableRasterView(QWidget* owner);

  /// Runs the view over a raster that holds a table. The coordinates are told in the notation of
  /// `system`, in whose plane the table lies, or without it as plain numbers. Both stay the
  /// caller's; the view changes the look and the zoom of the raster.
  void Show(QvCommonUtils::TTableDibData<double>* raster, TShellReferenceSystem* system);

  void done(int result) override;

 protected:
  void FormShow(bool first) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ConnectControls();
  void KeepOnScreen();
  void StartImages();
  void DropRaster();
  void ChangeView(int zoom);
  void radiogrViewModeClick();
  void trackbarInterpolationScaleChange();
  void ShowInterpolationZoom();
  void RefreshStatus();
  [[nodiscard]] QString PlaceText(double x, double y, double height) const;
  void ShowSavePanel(bool show);
  void BtnRunClick();
  void SaveImage(const QString& path);

  QvCommonUtils::TTableDibData<double>* raster_ = nullptr;
  TShellReferenceSystem* system_ = nullptr;
};

/// Shows a table that lies in the plane of `system`, which may be null. A table that holds nothing
/// is not shown.
void ViewHeightTable(QWidget* owner, const THeightTable* table, TShellReferenceSystem* system);

}  // namespace QvRefSystem
