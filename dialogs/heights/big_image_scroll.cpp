#include "dialogs/heights/big_image_scroll.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRegion>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace QvRefSystem {
namespace {

// About a factor of 1.4 from one to the next, all whole.
constexpr std::array kZooms{
    ImageZoom{1, 1024}, ImageZoom{1, 768}, ImageZoom{1, 512}, ImageZoom{1, 384}, ImageZoom{1, 256},
    ImageZoom{1, 192},  ImageZoom{1, 128}, ImageZoom{1, 96},  ImageZoom{1, 64},  ImageZoom{1, 48},
    ImageZoom{1, 32},   ImageZoom{1, 24},  ImageZoom{1, 16},  ImageZoom{1, 12},  ImageZoom{1, 8},
    ImageZoom{1, 6},    ImageZoom{1, 4},   ImageZoom{1, 3},   ImageZoom{1, 2},   ImageZoom{1, 1},
    ImageZoom{2, 1},    ImageZoom{3, 1},   ImageZoom{4, 1},   ImageZoom{6, 1},   ImageZoom{8, 1},
    ImageZoom{12, 1},   ImageZoom{16, 1},  ImageZoom{24, 1},  ImageZoom{32, 1},  ImageZoom{48, 1},
    ImageZoom{64, 1}};
constexpr int kLastLevel = static_cast<int>(kZooms.size()) - 1;

constexpr int LevelOfOneToOne() {
  int level = 0;
  while (kZooms[static_cast<std::size_t>(level)].Denominator > 1)
    ++level;
  return level;
}

const ImageZoom& ZoomOf(int level) {
  return kZooms[static_cast<std::size_t>(level)];
}

double FactorOf(int level) {
  return static_cast<double>(ZoomOf(level).Numerator) / ZoomOf(level).Denominator;
}

// Pixels of the screen along an axis; 0 for more than can be scrolled over.
int ContentAlong(int pixels, const ImageZoom& zoom) {
  const std::int64_t content =
      (std::int64_t{pixels} + zoom.Denominator - 1) / zoom.Denominator * zoom.Numerator;
  return content > std::numeric_limits<int>::max() ? 0 : static_cast<int>(content);
}

constexpr int kWheelStep = 120;  // eighths of a degree

}  // namespace

TBigImageScroll::TBigImageScroll(QWidget* parent)
    : QAbstractScrollArea(parent), level_(LevelOfOneToOne()) {
  setFocusPolicy(Qt::StrongFocus);
  viewport()->setCursor(Qt::CrossCursor);
  viewport()->setBackgroundRole(QPalette::Mid);
  horizontalScrollBar()->setFocusPolicy(Qt::NoFocus);
  verticalScrollBar()->setFocusPolicy(Qt::NoFocus);
}

QSize TBigImageScroll::sizeHint() const {
  return fontMetrics().size(0, QStringLiteral("M")) * 24;
}

QSize TBigImageScroll::minimumSizeHint() const {
  return fontMetrics().size(0, QStringLiteral("M")) * 8;
}

// --- the image -------------------------------------------------------------------------------

void TBigImageScroll::SetDibData(const HeightRaster* raster) {
  raster_ = raster;
  started_ = false;
  drag_ = Drag::kNone;
  frame_ = {};
  spare_ = {};
  ViewChanged();
}

void TBigImageScroll::StartRasterShow() {
  if (raster_ == nullptr) return;
  started_ = true;
  const QvCommonUtils::RasterPalette& palette = raster_->Palette();
  for (std::size_t n = 0; n < colours_.size(); ++n)
    colours_[n] = qRgb(palette[n].Red, palette[n].Green, palette[n].Blue);
  while (level_ > 0 && ContentSize(level_).isEmpty())
    --level_;
  UpdateScrollBars();
  ViewChanged();
}

void TBigImageScroll::SetMarker(TMarker* marker) {
  marker_ = marker;
  connect(marker, &TMarker::OnMarkerMove, this, [this] { MarkerMoved(); });
}

