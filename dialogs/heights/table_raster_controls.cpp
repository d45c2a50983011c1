#include "dialogs/heights/table_raster_controls.h"

#include <QDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QStatusBar>

#include "dialogs/base/radio_group.h"
#include "dialogs/heights/big_image_scroll.h"
#include "dialogs/heights/level_legend.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::Translatable;
using QvPlatform::Translated;

namespace {

constexpr int kMostSubsample = 10;

struct ButtonRow {
  QPushButton* TableRasterControls::*button;
  const char* objectName;
  const char* caption;
  const char* toolTip;
};

constexpr ButtonRow kButtons[] = {
    {&TableRasterControls::bitbtnZoomIn, "bitbtnZoomIn", Translatable("Zoom &in"),
     Translatable("Show the image larger (+ or the wheel)")},
    {&TableRasterControls::bitbtnZoomOut, "bitbtnZoomOut", Translatable("Zoom &out"),
     Translatable("Show the image smaller (- or the wheel)")},
    {&TableRasterControls::bitbtnZoomFit, "bitbtnZoomFit", Translatable("&Fit"),
     Translatable("Show the whole image")},
    {&TableRasterControls::bitbtnOk, "bitbtnOk", Translatable("OK"), ""},
    {&TableRasterControls::bitbtnClose, "bitbtnClose", Translatable("Close"), ""},
};

}  // namespace

void TableRasterControls::BuildControls(QDialog* form) {
  BuildImages(form);
  BuildAdjustment(form);
  BuildSavePanel(form);
  Legend = new LevelLegend(form);
  Legend->setObjectName("Legend");

  auto* side = new QVBoxLayout;
  side->addWidget(LenseImage, 3);
  side->addWidget(Legend, 2);
  side->addWidget(pnlImageAdjustment);
  side->addWidget(grboxSaveImageToFile);
  auto* views = new QHBoxLayout;
  views->addWidget(MainImage, 3);
  views->addLayout(side, 1);
  auto* column = new QVBoxLayout(form);
  column->addLayout(views, 1);
  BuildButtons(form);

  StatusBar = new QStatusBar(form);
  StatusBar->setObjectName("StatusBar");
  StatusBar->setSizeGripEnabled(false);
  column->addWidget(StatusBar);
}

void TableRasterControls::BuildImages(QDialog* form) {
  MainImage = new TBigImageScroll(form);
  MainImage->setObjectName("MainImage");
  MainImage->setAccessibleName(Translated("Image"));
  LenseImage = new TBigImageScroll(form);
  LenseImage->setObjectName("LenseImage");
  LenseImage->setAccessibleName(Translated("Lens"));
  LenseImage->SetFollowsMarker(true);
  LenseImage->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  LenseImage->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  Marker1 = new TMarker(form);
  Marker1->setObjectName("Marker1");
  for (TBigImageScroll* image : {MainImage, LenseImage})
    image->SetMarker(Marker1);
  MainImage->SetSister(LenseImage);
  LenseImage->SetSister(MainImage);
}

void TableRasterControls::BuildAdjustment(QDialog* form) {
  pnlImageAdjustment = new QWidget(form);
  pnlImageAdjustment->setObjectName("pnlImageAdjustment");
  radiogrViewMode =
      new RadioGroup(Translated(" View mode "), {Translated("Color"), Translated("Grayscale")},
                     pnlImageAdjustment);
  radiogrViewMode->setObjectName("radiogrViewMode");

  auto* zoom = new QGroupBox(Translated(" Zoom (source data interpolation) "), pnlImageAdjustment);
  trackbarInterpolationScale = new QSlider(Qt::Horizontal, zoom);
  trackbarInterpolationScale->setObjectName("trackbarInterpolationScale");
  trackbarInterpolationScale->setRange(1, HeightRaster::kMaxZoom);
  trackbarInterpolationScale->setPageStep(4);
  trackbarInterpolationScale->setAccessibleName(zoom->title().trimmed());
  pnlInterpolationZoom = new QLabel(zoom);
  pnlInterpolationZoom->setObjectName("pnlInterpolationZoom");
  pnlInterpolationZoom->setAlignment(Qt::AlignCenter);
  // As wide as its longest text, so that the trackbar does not jump about.
  pnlInterpolationZoom->setMinimumWidth(
      pnlInterpolationZoom->fontMetrics().horizontalAdvance(QStringLiteral("00:1 ")));
  auto* row = new QHBoxLayout(zoom);
  row->addWidget(trackbarInterpolationScale, 1);
  row->addWidget(pnlInterpolationZoom);

  auto* column = new QVBoxLayout(pnlImageAdjustment);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(radiogrViewMode);
  column->addWidget(zoom);
}

void TableRasterControls::BuildSavePanel(QDialog* form) {
  grboxSaveImageToFile = new QGroupBox(Translated("Save image to file"), form);
  grboxSaveImageToFile->setObjectName("grboxSaveImageToFile");
  RadioGroupOut =
      new RadioGroup(Translated("Format"), {QStringLiteral("BMP")}, grboxSaveImageToFile);
  RadioGroupOut->setObjectName("RadioGroupOut");
  SpinSubsample = new QSpinBox(grboxSaveImageToFile);
  SpinSubsample->setObjectName("SpinSubsample");
  SpinSubsample->setRange(1, kMostSubsample);
  BtnRun = new QPushButton(Translated("&Save..."), grboxSaveImageToFile);
  BtnRun->setObjectName("BtnRun");
  BtnRun->setAutoDefault(false);
  BtnRun->setEnabled(false);
  ProgressBar1 = new QProgressBar(grboxSaveImageToFile);
  ProgressBar1->setObjectName("ProgressBar1");
  ProgressBar1->setTextVisible(false);
  ProgressBar1->setValue(0);
  auto* rows = new QFormLayout(grboxSaveImageToFile);
  rows->addRow(RadioGroupOut);
  rows->addRow(Translated("Every &nth pixel"), SpinSubsample);
  rows->addRow(BtnRun);
  rows->addRow(ProgressBar1);
  grboxSaveImageToFile->hide();
}

void TableRasterControls::BuildButtons(QDialog* form) {
  auto* row = new QHBoxLayout;
  for (const ButtonRow& spec : kButtons) {
    auto* button = new QPushButton(Translated(spec.caption), form);
    button->setObjectName(spec.objectName);
    button->setToolTip(Translated(spec.toolTip));
    this->*spec.button = button;
    if (&spec == &kButtons[3]) row->addStretch(1);
    row->addWidget(button);
  }
  for (QPushButton* button : {bitbtnZoomIn, bitbtnZoomOut, bitbtnZoomFit})
    button->setAutoDefault(false);
  bitbtnOk->setDefault(true);
  static_cast<QVBoxLayout*>(form->layout())->addLayout(row);
}

}  // namespace QvRefSystem
