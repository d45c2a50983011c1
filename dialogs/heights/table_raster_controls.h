#pragma once

class QDialog;
class QGroupBox;
class QHBoxLayout;
class QLabel;
class QProgressBar;
class QPushButton;
class QSlider;
class QSpinBox;
class QStatusBar;
class QVBoxLayout;
class QWidget;

namespace QvRefSystem {

class TBigImageScroll;
class LevelLegend;
class TMarker;
class RadioGroup;

/// The controls of the raster view; each bears its name as object name. They belong to the form.
struct TableRasterControls {
  /// The large window, which begins with the whole image.
  TBigImageScroll* MainImage = nullptr;
  /// The lens, which follows the marker at a closer zoom.
  TBigImageScroll* LenseImage = nullptr;
  /// The place whose height the status tells; both windows show it.
  TMarker* Marker1 = nullptr;
  /// The line that tells zooms, marker, size, and the coordinates at the marker.
  QStatusBar* StatusBar = nullptr;
  /// The bar of colours, which points at the height at the marker.
  LevelLegend* Legend = nullptr;

  /// The panel of looks; it gives way to the panel of saving.
  QWidget* pnlImageAdjustment = nullptr;
  /// The choice of colours: item 0 is colour, item 1 grey.
  RadioGroup* radiogrViewMode = nullptr;
  /// How many pixels stand between two nodes of the table, from 1 to HeightRaster::kMaxZoom.
  QSlider* trackbarInterpolationScale = nullptr;
  /// The text of that number, such as "5:1".
  QLabel* pnlInterpolationZoom = nullptr;

  /// The panel of saving, which shows by a key alone.
  QGroupBox* grboxSaveImageToFile = nullptr;
  /// The format of the file, of which there is one.
  RadioGroup* RadioGroupOut = nullptr;
  /// Saves every nth pixel only, with n from 1 to 10.
  QSpinBox* SpinSubsample = nullptr;
  /// Saves the image; the button is enabled while there is one.
  QPushButton* BtnRun = nullptr;
  /// How much of the image is saved.
  QProgressBar* ProgressBar1 = nullptr;

  /// Shows the image one step larger.
  QPushButton* bitbtnZoomIn = nullptr;
  /// Shows the image one step smaller.
  QPushButton* bitbtnZoomOut = nullptr;
  /// Shows the whole image.
  QPushButton* bitbtnZoomFit = nullptr;
  /// Ends the run. On this button the key that shows the panel of saving counts.
  QPushButton* bitbtnOk = nullptr;
  /// Ends the run as well.
  QPushButton* bitbtnClose = nullptr;

  /// Makes all controls as children of the form, and lays them out in the order in which Tab walks
  /// them.
  void BuildControls(QDialog* form);

 private:
  void BuildImages(QDialog* form);
  void BuildAdjustment(QDialog* form);
  void BuildSavePanel(QDialog* form);
  void BuildButtons(QDialog* form);
};

}  // namespace QvRefSystem
