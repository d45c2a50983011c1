#include "platform/text/numbers.h"

#include <charconv>
#include <cmath>

#include "platform/text/trim.h"

namespace QvPlatform {

namespace {

/// Longest plain notation: sign, "0.", six zeros and 17 digits, or 16 digits before the point.
constexpr std::size_t kNumberSpace = 40;
constexpr double kLeastPlain = 1e-7;
constexpr double kPlainLimit = 1e16;

/// Trimmed, and without one leading "+", which std::from_chars does not take. A sign behind the
/// "+" is left to fail.
std::string_view NumberText(std::string_view text) {
  text = TrimView(text);
  if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
  return text;
}

template <typename Number>
bool ReadNumber(std::string_view text, Number* out) {
  text = NumberText(text);
  Number value{};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) return false;
  *out = value;
  return true;
}

}  // namespace

std::string DoubleToText(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
  const double size = std::fabs(value);
  const bool plain = size == 0 || (size >= kLeastPlain && size < kPlainLimit);
  char buffer[kNumberSpace];
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value,
                    plain ? std::chars_format::fixed : std::chars_format::scientific);
  return {buffer, result.ptr};
}

bool TextToDouble(std::string_view text, double* out) {
  double value = 0;
  if (!ReadNumber(text, &value) || !std::isfinite(value)) return false;
  *out = value;
  return true;
}

bool TextToInteger(std::string_view text, int* out) {
  return ReadNumber(text, out);
}

bool TextToInteger64(std::string_view text, std::int64_t* out) {
  return ReadNumber(text, out);
}

}  // namespace QvPlatform
