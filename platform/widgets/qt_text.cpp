#include "platform/widgets/qt_text.h"

#include <QCoreApplication>

// Brings in the resources of a static library, which nothing else refers to.
static void InitTranslations() {
  Q_INIT_RESOURCE(refframe_translations);
}

namespace QvPlatform {
namespace {
constexpr char kContext[] = "refframe";
}

QString Translated(const char* source) {
  return QCoreApplication::translate(kContext, source);
}

QString SystemQText(TextId id) {
  return ToQt(SystemText(id));
}

TextTranslation::TextTranslation(const QLocale& locale) {
  InitTranslations();
  if (translator_.load(locale, QStringLiteral("refframe"), QStringLiteral("_"),
                       QStringLiteral(":/refframe/translations"))) {
    QCoreApplication::installTranslator(&translator_);
  }
  SetTextTranslator([](std::string_view source) {
    return FromQt(QCoreApplication::translate(kContext, std::string(source).c_str()));
  });
}

TextTranslation::~TextTranslation() {
  SetTextTranslator({});
}

}  // namespace QvPlatform
