#pragma once

#include <string>
#include <string_view>

/// Case, order and numbers as the user's language has them, by ICU. The locale is one for the whole
/// process and is not to be set while another thread reads it. Texts are UTF-8; one longer than a
/// third of the range of a 32-bit integer throws std::length_error, a failure of ICU
/// std::runtime_error.
namespace QvPlatform {

/// The text in upper case. Malformed bytes become U+FFFD.
[[nodiscard]] std::string UpperCase(std::string_view text);
/// The form in which names are compared: upper case of the trimmed text.
[[nodiscard]] std::string FoldName(std::string_view text);

/// Bytes whose memcmp order is the collation order of the texts.
[[nodiscard]] std::string CollationKey(std::string_view text);

/// What parts the whole from the fraction of a number, such as a decimal comma.
[[nodiscard]] std::string DecimalSeparator();
/// DoubleToText with the decimal separator of the user.
[[nodiscard]] std::string DoubleToUserText(double value);
/// Reads what TextToDouble reads, with the decimal separator of the user and no other. Thousands
/// are not parted: a point or comma in the wrong place must not make another number. False, with
/// `out` unchanged, for anything else.
[[nodiscard]] bool UserTextToDouble(std::string_view text, double* out);

/// Sets the user's locale by its BCP 47 or POSIX name; "" is the environment's, and one that ICU
/// does not know stands for the root locale. For hosts that know their user better, and for tests.
void SetUserLocale(const std::string& name);
/// A number that each SetUserLocale changes; what was made under another may be out of order.
[[nodiscard]] unsigned UserLocaleVersion();

/// Whether the text is well-formed UTF-8.
[[nodiscard]] bool IsUtf8(std::string_view text);

}  // namespace QvPlatform
