#include "platform/widgets/limited_text.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QTextCursor>
#include <QToolTip>
#include <QValidator>
#include <functional>

#include "platform/widgets/qt_text.h"

namespace QvPlatform {
namespace {

void TellLimit(QWidget* control, int limit) {
  QToolTip::showText(control->mapToGlobal(QPoint(0, control->height())),
                     Translated("At most %1 characters can be typed here").arg(limit), control);
}

// A change is good if it ends within the limit, or does not make what stands already longer.
class LengthValidator final : public QValidator {
 public:
  LengthValidator(QLineEdit* line, const int* limit) : QValidator(line), limit_(*limit) {
    connect(line, &QLineEdit::textChanged, this,
            [this](const QString& text) { length_ = text.size(); });
  }
  State validate(QString& input, int& /*position*/) const override {
    const bool fits = limit_ == 0 || input.size() <= limit_ || input.size() <= length_;
    return fits ? Acceptable : Invalid;
  }

 private:
  const int& limit_;
  qsizetype length_ = 0;
};

}  // namespace

void KeptText::Keep(std::string_view text, const QString& shown) {
  text_ = text;
  shown_ = shown;
}

std::string KeptText::Read(const QString& shown) const {
  return shown == shown_ ? text_ : FromQt(shown);
}

LimitedLine::LimitedLine(QWidget* parent) : QLineEdit(parent) {
  setValidator(new LengthValidator(this, &limit_));
  connect(this, &QLineEdit::inputRejected, this, [this] { TellLimit(this, limit_); });
}

void LimitedLine::SetText(std::string_view text) {
  // The validator holds against what the user does, not against the program.
  const int limit = std::exchange(limit_, 0);
  setText(ToQt(text));
  limit_ = limit;
  setCursorPosition(0);
  kept_.Keep(text, this->text());
}

QSize LimitedLine::minimumSizeHint() const {
  constexpr int kDigits = 13;
  const QSize least = QLineEdit::minimumSizeHint();
  return {least.width() + fontMetrics().horizontalAdvance(u'0') * kDigits, least.height()};
}

LimitedMemo::LimitedMemo(QWidget* parent) : QPlainTextEdit(parent) {
  setTabChangesFocus(true);
}

void LimitedMemo::SetText(std::string_view text) {
  setPlainText(ToQt(text));
  kept_.Keep(text, toPlainText());
}

bool LimitedMemo::Fits(const QString& inserted) {
  const qsizetype length = toPlainText().size() - textCursor().selectedText().size();
  if (limit_ == 0 || inserted.isEmpty() || length + inserted.size() <= limit_) return true;
  TellLimit(this, limit_);
  return false;
}

void LimitedMemo::keyPressEvent(QKeyEvent* event) {
  const QString text = event->text();
  const bool types =
      !text.isEmpty() && (text.front().isPrint() || text.front() == u'\r' || text.front() == u'\n');
  const bool command = event->modifiers().testFlag(Qt::ControlModifier);
  if (types && !command && !Fits(text)) return;
  QPlainTextEdit::keyPressEvent(event);
}

void LimitedMemo::inputMethodEvent(QInputMethodEvent* event) {
  if (Fits(event->commitString())) QPlainTextEdit::inputMethodEvent(event);
}

void LimitedMemo::insertFromMimeData(const QMimeData* source) {
  if (source->hasText() && Fits(source->text())) QPlainTextEdit::insertFromMimeData(source);
}

QSize LimitedMemo::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 40, fontMetrics().lineSpacing() * 6};
}

QSize LimitedMemo::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * 20, fontMetrics().lineSpacing() * 3};
}

}  // namespace QvPlatform
