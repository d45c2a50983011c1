#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "platform/ui/texts.h"

/// Between the core's UTF-8 texts and those of the widgets.
namespace QvPlatform {

[[nodiscard]] inline QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
[[nodiscard]] inline std::string FromQt(const QString& text) {
  return text.toStdString();
}

/// A text of the widgets themselves in the user's language. All texts of the system share one
/// translation context, "refframe".
[[nodiscard]] QString Translated(const char* source);
/// A text of the catalogue in the user's language.
[[nodiscard]] QString SystemQText(TextId id);

/// While it lives, the catalogue's texts go through the application's translators.
class TTextTranslation {
 public:
  TTextTranslation();
  ~TTextTranslation();
  TTextTranslation(const TTextTranslation&) = delete;
  TTextTranslation& operator=(const TTextTranslation&) = delete;
};

}  // namespace QvPlatform
