#pragma once

#include <QPainterPath>

namespace QvRefSystem {

/// The land of the earth for small maps: x is the longitude and y the latitude, degrees on WGS 84.
/// Each piece of land stands there once and in one piece: what crosses the antimeridian reaches
/// past 180 or -180. A coastline may be off by 0.2 degrees.
[[nodiscard]] const QPainterPath& WorldLand();

}  // namespace QvRefSystem