void TBigImageScroll::SetSister(TBigImageScroll* sister) {
  sister_ = sister;
  connect(sister, &TBigImageScroll::OnViewChange, viewport(), qOverload<>(&QWidget::update));
}

// --- geometry --------------------------------------------------------------------------------
// A place of the image is where a pixel begins; its middle lies half a pixel on. The content is the
// zoomed image in pixels of the screen.

QSize TBigImageScroll::DeviceSize() const {
  const double ratio = viewport()->devicePixelRatioF();
  return {static_cast<int>(std::ceil(viewport()->width() * ratio)),
          static_cast<int>(std::ceil(viewport()->height() * ratio))};
}

QSize TBigImageScroll::ContentSize(int level) const {
  if (raster_ == nullptr) return {};
  const ImageZoom& zoom = ZoomOf(level);
  return {ContentAlong(raster_->Width(), zoom), ContentAlong(raster_->Height(), zoom)};
}

// The place of the content at the top left of the viewport; below 0 where the content, being
// smaller, stands in the middle.
QPoint TBigImageScroll::Origin() const {
  const QSize room = (DeviceSize() - ContentSize(level_)) / 2;
  return {room.width() > 0 ? -room.width() : horizontalScrollBar()->value(),
          room.height() > 0 ? -room.height() : verticalScrollBar()->value()};
}

QPointF TBigImageScroll::ImagePlaceAt(const QPointF& place) const {
  return (place * viewport()->devicePixelRatioF() + Origin()) / FactorOf(level_);
}

QPointF TBigImageScroll::PlaceOf(const QPointF& pixel) const {
  const QPointF middle = pixel + QPointF(0.5, 0.5);
  return (middle * FactorOf(level_) - Origin()) / viewport()->devicePixelRatioF();
}

QPoint TBigImageScroll::PixelAt(const QPointF& place) const {
  if (raster_ == nullptr) return {};
  const QPointF at = ImagePlaceAt(place);
  return {static_cast<int>(std::clamp(std::floor(at.x()), 0.0, raster_->Width() - 1.0)),
          static_cast<int>(std::clamp(std::floor(at.y()), 0.0, raster_->Height() - 1.0))};
}

QRectF TBigImageScroll::VisiblePixels() const {
  if (raster_ == nullptr) return {};
  const QRectF seen(ImagePlaceAt({0, 0}), QSizeF(DeviceSize()) / FactorOf(level_));
  return seen & QRectF(0, 0, raster_->Width(), raster_->Height());
}

void TBigImageScroll::UpdateScrollBars() {
  const QSize room = DeviceSize();
  const QSize content = ContentSize(level_);
  const auto update = [](QScrollBar* bar, int whole, int seen) {
    bar->setRange(0, std::max(whole - seen, 0));
    bar->setPageStep(seen);
    bar->setSingleStep(std::max(seen / 20, 1));
  };
  update(horizontalScrollBar(), content.width(), room.width());
  update(verticalScrollBar(), content.height(), room.height());
}

void TBigImageScroll::PutAt(const QPointF& imagePlace, const QPointF& place) {
  const QPointF origin = imagePlace * FactorOf(level_) - place * viewport()->devicePixelRatioF();
  horizontalScrollBar()->setValue(static_cast<int>(std::lround(origin.x())));
  verticalScrollBar()->setValue(static_cast<int>(std::lround(origin.y())));
  ViewChanged();
}

void TBigImageScroll::CentreOn(const QPointF& pixel) {
  const QPointF wanted = pixel + QPointF(0.5, 0.5);
  PutAt(wanted, QRectF(viewport()->rect()).center());
  centre_ = wanted;
}

void TBigImageScroll::ViewChanged() {
  frameIsStale_ = true;
  centre_ = ImagePlaceAt(QRectF(viewport()->rect()).center());
  viewport()->update();
  emit OnViewChange();
}

void TBigImageScroll::resizeEvent(QResizeEvent* event) {
  const QPointF centre = centre_;
  QAbstractScrollArea::resizeEvent(event);
  UpdateScrollBars();
  PutAt(centre, QRectF(viewport()->rect()).center());
  // A middle that was out of reach may come into reach.
  centre_ = centre;
}

