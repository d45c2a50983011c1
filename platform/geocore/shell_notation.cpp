#include "platform/geocore/shell_notation.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <numbers>

namespace QvRefSystem {

std::string DegreesMinutesSeconds(double radians, std::string_view letters) {
  constexpr std::int64_t kParts = 100'000;  // of a second
  const double seconds = std::abs(radians) * (180 * 3600 / std::numbers::pi);
  // What is no angle, or one of thousands of turns, has no such notation.
  if (!(seconds < 1e12)) return "-";
  const std::int64_t parts = std::llround(seconds * static_cast<double>(kParts));
  const std::int64_t whole = parts / kParts;
  char text[64];
  const int size =
      std::snprintf(text, sizeof text, "%lld\u00B0%02lld'%02lld.%05lld\"",
                    static_cast<long long>(whole / 3600), static_cast<long long>(whole / 60 % 60),
                    static_cast<long long>(whole % 60), static_cast<long long>(parts % kParts));
  const bool below = radians < 0 && parts != 0;
  return std::string(text, static_cast<std::size_t>(size)) + letters[below ? 1 : 0];
}

std::string PlainDecimals(double value, double metresPerUnit, double resolution) {
  constexpr int kMostPlaces = 17;
  if (!std::isfinite(value)) return "-";
  const int places = static_cast<int>(std::ceil(std::log10(metresPerUnit / resolution)));
  // The longest double has 309 digits ahead of the point.
  char text[400];
  const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed,
                                 std::clamp(places, 0, kMostPlaces));
  std::string_view result(text, static_cast<std::size_t>(end.ptr - text));
  // Zero has no sign.
  if (result.starts_with('-') && result.find_first_not_of("-0.") == std::string_view::npos) {
    result.remove_prefix(1);
  }
  return std::string(result);
}

}  // namespace QvRefSystem
