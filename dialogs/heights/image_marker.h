#pragma once

#include <QObject>
#include <QPointF>

namespace QvRefSystem {

/// A place in an image, counted in its pixels: whole numbers are the pixels themselves, (0, 0) the
/// top left one. The windows of one image share it.
class TMarker : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;
  /// Where the marker stands, in pixels of the image.
  [[nodiscard]] const QPointF& Position() const { return position_; }
  /// Moves the marker. A marker that is there already tells nobody.
  void MoveTo(const QPointF& position);

 signals:
  /// The marker has been moved to another place.
  void OnMarkerMove();

 private:
  QPointF position_;
};

}  // namespace QvRefSystem