void TBigImageScroll::scrollContentsBy(int /*dx*/, int /*dy*/) {
  ViewChanged();
}

// --- zoom ------------------------------------------------------------------------------------

ImageZoom TBigImageScroll::Zoom() const {
  return ZoomOf(level_);
}

void TBigImageScroll::SetLevel(int level, const QPointF& place) {
  int wanted = std::clamp(level, 0, kLastLevel);
  while (wanted > 0 && raster_ != nullptr && ContentSize(wanted).isEmpty())
    --wanted;
  if (wanted == level_) return;
  const QPointF under = ImagePlaceAt(place);
  level_ = wanted;
  UpdateScrollBars();
  PutAt(under, place);
  if (followsMarker_ && marker_ != nullptr) CentreOn(marker_->Position());
  emit OnZoomChange();
}

void TBigImageScroll::ZoomBy(int steps) {
  SetLevel(level_ + steps, QRectF(viewport()->rect()).center());
}

void TBigImageScroll::ZoomToFit() {
  if (raster_ == nullptr) return;
  const QSize room = maximumViewportSize() * viewport()->devicePixelRatioF();
  int level = kLastLevel;
  const auto fits = [&](const QSize& content) {
    return !content.isEmpty() && content.width() <= room.width() &&
           content.height() <= room.height();
  };
  while (level > 0 && !fits(ContentSize(level)))
    --level;
  SetLevel(level, QRectF(viewport()->rect()).center());
}

void TBigImageScroll::ZoomCloserThan(const TBigImageScroll& other, int steps) {
  SetLevel(other.level_ + steps, QRectF(viewport()->rect()).center());
}

void TBigImageScroll::wheelEvent(QWheelEvent* event) {
  wheel_ += event->angleDelta().y();
  const int steps = wheel_ / kWheelStep;
  wheel_ -= steps * kWheelStep;
  if (steps != 0) SetLevel(level_ + steps, event->position());
  event->accept();
}

// --- the marker ------------------------------------------------------------------------------

bool TBigImageScroll::IsAtMarker(const QPointF& place) const {
  if (marker_ == nullptr) return false;
  const QPointF away = place - PlaceOf(marker_->Position());
  return away.manhattanLength() <= QApplication::startDragDistance();
}

void TBigImageScroll::MoveMarkerTo(QPoint pixel) {
  if (marker_ == nullptr || raster_ == nullptr) return;
  marker_->MoveTo(QPointF(std::clamp(pixel.x(), 0, raster_->Width() - 1),
                          std::clamp(pixel.y(), 0, raster_->Height() - 1)));
}

void TBigImageScroll::KeepMarkerInSight() {
  const QRectF view = viewport()->rect();
  const QPointF at = PlaceOf(marker_->Position());
  if (view.contains(at)) return;
  const double x = std::clamp(at.x(), view.left(), view.right());
  const double y = std::clamp(at.y(), view.top(), view.bottom());
  PutAt(marker_->Position() + QPointF(0.5, 0.5), {x, y});
}

void TBigImageScroll::MarkerMoved() {
  viewport()->update();
  if (raster_ == nullptr || drag_ != Drag::kNone) return;
  if (followsMarker_) {
    CentreOn(marker_->Position());
  } else {
    KeepMarkerInSight();
  }
}

void TBigImageScroll::mousePressEvent(QMouseEvent* event) {
  const bool left = event->button() == Qt::LeftButton;
  if (raster_ == nullptr || (!left && event->button() != Qt::MiddleButton)) return;
  pressedAt_ = event->position();
  scrolledAtPress_ = {horizontalScrollBar()->value(), verticalScrollBar()->value()};
  drag_ = !left ? Drag::kImage : IsAtMarker(pressedAt_) ? Drag::kMarker : Drag::kPressed;
}

