#include "dialogs/heights/table_raster_view.h"

#include <QApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScreen>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QStatusBar>
#include <array>
#include <stdexcept>

#include "dialogs/base/radio_group.h"
#include "dialogs/heights/big_image_scroll.h"
#include "dialogs/heights/level_legend.h"
#include "platform/widgets/file_dialogs.h"
#include "platform/widgets/qt_text.h"
#include "vertical/bitmap_file.h"

namespace QvRefSystem {

using QvPlatform::Translated;

namespace {

constexpr int kLensSteps = 4;  // of zoom, by which the lens starts closer than the main image
constexpr char kNotInFileNames[] = "/.\\:+*?!\"";

class BusyCursor {
 public:
  BusyCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
  ~BusyCursor() { QApplication::restoreOverrideCursor(); }
  BusyCursor(const BusyCursor&) = delete;
  BusyCursor& operator=(const BusyCursor&) = delete;
};

/// Lends a progress bar to a computation while it lives. The interface carries no context, so the
/// bar stands here; there is one at a time, since it runs under a modal form.
class BarProgress {
 public:
  explicit BarProgress(QProgressBar* bar) : shown_(bar_, bar) {
    interface_.Next = &Next;
    interface_.SetMax = &SetMax;
  }
  ~BarProgress() { bar_->setValue(0); }
  BarProgress(const BarProgress&) = delete;
  BarProgress& operator=(const BarProgress&) = delete;
  [[nodiscard]] TProgressInterface* Interface() { return &interface_; }

 private:
  static void SetMax(int count) {
    bar_->setRange(0, std::max(count, 1));
    bar_->setValue(0);
  }
  static int Next() {
    bar_->setValue(bar_->value() + 1);
    // The window stays drawn, and deaf.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    return 0;
  }

