#include "dialogs/select/world_land.h"

#include <QPolygonF>
#include <cstddef>
#include <iterator>

namespace QvRefSystem {
namespace {

constexpr short kRings[] = {
#include "dialogs/data/world_land.inc"
};

QPainterPath MakePath() {
  constexpr double kTenths = 10;
  QPainterPath path;
  for (std::size_t at = 0; at < std::size(kRings);) {
    QPolygonF ring;
    const int points = kRings[at++];
    for (int i = 0; i < points; ++i, at += 2)
      ring << QPointF(kRings[at] / kTenths, kRings[at + 1] / kTenths);
    path.addPolygon(ring);
    path.closeSubpath();
  }
  return path;
}

}  // namespace

const QPainterPath& WorldLand() {
  static const QPainterPath path = MakePath();
  return path;
}

}  // namespace QvRefSystem
