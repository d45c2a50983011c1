#include "platform/data/string_tree_values.h"

#include <locale.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <limits>
#include <optional>
#include <stdexcept>

namespace QvCommonUtils {

namespace {

/// A printf format with one conversion of a double.
struct NumberFormat {
  char conversion = 'g';
  /// -1: none given.
  int precision = -1;
  /// Nothing but the precision and the conversion: std::to_chars gives the same text, faster.
  bool isBare = true;
};

/// The digits at `*at`, of at most three places, or nothing for more.
std::optional<int> TakeNumber(std::string_view format, std::size_t* at) {
  int number = 0;
  const std::size_t begin = *at;
  for (; *at < format.size() && format[*at] >= '0' && format[*at] <= '9'; ++*at) {
    number = number * 10 + (format[*at] - '0');
  }
  if (*at - begin > 3) return std::nullopt;
  return number;
}

/// Skips literal text and "%%" up to the conversion or the end.
void SkipLiteral(std::string_view format, std::size_t* at) {
  while (*at < format.size()) {
    if (format[*at] != '%') {
      ++*at;
    } else if (*at + 1 < format.size() && format[*at + 1] == '%') {
      *at += 2;
    } else {
      return;
    }
  }
}

std::optional<NumberFormat> ParseFormat(std::string_view format) {
  NumberFormat parsed;
  std::size_t at = 0;
  SkipLiteral(format, &at);
  if (at == format.size()) return std::nullopt;
  parsed.isBare = at == 0;
  const std::size_t flags = ++at;
  at = std::min(format.find_first_not_of("-+ #0", at), format.size());
  parsed.isBare = parsed.isBare && at == flags;
  const std::size_t width = at;
  if (!TakeNumber(format, &at)) return std::nullopt;
  parsed.isBare = parsed.isBare && at == width;
  if (at < format.size() && format[at] == '.') {
    const auto precision = TakeNumber(format, &++at);
    if (!precision) return std::nullopt;
    parsed.precision = *precision;
  }
  // For a double "l" says nothing, while "L" would ask for another type.
  if (at < format.size() && format[at] == 'l') ++at;
  if (at == format.size() || std::string_view("eEfFgG").find(format[at]) == std::string_view::npos)
    return std::nullopt;
  parsed.conversion = format[at++];
  parsed.isBare = parsed.isBare && at == format.size() && parsed.conversion >= 'a';
  SkipLiteral(format, &at);
  if (at != format.size()) return std::nullopt;
  return parsed;
}

std::chars_format CharsFormat(char conversion) {
  switch (conversion) {
    case 'e':
      return std::chars_format::scientific;
    case 'f':
      return std::chars_format::fixed;
    default:
      return std::chars_format::general;
  }
}

/// While it lives, the calling thread formats numbers with the decimal point of C.
class CNumericLocale {
 public:
  CNumericLocale() : previous_(uselocale(CLocale())) {}
  CNumericLocale(const CNumericLocale&) = delete;
  CNumericLocale& operator=(const CNumericLocale&) = delete;
  ~CNumericLocale() { uselocale(previous_); }

 private:
  static locale_t CLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
  }
  locale_t previous_;
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
/// `format` has been checked to hold one conversion of a double and nothing else.
std::string PrintNumber(double value, const char* format) {
  const CNumericLocale cLocale;
  const int size = std::snprintf(nullptr, 0, format, value);
  std::string text(static_cast<std::size_t>(std::max(size, 0)), '\0');
  std::snprintf(text.data(), text.size() + 1, format, value);
  return text;
}
#pragma GCC diagnostic pop

}  // namespace

std::string ValueToString(const double& value) {
  return QvPlatform::DoubleToText(value);
}

std::string ValueToString(const double& value, const char* format) {
  const auto parsed = ParseFormat(format);
  if (!parsed)
    throw std::invalid_argument("not a format for one number: \"" + std::string(format) + "\"");
  if (!parsed->isBare) return PrintNumber(value, format);
  // 309 digits before the point, at most 999 behind it.
  char digits[1400];
  constexpr int kDefaultPrecision = 6;
  const auto result =
      std::to_chars(digits, digits + sizeof digits, value, CharsFormat(parsed->conversion),
                    parsed->precision < 0 ? kDefaultPrecision : parsed->precision);
  return {digits, result.ptr};
}

bool ValueFromString(const std::string& text, double* value) {
  return QvPlatform::TextToDouble(text, value);
}

std::vector<std::string> SplitString(const std::string& text, char separator) {
  std::vector<std::string> pieces;
  pieces.reserve(1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), separator)));
  std::size_t begin = 0;
  for (std::size_t end; (end = text.find(separator, begin)) != std::string::npos; begin = end + 1) {
    pieces.push_back(text.substr(begin, end - begin));
  }
  pieces.push_back(text.substr(begin));
  return pieces;
}

void MinValueOfType(double* value) {
  *value = std::numeric_limits<double>::lowest();
}
void MaxValueOfType(double* value) {
  *value = std::numeric_limits<double>::max();
}

}  // namespace QvCommonUtils