void TBigImageScroll::mouseMoveEvent(QMouseEvent* event) {
  if (raster_ == nullptr || drag_ == Drag::kNone) return;
  const QPointF moved = event->position() - pressedAt_;
  if (drag_ == Drag::kPressed && moved.manhattanLength() >= QApplication::startDragDistance()) {
    drag_ = Drag::kImage;
  }
  if (drag_ == Drag::kMarker) MoveMarkerTo(PixelAt(event->position()));
  if (drag_ != Drag::kImage) return;
  viewport()->setCursor(Qt::ClosedHandCursor);
  const QPoint scrolled = scrolledAtPress_ - (moved * viewport()->devicePixelRatioF()).toPoint();
  horizontalScrollBar()->setValue(scrolled.x());
  verticalScrollBar()->setValue(scrolled.y());
}

void TBigImageScroll::mouseReleaseEvent(QMouseEvent* event) {
  const Drag ended = std::exchange(drag_, Drag::kNone);
  viewport()->setCursor(Qt::CrossCursor);
  if (raster_ == nullptr || marker_ == nullptr) return;
  if (ended == Drag::kPressed) MoveMarkerTo(PixelAt(event->position()));
  if (ended == Drag::kMarker) MarkerMoved();
}

void TBigImageScroll::keyPressEvent(QKeyEvent* event) {
  struct Arrow {
    int key;
    int x;
    int y;
  };
  static constexpr Arrow kArrows[] = {
      {Qt::Key_Left, -1, 0}, {Qt::Key_Right, 1, 0}, {Qt::Key_Up, 0, -1}, {Qt::Key_Down, 0, 1}};
  if (event->key() == Qt::Key_Plus || event->key() == Qt::Key_Equal) return ZoomBy(1);
  if (event->key() == Qt::Key_Minus) return ZoomBy(-1);
  if (raster_ == nullptr || marker_ == nullptr) return QAbstractScrollArea::keyPressEvent(event);
  for (const Arrow& arrow : kArrows) {
    if (arrow.key != event->key()) continue;
    const bool far = event->modifiers().testFlag(Qt::ControlModifier);
    const QSizeF seen = VisiblePixels().size() / 10;
    const int stepX = far ? std::max(static_cast<int>(seen.width()), 1) : 1;
    const int stepY = far ? std::max(static_cast<int>(seen.height()), 1) : 1;
    MoveMarkerTo(marker_->Position().toPoint() + QPoint(arrow.x * stepX, arrow.y * stepY));
    return;
  }
  QAbstractScrollArea::keyPressEvent(event);
}

void TBigImageScroll::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  viewport()->update();
}

void TBigImageScroll::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  viewport()->update();
}

// --- drawing ---------------------------------------------------------------------------------

// Draws a part of the image into the frame.
void TBigImageScroll::ReadFrame(const QRect& content) {
  const ImageZoom& zoom = ZoomOf(level_);
  const int n = zoom.Numerator;
  const QvCommonUtils::PixelRectangle cells{content.left() / n, content.top() / n,
                                            content.right() / n + 1, content.bottom() / n + 1};
  QvCommonUtils::BitmapHeader header;
  raster_->Read(cells, &header, &levels_, zoom.Denominator);
  const std::size_t rowBytes = levels_.size() / static_cast<std::size_t>(header.Height);
  const QPoint corner = content.topLeft() - framePlace_.topLeft();
  const int width = content.width();
  const QRgb* drawn = nullptr;
  int drawnRow = -1;
  for (int y = 0; y < content.height(); ++y) {
    QRgb* line = reinterpret_cast<QRgb*>(frame_.scanLine(corner.y() + y)) + corner.x();
    const int row = (content.top() + y) / n - cells.Top;
    if (row == drawnRow) {
      std::memcpy(line, drawn, static_cast<std::size_t>(width) * sizeof(QRgb));
      continue;
    }
    drawn = line;
    drawnRow = row;
    // The lowest row comes first.
    const std::uint8_t* levels =
        levels_.data() + static_cast<std::size_t>(header.Height - 1 - row) * rowBytes;
    if (n == 1) {
      for (int x = 0; x < width; ++x)
        line[x] = colours_[levels[x]];
      continue;
    }
    int end = n - content.left() % n;
    for (int x = 0; x < width; ++levels, end += n) {
      const QRgb colour = colours_[*levels];
      for (const int stop = std::min(end, width); x < stop; ++x)
        line[x] = colour;
    }
  }
}

