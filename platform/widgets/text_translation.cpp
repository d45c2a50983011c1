#include "platform/widgets/text_translation.h"

#include <QCoreApplication>

#include "platform/widgets/qt_text.h"

// Brings in the resources of a static library, which nothing else refers to.
static void InitTranslations() {
  Q_INIT_RESOURCE(refframe_translations);
}

namespace QvPlatform {

TextTranslation::TextTranslation(const QLocale& locale) {
  InitTranslations();
  if (translator_.load(locale, QStringLiteral("refframe"), QStringLiteral("_"),
                       QStringLiteral(":/refframe/translations"))) {
    QCoreApplication::installTranslator(&translator_);
  }
  SetTextTranslator(
      [](std::string_view source) { return FromQt(Translated(std::string(source).c_str())); });
}

TextTranslation::~TextTranslation() {
  SetTextTranslator({});
}

}  // namespace QvPlatform
