#pragma once

#include <string>
#include <string_view>

/// Texts on one line and between tabs: the four bytes that a line of fields cannot hold.
namespace QvPlatform {

/// The text with tab, line feed, carriage return and backslash as a backslash and the letter "t",
/// "n", "r" or a second backslash.
[[nodiscard]] std::string Encode(std::string_view text);
/// Appends Encode(text) to `out` without a copy between; writers spend their time here.
void AppendEncoded(std::string_view text, std::string* out);
/// The text that Encode was given. An unknown or cut escape stands for itself.
[[nodiscard]] std::string Decode(std::string_view text);

}  // namespace QvPlatform
