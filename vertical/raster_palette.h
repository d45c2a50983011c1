#pragma once

#include <array>
#include <cstdint>

/// The colours of the levels of a raster.
namespace QvCommonUtils {

/// A colour by its channels, 0 dark to 255 light.
struct PaletteColour {
  /// The red channel.
  std::uint8_t Red = 0;
  /// The green channel.
  std::uint8_t Green = 0;
  /// The blue channel.
  std::uint8_t Blue = 0;
  bool operator==(const PaletteColour&) const = default;
};

/// The colours of the levels 0 to 255.
using RasterPalette = std::array<PaletteColour, 256>;

/// From dark blue-green over light tones to red. Saved images always have it. Safe to call from
/// several threads.
[[nodiscard]] const RasterPalette& ColourPalette();
/// From black to white. Safe to call from several threads.
[[nodiscard]] const RasterPalette& GrayscalePalette();

}  // namespace QvCommonUtils
