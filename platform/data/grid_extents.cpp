#include "platform/data/grid_extents.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

// Nodes along an axis; 0 if there is no such number of them.
std::uint32_t NodesAlong(double from, double to, double cell) {
  const double count = std::floor((to - from) / cell + 0.5) + 1;
  // Also for an infinite span.
  if (!(count >= 1 && count <= std::numeric_limits<std::uint32_t>::max())) return 0;
  return static_cast<std::uint32_t>(count);
}

std::string Rounded(double value, int digits) {
  char buffer[32];
  const auto written = std::to_chars(buffer, buffer + sizeof buffer, value,
                                     std::chars_format::scientific, digits - 1);
  double rounded = value;
  std::from_chars(buffer, written.ptr, rounded);
  return QvPlatform::DoubleToText(rounded == 0 ? 0 : rounded);
}

}  // namespace

bool IsGrid(const GridExtents& extents) {
  return extents.CellEastWest > 0 && extents.CellNorthSouth > 0 && extents.West <= extents.East &&
         extents.South <= extents.North;
}

std::optional<GridCounts> CountNodes(const GridExtents& extents) {
  if (!IsGrid(extents)) return std::nullopt;
  const GridCounts counts{NodesAlong(extents.West, extents.East, extents.CellEastWest),
                          NodesAlong(extents.South, extents.North, extents.CellNorthSouth)};
  constexpr auto kMostNodes = std::numeric_limits<std::ptrdiff_t>::max() / sizeof(double);
  if (counts.x == 0 || counts.y == 0 || counts.x > kMostNodes / counts.y) return std::nullopt;
  return counts;
}

GridExtents ExtentsOf(const THeightTable& table) {
  return {table.West(), table.East(), table.South(), table.North(), table.CellX, table.CellY};
}

std::optional<GridExtents> ParseExtents(const TShell2DTableExtents& texts) {
  GridExtents extents;
  const auto read = [](const std::string& text, double* value) {
    return QvPlatform::TextToDouble(text, value);
  };
  const bool areNumbers = read(texts.West, &extents.West) && read(texts.East, &extents.East) &&
                          read(texts.South, &extents.South) && read(texts.North, &extents.North) &&
                          read(texts.CellEastWest, &extents.CellEastWest) &&
                          read(texts.CellNorthSouth, &extents.CellNorthSouth);
  return areNumbers && IsGrid(extents) ? std::optional(extents) : std::nullopt;
}

TShell2DTableExtents FormatExtents(const GridExtents& extents, int digits) {
  const auto text = [digits](double value) { return Rounded(value, digits); };
  return {text(extents.West),  text(extents.East),         text(extents.South),
          text(extents.North), text(extents.CellEastWest), text(extents.CellNorthSouth)};
}

}  // namespace QvRefSystem
