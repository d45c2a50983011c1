#pragma once

#include <QLocale>
#include <QTranslator>

namespace QvPlatform {

/// While it lives, the translation that the library carries for the user's language is among the
/// application's translators, and the catalogue's texts go through them. A language without one
/// leaves the texts as they stand.
class TextTranslation {
 public:
  /// The user's language is that of `locale`; there must be an application.
  explicit TextTranslation(const QLocale& locale = {});
  ~TextTranslation();
  TextTranslation(const TextTranslation&) = delete;
  TextTranslation& operator=(const TextTranslation&) = delete;

 private:
  QTranslator translator_;
};

}  // namespace QvPlatform
