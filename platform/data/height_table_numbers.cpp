#include "platform/data/height_table_numbers.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace QvRefSystem::detail {

namespace {

using Word = std::uint64_t;

/// The byte in all eight places of a word.
constexpr Word Bytes(unsigned char byte) {
  return Word{0x0101010101010101} * byte;
}

constexpr std::array<bool, 256> kIsSeparator = [] {
  std::array<bool, 256> result{};
  for (const char c : {' ', '\t', '\n', '\r'})
    result[static_cast<unsigned char>(c)] = true;
  return result;
}();

/// Powers of ten that a double holds exactly. An integer below 2^53 divided by one of them is the
/// double nearest to the decimal number, since the division is rounded once.
constexpr std::array<double, 16> kPowersOfTen = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
/// 10^15 lies below 2^53.
constexpr int kExactDigits = 15;

/// The text's first byte in the lowest place.
Word Load(const char* text) {
  Word word = 0;
  std::memcpy(&word, text, sizeof word);
  if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
  return word;
}

/// The place of the first byte marked by its highest bit.
int FirstPlace(Word marks) {
  return std::countr_zero(marks) / 8;
}

double WithSign(double magnitude, bool negative) {
  return std::bit_cast<double>(std::bit_cast<Word>(magnitude) | (Word{negative} << 63));
}

/// The number of eight decimal digits, each in its byte, the first digit in the lowest one: pairs
/// are joined into numbers below 100, those into numbers below 10^4, and those into the result.
std::uint32_t JoinDigits(Word digits) {
  digits = digits * 10 + (digits >> 8);
  constexpr Word kPairs = 0x000000FF000000FF;
  constexpr Word kUpperFactors = 100 + (Word{1000000} << 32);
  constexpr Word kLowerFactors = 1 + (Word{10000} << 32);
  return static_cast<std::uint32_t>(
      ((digits & kPairs) * kUpperFactors + ((digits >> 16) & kPairs) * kLowerFactors) >> 32);
}

/// Reads the first `length` bytes of a word, 8 at most, as an optional "-", digits and one point.
/// False for any other form.
bool ReadPointed(Word word, int length, double* value) {
  const bool negative = (word & 0xFF) == '-';
  word >>= 8 * static_cast<int>(negative);
  length -= static_cast<int>(negative);
  const Word noPoint = word ^ Bytes('.');
  const Word points = (noPoint - Bytes(1)) & ~noPoint & Bytes(0x80);
  const int wholeDigits = FirstPlace(points);
  if (points == 0 || wholeDigits >= length || length < 2) return false;
  // Close the gap that the point leaves, and move the digits up to the end of the word, where they
  // are the last ones of eight.
  const Word whole = (Word{1} << (8 * wholeDigits)) - 1;
  const int unused = 8 * (9 - length);
  const Word digits =
      (((word & whole) | ((word >> 8) & ~whole)) << unused) - (Bytes('0') << unused);
  if (((digits | (digits + Bytes(0x80 - 10))) & Bytes(0x80)) != 0) return false;
  const double power = kPowersOfTen[static_cast<std::size_t>(length - 1 - wholeDigits)];
  *value = WithSign(JoinDigits(digits) / power, negative);
  return true;
}

/// Reads a token of plain notation with few enough digits. False for any other.
bool ReadPlain(std::string_view token, double* value) {
  const bool negative = !token.empty() && token.front() == '-';
  if (negative) token.remove_prefix(1);
  std::uint64_t number = 0;
  int digits = 0;
  std::size_t point = token.size();
  for (std::size_t i = 0; i < token.size(); ++i) {
    const auto digit = static_cast<unsigned>(token[i] - '0');
    if (digit <= 9) {
      number = number * 10 + digit;
      if (++digits > kExactDigits) return false;
    } else if (token[i] == '.' && point == token.size()) {
      point = i;
    } else {
      return false;
    }
  }
  if (digits == 0) return false;
  const std::size_t decimals = point == token.size() ? 0 : token.size() - point - 1;
  *value = WithSign(static_cast<double>(number) / kPowersOfTen[decimals], negative);
  return true;
}

/// Three digits each: ".000" to ".999".
constexpr std::array<std::array<char, 4>, 1000> kDecimals = [] {
  std::array<std::array<char, 4>, 1000> result{};
  for (int i = 0; i < 1000; ++i) {
    result[static_cast<std::size_t>(i)] = {'.', static_cast<char>('0' + i / 100),
                                           static_cast<char>('0' + i / 10 % 10),
                                           static_cast<char>('0' + i % 10)};
  }
  return result;
}();

/// Digits without leading zeros, and in the last place how many.
constexpr std::array<std::array<char, 4>, 1000> kLeading = [] {
  std::array<std::array<char, 4>, 1000> result{};
  for (std::size_t i = 0; i < 1000; ++i) {
    const std::size_t count = i < 10 ? 1 : i < 100 ? 2 : 3;
    for (std::size_t digit = 0; digit < count; ++digit)
      result[i][digit] = kDecimals[i][4 - count + digit];
    result[i][3] = static_cast<char>(count);
  }
  return result;
}();

char* WriteLeading(std::uint32_t group, char* out) {
  std::memcpy(out, kLeading[group].data(), 4);
  return out + kLeading[group][3];
}

char* WriteGroup(std::uint32_t group, char* out) {
  std::memcpy(out, kDecimals[group].data() + 1, 3);
  return out + 3;
}

/// A whole number below 10^9.
char* WriteWhole(std::uint32_t number, char* out) {
  if (number < 1000) return WriteLeading(number, out);
  if (number < 1000000) return WriteGroup(number % 1000, WriteLeading(number / 1000, out));
  out = WriteLeading(number / 1000000, out);
  return WriteGroup(number % 1000, WriteGroup(number / 1000 % 1000, out));
}

/// The whole number nearest to the exact value of 1000 times the magnitude, which must be below
/// 10^9; a tie goes to the even one.
std::uint64_t Thousandths(double magnitude) {
  constexpr double kTwo52 = 0x1p52;
  constexpr std::uint64_t kMantissa = (std::uint64_t{1} << 52) - 1;
  const double product = magnitude * 1000;
  // From 2^52 on doubles are whole numbers, so that the sum is rounded to one.
  const double shifted = product + kTwo52;
  std::uint64_t number = std::bit_cast<std::uint64_t>(shifted) & kMantissa;
  const double rest = product - (shifted - kTwo52);
  if (std::fabs(rest) == 0.5) [[unlikely]] {
    // The product lies half way, perhaps by its own rounding alone. Anything less than half way
    // lies one step of the product or more from it, and its rounding cannot matter.
    const double lost = std::fma(magnitude, 1000.0, -product);
    if (rest > 0 && lost > 0) ++number;
    if (rest < 0 && lost < 0) --number;
  }
  return number;
}

}  // namespace

