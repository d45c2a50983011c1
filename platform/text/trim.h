#pragma once

#include <string>
#include <string_view>

/// Blanks at the ends of a text. What counts as blank are the space and the control characters
/// (U+0000 to U+0020); a no-break space is a character like any other.
namespace QvPlatform {

/// The part of the text without the blanks at both ends, a view into the same memory.
[[nodiscard]] std::string_view TrimView(std::string_view text);
/// A copy of the text without the blanks at both ends.
[[nodiscard]] std::string Trim(std::string_view text);
/// Whether the text is empty or holds blanks only.
[[nodiscard]] bool IsBlank(std::string_view text);

}  // namespace QvPlatform
