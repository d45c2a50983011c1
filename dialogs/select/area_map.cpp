#include "dialogs/select/area_map.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "dialogs/select/world_land.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

namespace {

constexpr double kWorldWidth = 360;
constexpr double kWorldHeight = 180;

// A colour between two of the palette, which keeps its distance from both in light and in dark.
QColor Blend(const QColor& from, const QColor& to, double share) {
  const auto mix = [share](int a, int b) { return static_cast<int>(a + (b - a) * share); };
  return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

void DrawLand(QPainter* painter, const MapView& view, const QColor& colour) {
  // The outline has the colour of the land, and hides the seam between two earths side by side.
  QPen pen(colour);
  pen.setCosmetic(true);
  painter->setPen(pen);
  painter->setBrush(colour);
  const QTransform transform = view.Transform();
  for (const double turn : {-kWorldWidth, 0.0, kWorldWidth}) {
    if (!WorldLand().boundingRect().translated(turn, 0).intersects(view.degrees)) continue;
    painter->setTransform(QTransform::fromTranslate(turn, 0) * transform, false);
    painter->drawPath(WorldLand());
  }
  painter->resetTransform();
}

void DrawGraticule(QPainter* painter, const MapView& view, const QColor& colour) {
  painter->setPen(QPen(colour, 0));
  constexpr double kStep = 30;
  const QTransform transform = view.Transform();
  const QRectF& seen = view.degrees;
  for (double x = std::ceil(seen.left() / kStep) * kStep; x <= seen.right(); x += kStep)
    painter->drawLine(transform.map(QLineF(x, seen.top(), x, seen.bottom())));
  for (double y = std::ceil(seen.top() / kStep) * kStep; y <= seen.bottom(); y += kStep)
    painter->drawLine(transform.map(QLineF(seen.left(), y, seen.right(), y)));
}

void DrawArea(QPainter* painter, const MapView& view, const QColor& colour) {
  QRectF area = view.Transform().mapRect(view.area);
  // What is smaller than a few pixels is marked all the same.
  constexpr double kLeast = 5;
  const QPointF centre = area.center();
  area.setSize(area.size().expandedTo({kLeast, kLeast}));
  area.moveCenter(centre);
  QColor fill = colour;
  fill.setAlpha(110);
  painter->setPen(QPen(colour, 1.5));
  painter->setBrush(fill);
  painter->drawRect(area);
}

}  // namespace

QTransform MapView::Transform() const {
  const double scale = pixels.width() / degrees.width();
  return {scale,
          0,
          0,
          -scale,
          pixels.left() - degrees.left() * scale,
          pixels.top() + degrees.bottom() * scale};
}

MapView FitMap(const EpsgBox& box, QSizeF size) {
  MapView view;
  const double width = box.east - box.west + (box.east < box.west ? kWorldWidth : 0);
  view.area = QRectF(box.west, box.south, width, box.north - box.south);
  // Three times the area, but a quarter of the earth at least: its land is known by its shape.
  const double wantedWidth = std::clamp(3 * width, kWorldWidth / 4, kWorldWidth);
  const double wantedHeight = std::clamp(3 * view.area.height(), kWorldHeight / 4, kWorldHeight);
  size = size.expandedTo({1, 1});
  const double whole = std::max(kWorldWidth / size.width(), kWorldHeight / size.height());
  const double degreesPerPixel =
      std::min(whole, std::max(wantedWidth / size.width(), wantedHeight / size.height()));
  const QSizeF seen(std::min(size.width() * degreesPerPixel, kWorldWidth),
                    std::min(size.height() * degreesPerPixel, kWorldHeight));
  QPointF centre = view.area.center();
  // The whole earth stands as one knows it, unless that would cut the area in two.
  if (seen.width() == kWorldWidth && view.area.right() <= kWorldWidth / 2) centre.setX(0);
  const double most = (kWorldHeight - seen.height()) / 2;
  centre.setY(std::clamp(centre.y(), -most, most));
  view.degrees =
      QRectF(QPointF(centre.x() - seen.width() / 2, centre.y() - seen.height() / 2), seen);
  view.pixels = QRectF(QPointF(), seen / degreesPerPixel);
  view.pixels.moveLeft((size.width() - view.pixels.width()) / 2);
  return view;
}

AreaMap::AreaMap(QWidget* parent) : QWidget(parent) {
  setObjectName("mapArea");
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void AreaMap::SetArea(const AreaOfUse& area) {
  area_ = area;
  setAccessibleName(QvPlatform::Translated("Area of use"));
  setAccessibleDescription(QvPlatform::ToQt(area.name));
  update();
}

QSize AreaMap::sizeHint() const {
  const int unit = fontMetrics().height();
  return {18 * unit, 9 * unit};
}

QSize AreaMap::minimumSizeHint() const {
  return sizeHint() / 2;
}

void AreaMap::paintEvent(QPaintEvent* /*event*/) {
  const MapView view = FitMap(area_.box, size());
  const QColor sea = palette().color(QPalette::Base);
  const QColor ink = palette().color(QPalette::Text);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setClipRect(view.pixels);
  painter.fillRect(view.pixels, sea);
  DrawLand(&painter, view, Blend(sea, ink, 0.3));
  DrawGraticule(&painter, view, Blend(sea, ink, 0.15));
  DrawArea(&painter, view, palette().color(QPalette::Highlight));
  painter.setPen(QPen(Blend(sea, ink, 0.5), 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(view.pixels.adjusted(0.5, 0.5, -0.5, -0.5));
}

}  // namespace QvRefSystem
