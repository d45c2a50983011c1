#include "vertical/raster_palette.h"

#include <cstddef>

namespace QvCommonUtils {
namespace {

// A channel of the colour palette for t from 0 to 1: a t (t - 1) + b on either side of a limit.
struct Channel {
  double limit;
  double belowA, belowB;
  double aboveA, aboveB;

  [[nodiscard]] std::uint8_t At(double t) const {
    const double value = t < limit ? belowA * t * (t - 1) + belowB : aboveA * t * (t - 1) + aboveB;
    return static_cast<std::uint8_t>(value * 256);
  }
};
constexpr Channel kRed{0.5, -3.92, 0, -1.56, 0.59};
constexpr Channel kGreen{0.5, -3.0, 0.23, -3.67, 0.063};

// The blue channel falls in a straight line.
std::uint8_t Blue(double t) {
  return static_cast<std::uint8_t>((t < 0.25 ? 0.16 - 0.64 * t : 0.0) * 256);
}

template <typename ColourOf>
RasterPalette MakePalette(ColourOf colourOf) {
  RasterPalette palette;
  for (std::size_t n = 0; n < palette.size(); ++n)
    palette[n] = colourOf(n);
  return palette;
}

}  // namespace

const RasterPalette& ColourPalette() {
  static const RasterPalette palette = MakePalette([](std::size_t n) {
    const double t = static_cast<double>(n) / 255;
    return PaletteColour{kRed.At(t), kGreen.At(t), Blue(t)};
  });
  return palette;
}

const RasterPalette& GrayscalePalette() {
  static const RasterPalette palette = MakePalette([](std::size_t n) {
    const auto level = static_cast<std::uint8_t>(n);
    return PaletteColour{level, level, level};
  });
  return palette;
}

}  // namespace QvCommonUtils