// Takes over what two frames of one zoom share.
void TBigImageScroll::KeepOverlap(const QImage& before, const QRect& place) {
  const QRect kept = place & framePlace_;
  const QPoint from = kept.topLeft() - place.topLeft();
  const QPoint to = kept.topLeft() - framePlace_.topLeft();
  for (int y = 0; y < kept.height(); ++y) {
    std::memcpy(reinterpret_cast<QRgb*>(frame_.scanLine(to.y() + y)) + to.x(),
                reinterpret_cast<const QRgb*>(before.constScanLine(from.y() + y)) + from.x(),
                static_cast<std::size_t>(kept.width()) * sizeof(QRgb));
  }
}

// While the image is moved, only what comes into sight is read.
void TBigImageScroll::RenderFrame() {
  const QRect before = frame_.isNull() || frameLevel_ != level_ ? QRect() : framePlace_;
  framePlace_ = QRect(Origin(), DeviceSize()) & QRect(QPoint(0, 0), ContentSize(level_));
  frameLevel_ = level_;
  std::swap(frame_, spare_);
  if (frame_.size() != framePlace_.size()) {
    frame_ = QImage(framePlace_.size(), QImage::Format_RGB32);
    // As a failed read does.
    if (frame_.isNull() && !framePlace_.isEmpty()) throw 0;  // NOLINT(hicpp-exception-baseclass)
  }
  KeepOverlap(spare_, before);
  for (const QRect& part : QRegion(framePlace_).subtracted(before))
    ReadFrame(part);
}

void TBigImageScroll::paintEvent(QPaintEvent* /*event*/) {
  if (!started_) return;
  if (frameIsStale_) {
    try {
      RenderFrame();
    } catch (int) {
      started_ = false;
      // Not now: who hears of it may take the image off, or close the window.
      QMetaObject::invokeMethod(
          this, [this] { emit OnImageError(); }, Qt::QueuedConnection);
      return;
    }
    frameIsStale_ = false;
  }
  QPainter painter(viewport());
  const double ratio = viewport()->devicePixelRatioF();
  frame_.setDevicePixelRatio(ratio);
  painter.drawImage(QPointF(framePlace_.topLeft() - Origin()) / ratio, frame_);
  DrawSister(&painter);
  DrawMarker(&painter);
  if (hasFocus()) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRect(QRectF(viewport()->rect()).adjusted(1, 1, -1, -1));
  }
}

// Two colours can be told from any background.
void TBigImageScroll::DrawMarker(QPainter* painter) const {
  if (marker_ == nullptr) return;
  const QPointF at = PlaceOf(marker_->Position());
  const double arm = fontMetrics().height() * 0.8;
  const double gap = arm / 4;
  const QLineF lines[] = {{at - QPointF(arm, 0), at - QPointF(gap, 0)},
                          {at + QPointF(gap, 0), at + QPointF(arm, 0)},
                          {at - QPointF(0, arm), at - QPointF(0, gap)},
                          {at + QPointF(0, gap), at + QPointF(0, arm)}};
  for (const QPen& pen : {QPen(Qt::white, 3), QPen(Qt::black, 1)}) {
    painter->setPen(pen);
    painter->drawLines(lines, static_cast<int>(std::size(lines)));
  }
}

void TBigImageScroll::DrawSister(QPainter* painter) const {
  if (sister_ == nullptr || !sister_->started_) return;
  const QRectF other = sister_->VisiblePixels();
  const QRectF own = VisiblePixels();
  // A frame around all that is in sight would tell nothing.
  if (other.width() >= own.width() && other.height() >= own.height()) return;
  const QPointF half(0.5, 0.5);
  const QRectF frame(PlaceOf(other.topLeft() - half), PlaceOf(other.bottomRight() - half));
  for (const QPen& pen : {QPen(Qt::white, 3), QPen(Qt::black, 1)}) {
    painter->setPen(pen);
    painter->drawRect(frame);
  }
}

}  // namespace QvRefSystem
