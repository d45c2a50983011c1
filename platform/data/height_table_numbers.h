#pragma once

#include <cstddef>
#include <string_view>

/// Numbers of height files, exact and in the C notation whatever the process locale says.
namespace QvRefSystem::detail {

/// Room that WriteThreeDecimals may need: a sign, the 309 digits of the greatest double, a point
/// and three decimals.
constexpr std::size_t kThreeDecimalsSpace = 1 + 309 + 1 + 3;

/// What printf makes of "%.3lf" in the C locale: the three decimals nearest to the exact value of
/// the double, a tie going to the even one. Returns the end of what it wrote.
char* WriteThreeDecimals(double value, char* out);
/// The same for a run of values with a tab behind each.
char* WriteThreeDecimals(const double* values, std::size_t count, char* out);

/// Blank, tab, line feed and carriage return.
[[nodiscard]] bool IsSeparator(char c);

/// A whole token as the nearest double: what std::from_chars reads, and the same behind one "+".
/// The notations of infinity and NaN, and numbers beyond the range of a double, are refused;
/// `value` is unchanged then.
[[nodiscard]] bool ReadNumber(std::string_view token, double* value);

/// Reads tokens one behind the other.
class TokenReader {
 public:
  /// Begins with the first byte of a text, which must outlive the reader.
  explicit TokenReader(std::string_view text)
      : next_(text.data()), end_(text.data() + text.size()) {}

  /// Reads that many numbers. False at a token that is none, and if the text ends before.
  [[nodiscard]] bool Read(double* values, std::size_t count);
  /// How many bytes are not read yet.
  [[nodiscard]] std::size_t Rest() const { return static_cast<std::size_t>(end_ - next_); }

 private:
  void SkipSeparators();
  [[nodiscard]] bool ReadAny(double* value);
  double* ReadUsual(double* values, const double* valuesEnd);

  const char* next_;
  const char* end_;
};

}  // namespace QvRefSystem::detail
