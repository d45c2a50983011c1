#pragma once

#include <QAbstractScrollArea>
#include <QImage>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <array>
#include <cstdint>
#include <vector>

#include "vertical/table_raster.h"

namespace QvRefSystem {

using HeightRaster = QvCommonUtils::TTableDibData<double>;

/// A place in an image, counted in its pixels: whole numbers are the pixels themselves, (0, 0) the
/// top left one. The windows of one image share it.
class TMarker : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;
  [[nodiscard]] const QPointF& Position() const { return position_; }
  void MoveTo(const QPointF& position);

 signals:
  void OnMarkerMove();

 private:
  QPointF position_;
};

/// Pixels of the screen for pixels of the image; one of the two is 1.
struct ImageZoom {
  int Numerator = 1;
  int Denominator = 1;
};

/// A window over an image of any size. It holds no more than it shows: whatever has to be drawn is
/// read from the raster by its rectangle, every nth pixel of it when the image is reduced.
///
/// The wheel zooms about the cursor, a drag moves the image, a click or a drag of the marker moves
/// the marker, and so do the arrow keys: by a pixel, with Ctrl by a tenth of what is in sight. All
/// sizes are those of the screen's own pixels, so that 1:1 is sharp on any screen.
class TBigImageScroll : public QAbstractScrollArea {
  Q_OBJECT

 public:
  explicit TBigImageScroll(QWidget* parent);

  /// Takes another image, or with null none; nothing is drawn until StartRasterShow. The raster
  /// must stay as it is, and alive, until it is taken off.
  void SetDibData(const HeightRaster* raster);
  void StartRasterShow();
  [[nodiscard]] bool HasRaster() const { return raster_ != nullptr; }

  void SetMarker(TMarker* marker);
  /// The windows show each other's view as a frame.
  void SetSister(TBigImageScroll* sister);
  /// Whether the marker is always in the middle, as it is in a lens.
  void SetFollowsMarker(bool follows) { followsMarker_ = follows; }

  [[nodiscard]] ImageZoom Zoom() const;
  /// One step closer (1) or farther (-1), about the middle of the view.
  void ZoomBy(int steps);
  /// As close as the image still fits whole.
  void ZoomToFit();
  /// `steps` closer than another window.
  void ZoomCloserThan(const TBigImageScroll& other, int steps);

  /// Brings a pixel of the image to the middle, as far as the image reaches.
  void CentreOn(const QPointF& pixel);
  /// Pixels of the image in sight.
  [[nodiscard]] QRectF VisiblePixels() const;
  /// The place of a pixel's middle in the viewport, and the pixel at a place there.
  [[nodiscard]] QPointF PlaceOf(const QPointF& pixel) const;
  [[nodiscard]] QPoint PixelAt(const QPointF& place) const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 signals:
  void OnZoomChange();
  void OnViewChange();
  /// A read has failed; the image is not drawn any more.
  void OnImageError();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  enum class Drag { kNone, kPressed, kMarker, kImage };

  [[nodiscard]] QSize DeviceSize() const;
  [[nodiscard]] QSize ContentSize(int level) const;
  [[nodiscard]] QPoint Origin() const;
  [[nodiscard]] QPointF ImagePlaceAt(const QPointF& place) const;
  [[nodiscard]] bool IsAtMarker(const QPointF& place) const;
  /// Puts a place of the image under a place of the viewport.
  void PutAt(const QPointF& imagePlace, const QPointF& place);
  void SetLevel(int level, const QPointF& place);
  void UpdateScrollBars();
  void ViewChanged();
  void MoveMarkerTo(QPoint pixel);
  void KeepMarkerInSight();
  void MarkerMoved();
  void RenderFrame();
  void KeepOverlap(const QImage& before, const QRect& place);
  void ReadFrame(const QRect& content);
  void DrawMarker(QPainter* painter) const;
  void DrawSister(QPainter* painter) const;

  const HeightRaster* raster_ = nullptr;
  bool started_ = false;
  TMarker* marker_ = nullptr;
  TBigImageScroll* sister_ = nullptr;
  bool followsMarker_ = false;
  int level_;
  /// The middle of the view in the image; it stays when the window changes its size.
  QPointF centre_;
  int wheel_ = 0;

  Drag drag_ = Drag::kNone;
  QPointF pressedAt_;
  QPoint scrolledAtPress_;

  /// What was drawn last, and which part of the image at which zoom that is.
  QImage frame_;
  QRect framePlace_;
  int frameLevel_ = 0;
  bool frameIsStale_ = true;
  /// The frame before, whose memory is used again.
  QImage spare_;
  std::array<QRgb, 256> colours_{};
  std::vector<std::uint8_t> levels_;
};

}  // namespace QvRefSystem