  static QProgressBar* bar_;
  QScopedValueRollback<QProgressBar*> shown_;
  TProgressInterface interface_;
};
QProgressBar* BarProgress::bar_ = nullptr;

}  // namespace

TformQvRfTableRasterView::TformQvRfTableRasterView(QWidget* owner) : ModalForm(owner) {
  setWindowTitle(Translated("View height system data"));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  BuildControls(this);
  ConnectControls();
  const QSize screen = QGuiApplication::primaryScreen()->availableSize();
  resize((screen * 3 / 4).expandedTo(minimumSizeHint()));
}

void TformQvRfTableRasterView::ConnectControls() {
  connect(Marker1, &TMarker::OnMarkerMove, this, [this] { RefreshStatus(); });
  for (TBigImageScroll* image : {MainImage, LenseImage}) {
    connect(image, &TBigImageScroll::OnZoomChange, this, [this] { RefreshStatus(); });
    connect(image, &TBigImageScroll::OnImageError, this, [this] { DropRaster(); });
  }
  connect(&radiogrViewMode->Buttons(), &QButtonGroup::idClicked, this,
          [this] { radiogrViewModeClick(); });
  connect(trackbarInterpolationScale, &QSlider::valueChanged, this,
          [this] { trackbarInterpolationScaleChange(); });
  connect(bitbtnZoomIn, &QPushButton::clicked, this, [this] { MainImage->ZoomBy(1); });
  connect(bitbtnZoomOut, &QPushButton::clicked, this, [this] { MainImage->ZoomBy(-1); });
  connect(bitbtnZoomFit, &QPushButton::clicked, this, [this] { MainImage->ZoomToFit(); });
  connect(bitbtnOk, &QPushButton::clicked, this, &QDialog::accept);
  connect(bitbtnClose, &QPushButton::clicked, this, &QDialog::reject);
  connect(BtnRun, &QPushButton::clicked, this, [this] { BtnRunClick(); });
  bitbtnOk->installEventFilter(this);
  BtnRun->installEventFilter(this);
}

void TformQvRfTableRasterView::Show(QvCommonUtils::TTableDibData<double>* raster,
                                    TShellReferenceSystem* system) {
  if (IsRunning() || raster == nullptr || raster->Width() == 0 || raster->Height() == 0) return;
  raster_ = raster;
  system_ = system;
  {
    const QSignalBlocker quiet(trackbarInterpolationScale);
    trackbarInterpolationScale->setValue(raster->Zoom);
  }
  radiogrViewMode->SetItemIndex(raster->Grayscale ? 1 : 0);
  ShowInterpolationZoom();
  ShowSavePanel(false);
  StartImages();
  Marker1->MoveTo(QPointF(raster->Width() / 2, raster->Height() / 2));
  RefreshStatus();
  BtnRun->setEnabled(true);
  RunModal();
  DropRaster();
  system_ = nullptr;
}

void TformQvRfTableRasterView::done(int result) {
  ModalForm::done(result);
  DropRaster();
}

void TformQvRfTableRasterView::FormShow(bool first) {
  ModalForm::FormShow(first);
  if (!first) return;
  KeepOnScreen();
  layout()->activate();
  MainImage->ZoomToFit();
  LenseImage->ZoomCloserThan(*MainImage, kLensSteps);
  for (TBigImageScroll* image : {MainImage, LenseImage})
    image->CentreOn(Marker1->Position());
  MainImage->setFocus();
}

// The form is larger than its owner, beside which it would reach beyond the screen.
void TformQvRfTableRasterView::KeepOnScreen() {
  const QRect room = screen()->availableGeometry();
  move(std::max(room.left(), std::min(x(), room.right() - width() + 1)),
       std::max(room.top(), std::min(y(), room.bottom() - height() + 1)));
}

void TformQvRfTableRasterView::StartImages() {
  for (TBigImageScroll* image : {MainImage, LenseImage}) {
    image->SetDibData(raster_);
    image->StartRasterShow();
  }
  Legend->ShowRaster(raster_);
}

void TformQvRfTableRasterView::DropRaster() {
  for (TBigImageScroll* image : {MainImage, LenseImage})
    image->SetDibData(nullptr);
  Legend->ShowRaster(nullptr);
  BtnRun->setEnabled(false);
  raster_ = nullptr;
}

// --- looks -----------------------------------------------------------------------------------

void TformQvRfTableRasterView::ChangeView(int zoom) {
  const QPointF marker = Marker1->Position();
  const int before = raster_->Zoom;
  for (TBigImageScroll* image : {MainImage, LenseImage})
    image->SetDibData(nullptr);
  try {
    raster_->ChangeView(radiogrViewMode->ItemIndex() != 0, raster_->FlipRows, zoom);
  } catch (const std::length_error&) {
    // A table too large for that zoom stays as it was.
    const QSignalBlocker quiet(trackbarInterpolationScale);
    trackbarInterpolationScale->setValue(before);
  }
  StartImages();
  Marker1->MoveTo(marker / before * raster_->Zoom);
  for (TBigImageScroll* image : {MainImage, LenseImage})
    image->CentreOn(Marker1->Position());
}

void TformQvRfTableRasterView::radiogrViewModeClick() {
  if (raster_ != nullptr) ChangeView(0);
}

void TformQvRfTableRasterView::trackbarInterpolationScaleChange() {
  if (raster_ == nullptr) return;
  ChangeView(trackbarInterpolationScale->value());
  ShowInterpolationZoom();
  RefreshStatus();
}

void TformQvRfTableRasterView::ShowInterpolationZoom() {
  pnlInterpolationZoom->setText(QString::number(trackbarInterpolationScale->value()) +
                                QStringLiteral(":1"));
}

// --- the status ------------------------------------------------------------------------------

QString TformQvRfTableRasterView::PlaceText(double x, double y, double height) const {
  if (system_ == nullptr) return QString::asprintf("(%.3f, %.3f, %.3f)", x, y, height);
  TShellCoords coords;
  system_->set_core_coords(x, y, height);
  system_->GetCoords(&coords);
  std::array<std::string, 3> texts;
  coords.Get(&texts[0], &texts[1], &texts[2]);
  return QString::asprintf("(%s, %s, %s)", texts[0].c_str(), texts[1].c_str(), texts[2].c_str());
}

void TformQvRfTableRasterView::RefreshStatus() {
  if (raster_ == nullptr) return;
  const int k = trackbarInterpolationScale->value();
  const ImageZoom main = MainImage->Zoom();
  const ImageZoom lens = LenseImage->Zoom();
  const QPointF& marker = Marker1->Position();
  // A marker that stands between pixels after a change of zoom reads the nearest one.
  const QPoint pixel = marker.toPoint();
  double x = 0;
  double y = 0;
  const double height = raster_->HeightAt(pixel.x(), pixel.y(), &x, &y);
  Legend->PointAt(height);
  // The toolkit's printf writes numbers in C notation, whatever the locale.
  StatusBar->showMessage(
      QString::asprintf(" %3d:%3d    %3d:%3d   (%10.3f,%10.3f)  [%lld x %lld]   ",
                        main.Numerator * k, main.Denominator, lens.Numerator * k, lens.Denominator,
                        marker.x(), marker.y(), qlonglong{raster_->Width()} * k,
                        qlonglong{raster_->Height()} * k) +
      PlaceText(x, y, height));
}

// --- saving ----------------------------------------------------------------------------------

bool TformQvRfTableRasterView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_F12 &&
        key->modifiers() == (Qt::ControlModifier | Qt::ShiftModifier)) {
      ShowSavePanel(watched == bitbtnOk);
      return true;
    }
  }
  return ModalForm::eventFilter(watched, event);
}

void TformQvRfTableRasterView::ShowSavePanel(bool show) {
  const bool focusWillGo = BtnRun->hasFocus() && !show;
  pnlImageAdjustment->setHidden(show);
  grboxSaveImageToFile->setVisible(show);
  if (focusWillGo) bitbtnOk->setFocus();
}

void TformQvRfTableRasterView::BtnRunClick() {
  QString name = windowTitle();
  for (const char* letter = kNotInFileNames; *letter != '\0'; ++letter)
    name.replace(QLatin1Char(*letter), QLatin1Char(' '));
  const QvPlatform::FileDialogResult file = QvPlatform::GetSaveFileName(
      this, QvPlatform::SystemQText(QvPlatform::TextId::kSaveTitle),
      {.filter = QStringLiteral("BMP|*.bmp"), .filterIndex = 1, .defaultFileName = name});
  if (!file.path.isEmpty() && raster_ != nullptr) SaveImage(file.path);
}

void TformQvRfTableRasterView::SaveImage(const QString& path) {
  const BusyCursor busy;
  BarProgress progress(ProgressBar1);
  // A file that cannot be written ends without a word.
  (void)QvCommonUtils::SaveBitmapFile(*raster_, SpinSubsample->value(), QvPlatform::FromQt(path),
                                      progress.Interface());
}

void ViewHeightTable(QWidget* owner, const THeightTable* table, TShellReferenceSystem* system) {
  if (table == nullptr || table->CountX == 0 || table->CountY == 0) return;
  QvCommonUtils::TTableDibData<double> raster;
  raster.Setup(table, false, false, true, 1);
  TformQvRfTableRasterView view(owner);
  view.Show(&raster, system);
}

}  // namespace QvRefSystem
