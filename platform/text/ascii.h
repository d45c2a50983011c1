#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// Letters and digits of ASCII alone, for names and notations that no language changes.
namespace QvPlatform {

/// The letter in lower case if it is one of "A" to "Z", else the byte as it is.
[[nodiscard]] constexpr char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The text with the letters "A" to "Z" in lower case.
[[nodiscard]] inline std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& c : lower)
    c = LowerAscii(c);
  return lower;
}

/// Whether the texts are equal without regard to the case of the letters "a" to "z".
[[nodiscard]] inline bool EqualAscii(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return LowerAscii(c); };
  return std::ranges::equal(a, b, {}, lower, lower);
}

/// The value of a hexadecimal digit in either case, from 0 to 15; -1 for any other byte.
[[nodiscard]] constexpr int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char letter = LowerAscii(c);
  return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

}  // namespace QvPlatform
