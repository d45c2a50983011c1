#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "platform/ui/texts.h"

/// Between the core's UTF-8 texts and those of the widgets.
namespace QvPlatform {

/// The text of UTF-8 bytes; malformed ones become the replacement character.
[[nodiscard]] inline QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
/// The text in UTF-8.
[[nodiscard]] inline std::string FromQt(const QString& text) {
  return text.toStdString();
}

/// A text of the widgets themselves in the user's language. All texts of the system share one
/// translation context, "refframe".
[[nodiscard]] QString Translated(const char* source);
/// Marks a text that reaches Translated through a table or an argument, for those who gather the
/// texts to be translated: they find what stands in quotes within Translated or within this.
[[nodiscard]] constexpr const char* Translatable(const char* source) {
  return source;
}
/// A text of the catalogue in the user's language.
[[nodiscard]] QString SystemQText(TextId id);

}  // namespace QvPlatform
