#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Text as the whole system treats it: UTF-8 everywhere, case and order by the user's locale
/// (ICU), numbers in the C notation whatever the process locale says, but for the few that a user
/// reads and types in the notation of his own.
namespace QvPlatform {

/// Without the blanks and control characters (U+0000 to U+0020) at both ends.
[[nodiscard]] std::string_view TrimView(std::string_view text);
[[nodiscard]] std::string Trim(std::string_view text);
[[nodiscard]] bool IsBlank(std::string_view text);

/// Upper case by the rules of the user's locale. Malformed UTF-8 becomes U+FFFD.
[[nodiscard]] std::string UpperCase(std::string_view text);
/// The form in which names are compared: upper case of the trimmed text.
[[nodiscard]] std::string FoldName(std::string_view text);

/// Bytes whose memcmp order is the collation order of the texts under the user's locale.
[[nodiscard]] std::string CollationKey(std::string_view text);

/// What parts the whole from the fraction of a number in the user's locale; a decimal comma, say.
[[nodiscard]] std::string DecimalSeparator();
/// DoubleToText with the decimal separator of the user's locale.
[[nodiscard]] std::string DoubleToUserText(double value);
/// Reads what TextToDouble reads, with the decimal separator of the user's locale and no other.
/// Thousands are not parted: a point or comma in the wrong place must not make another number.
[[nodiscard]] bool UserTextToDouble(std::string_view text, double* out);

/// Sets the locale of UpperCase, CollationKey and the user's numbers by its BCP 47 or POSIX name
/// ("" is the environment's). For hosts that know their user better, and for tests. Not
/// thread-safe.
void SetUserLocale(const std::string& name);
/// Changes whenever SetUserLocale does; what was made under another number may be out of order.
[[nodiscard]] unsigned UserLocaleVersion();

/// The fewest digits that read back as the same double, in plain notation from 1e-7 up to below
/// 1e16 and with an exponent beyond. "inf", "-inf" and "nan" as such.
[[nodiscard]] std::string DoubleToText(double value);
/// Reads the whole trimmed text as a finite double in C notation; `out` is unchanged on failure.
/// A number too great or too small for a double is a failure.
[[nodiscard]] bool TextToDouble(std::string_view text, double* out);
/// Reads the whole trimmed text as a 32-bit integer; `out` is unchanged on failure.
[[nodiscard]] bool TextToInteger(std::string_view text, int* out);
[[nodiscard]] bool TextToInteger64(std::string_view text, std::int64_t* out);

/// Escapes tab, line feed, carriage return and backslash by a backslash and one letter or itself.
[[nodiscard]] std::string Encode(std::string_view text);
/// Appends Encode(text) to `out`; the hot path of writers.
void AppendEncoded(std::string_view text, std::string* out);
/// Undoes Encode. An unknown or cut escape stands for itself.
[[nodiscard]] std::string Decode(std::string_view text);

/// Whether the text is well-formed UTF-8.
[[nodiscard]] bool IsUtf8(std::string_view text);

/// Current moment as days since 1899-12-30 00:00 local time, the day count of LAST_USE fields.
[[nodiscard]] double CurrentMoment();

}  // namespace QvPlatform
