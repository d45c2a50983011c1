#pragma once

#include <QRectF>
#include <QTransform>
#include <QWidget>

#include "registry/area_of_use.h"

namespace QvRefSystem {

/// What a map shows and where, in degrees and in the pixels of its widget. North is up, and a
/// degree has the same size in both directions.
struct MapView {
  /// x from west to east, y from south to north. May reach past 180 degrees on either side.
  QRectF degrees;
  /// x from left to right, y from top to bottom; it has the shape of `degrees`.
  QRectF pixels;
  /// The area, in the longitudes of `degrees`.
  QRectF area;

  /// Takes degrees to pixels.
  [[nodiscard]] QTransform Transform() const;
};

/// A view that shows the area with enough of what lies around it to know it by.
[[nodiscard]] MapView FitMap(const EpsgBox& box, QSizeF size);

/// A small map of the earth with an area marked on it.
class AreaMap final : public QWidget {
 public:
  /// The map shows no area at first.
  explicit AreaMap(QWidget* parent);

  /// Shows another area, which the map draws at the next paint.
  void SetArea(const AreaOfUse& area);
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  AreaOfUse area_;
};

}  // namespace QvRefSystem
