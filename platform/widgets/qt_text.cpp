#include "platform/widgets/qt_text.h"

#include <QCoreApplication>

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

TTextTranslation::TTextTranslation() {
  SetTextTranslator([](std::string_view source) {
    return FromQt(QCoreApplication::translate(kContext, std::string(source).c_str()));
  });
}

TTextTranslation::~TTextTranslation() {
  SetTextTranslator({});
}

}  // namespace QvPlatform