char* WriteThreeDecimals(double value, char* out) {
  const double magnitude = std::fabs(value);
  if (!(magnitude < 999999999.0)) [[unlikely]] {
    return std::to_chars(out, out + kThreeDecimalsSpace, value, std::chars_format::fixed, 3).ptr;
  }
  const std::uint64_t number = Thousandths(magnitude);
  *out = '-';
  out += static_cast<int>(std::signbit(value));
  out = WriteWhole(static_cast<std::uint32_t>(number / 1000), out);
  std::memcpy(out, kDecimals[number % 1000].data(), 4);
  return out + 4;
}

char* WriteThreeDecimals(const double* values, std::size_t count, char* out) {
  for (std::size_t i = 0; i < count; ++i) {
    out = WriteThreeDecimals(values[i], out);
    *out++ = '\t';
  }
  return out;
}

bool IsSeparator(char c) {
  return kIsSeparator[static_cast<unsigned char>(c)];
}

bool ReadNumber(std::string_view token, double* value) {
  if (ReadPlain(token, value)) return true;
  if (token.size() > 1 && token.front() == '+' && token[1] != '-') token.remove_prefix(1);
  double number = 0;
  const char* end = token.data() + token.size();
  const auto [stop, error] = std::from_chars(token.data(), end, number);
  if (error != std::errc() || stop != end || !std::isfinite(number)) return false;
  *value = number;
  return true;
}

void TokenReader::SkipSeparators() {
  while (next_ != end_ && IsSeparator(*next_))
    ++next_;
}

bool TokenReader::ReadAny(double* value) {
  SkipSeparators();
  const char* tokenEnd = next_;
  while (tokenEnd != end_ && !IsSeparator(*tokenEnd))
    ++tokenEnd;
  if (!ReadNumber({next_, static_cast<std::size_t>(tokenEnd - next_)}, value)) return false;
  next_ = tokenEnd;
  return true;
}

/// Reads tokens of up to eight bytes with a point as long as they follow each other, eight bytes at
/// a time. Returns the end of the values read.
double* TokenReader::ReadUsual(double* values, const double* valuesEnd) {
  // A token is at most eight bytes, a separator, and the first byte of what follows.
  constexpr std::ptrdiff_t kAhead = 16;
  const char* next = next_;
  while (values != valuesEnd && end_ - next >= kAhead) {
    const Word word = Load(next);
    // Marks at least the first byte that is a blank or a control character.
    const Word ends = (word - Bytes(0x21)) & ~word & Bytes(0x80);
    const int length = ends == 0 ? 8 : FirstPlace(ends);
    if (!IsSeparator(next[length]) || !ReadPointed(word, length, values)) break;
    ++values;
    next += length + 1;
    while (next != end_ && IsSeparator(*next))
      ++next;
  }
  next_ = next;
  return values;
}

bool TokenReader::Read(double* values, std::size_t count) {
  const double* valuesEnd = values + count;
  while (values != valuesEnd) {
    SkipSeparators();
    values = ReadUsual(values, valuesEnd);
    if (values == valuesEnd) break;
    if (!ReadAny(values)) return false;
    ++values;
  }
  return true;
}

}  // namespace QvRefSystem::detail
