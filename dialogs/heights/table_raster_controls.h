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
  TBigImageScroll* MainImage = nullptr;
  TBigImageScroll* LenseImage = nullptr;
  TMarker* Marker1 = nullptr;
  QStatusBar* StatusBar = nullptr;
  LevelLegend* Legend = nullptr;

  QWidget* pnlImageAdjustment = nullptr;
  RadioGroup* radiogrViewMode = nullptr;
  QSlider* trackbarInterpolationScale = nullptr;
  QLabel* pnlInterpolationZoom = nullptr;

  QGroupBox* grboxSaveImageToFile = nullptr;
  RadioGroup* RadioGroupOut = nullptr;
  QSpinBox* SpinSubsample = nullptr;
  QPushButton* BtnRun = nullptr;
  QProgressBar* ProgressBar1 = nullptr;

  QPushButton* bitbtnZoomIn = nullptr;
  QPushButton* bitbtnZoomOut = nullptr;
  QPushButton* bitbtnZoomFit = nullptr;
  QPushButton* bitbtnOk = nullptr;
  QPushButton* bitbtnClose = nullptr;

  /// Makes all controls and lays them out in the order in which Tab walks them.
  void BuildControls(QDialog* form);

 private:
  void BuildImages(QDialog* form);
  void BuildAdjustment(QDialog* form);
  void BuildSavePanel(QDialog* form);
  void BuildButtons(QDialog* form);
};

}  // namespace QvRefSystem
