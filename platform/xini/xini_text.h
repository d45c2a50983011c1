#pragma once

#include <optional>
#include <string>
#include <string_view>

/// How an item's value stands in the document. See xini.h for the rule.
namespace QvPlatform::detail {

/// Appends the value with both escapings, that of items and that of XML.
void AppendItemText(std::string_view value, std::string* out);

/// Resolves the five entities and the character references of XML. Nothing for any other
/// reference, and for one to a character that XML does not allow.
[[nodiscard]] std::optional<std::string> ResolveReferences(std::string_view text);

/// Undoes the item escaping. A backslash without two hexadecimal digits stands for itself, or
/// gives nothing if `strict`.
[[nodiscard]] std::optional<std::string> UnescapeItem(std::string_view text, bool strict);

}  // namespace QvPlatform::detail
