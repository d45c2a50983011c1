#pragma once

#include <QAbstractScrollArea>
#include <QImage>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <array>
#include <cstdint>
#include <vector>

#include "dialogs/heights/image_marker.h"
#include "vertical/table_raster.h"

namespace QvRefSystem {

/// A table of heights as the pixels of an image.
using HeightRaster = QvCommonUtils::TTableDibData<double>;

/// How many pixels of the screen stand for how many pixels of the image. One of the two is 1.
struct ImageZoom {
  /// Pixels of the screen.
  int Numerator = 1;
  /// Pixels of the image.
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
  /// Makes a window without an image.
  explicit TBigImageScroll(QWidget* parent);

  /// Takes another image, or with null none; nothing is drawn until StartRasterShow. The raster
  /// must stay as it is, and alive, until it is taken off.
  void SetDibData(const HeightRaster* raster);
  /// Begins to draw the image that was set.
  void StartRasterShow();
  /// Whether the window has an image, drawn or not.
  [[nodiscard]] bool HasRaster() const { return raster_ != nullptr; }

  /// Shows a marker, which other windows may show as well and which must outlive this one.
  void SetMarker(TMarker* marker);
  /// Takes the other window over the same image, whose view this one shows as a frame. It must
  /// outlive this one.
  void SetSister(TBigImageScroll* sister);
  /// Tells whether the marker is always in the middle, as it is in a lens.
  void SetFollowsMarker(bool follows) { followsMarker_ = follows; }

  /// The zoom at which the image shows.
  [[nodiscard]] ImageZoom Zoom() const;
  /// Goes closer by so many steps, or farther by a negative number of them, about the middle of the
  /// view; no further than to the last zoom.
  void ZoomBy(int steps);
  /// Goes as close as the image still fits whole.
  void ZoomToFit();
  /// Goes so many steps closer than another window is.
  void ZoomCloserThan(const TBigImageScroll& other, int steps);

  /// Brings a pixel of the image to the middle, as far as the image reaches.
  void CentreOn(const QPointF& pixel);
  /// The part of the image that is in sight, in pixels of the image.
  [[nodiscard]] QRectF VisiblePixels() const;
  /// The place of a pixel's middle in the viewport, in the viewport's units.
  [[nodiscard]] QPointF PlaceOf(const QPointF& pixel) const;
  /// The pixel at a place in the viewport; beside the image it is the nearest one.
  [[nodiscard]] QPoint PixelAt(const QPointF& place) const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 signals:
  /// The image shows at another zoom.
  void OnZoomChange();
  /// Another part of the image is in sight.
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
  /// The middle of the view, in pixels of the image; it stays when the window changes its size.
  QPointF centre_;
  int wheel_ = 0;

  Drag drag_ = Drag::kNone;
  QPointF pressedAt_;
  QPoint scrolledAtPress_;

  /// What was drawn last; the fields below tell which part of the image it is, and at which zoom.
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
