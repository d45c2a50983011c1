#include "platform/widgets/qt_text.h"

#include <QCoreApplication>

namespace QvPlatform {

QString Translated(const char* source) {
  return QCoreApplication::translate("refframe", source);
}

QString SystemQText(TextId id) {
  return ToQt(SystemText(id));
}

}  // namespace QvPlatform
