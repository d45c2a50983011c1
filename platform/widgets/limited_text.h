#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>
#include <string>
#include <string_view>

/// Controls for texts of a limited length. The limit holds for typing: a longer text that stands in
/// a record already shows whole and can be shortened, and only not be made longer. What does not
/// fit is not taken at all, rather than cut, and the user is told.
namespace QvPlatform {

/// A text as it was put into a control, so that one which the user leaves alone comes back byte for
/// byte, whatever a control makes of line ends or malformed characters.
class KeptText {
 public:
  /// Keeps `text`, which the control now shows as `shown`.
  void Keep(std::string_view text, const QString& shown);
  /// The text behind what the control shows now: the kept one as long as it shows unchanged.
  [[nodiscard]] std::string Read(const QString& shown) const;

 private:
  std::string text_;
  QString shown_;
};

/// One line of text.
class LimitedLine final : public QLineEdit {
  Q_OBJECT

 public:
  /// An empty line without a limit.
  explicit LimitedLine(QWidget* parent);
  /// The greatest length that can be typed, in characters; 0 for no limit.
  void SetLimit(int characters) { limit_ = characters; }
  /// Shows a UTF-8 text whole, also one beyond the limit.
  void SetText(std::string_view text);
  /// What the line holds, in UTF-8; a text that nobody has changed comes back byte for byte.
  [[nodiscard]] std::string Text() const { return kept_.Read(text()); }
  /// Room for a number of many digits.
  [[nodiscard]] QSize minimumSizeHint() const override;

 private:
  int limit_ = 0;
  KeptText kept_;
};

/// A text of several lines.
class LimitedMemo final : public QPlainTextEdit {
  Q_OBJECT

 public:
  /// An empty memo without a limit.
  explicit LimitedMemo(QWidget* parent);
  /// The greatest length that can be typed, in characters; 0 for no limit.
  void SetLimit(int characters) { limit_ = characters; }
  /// Shows a UTF-8 text whole, also one beyond the limit.
  void SetText(std::string_view text);
  /// What the memo holds, in UTF-8; a text that nobody has changed comes back byte for byte.
  [[nodiscard]] std::string Text() const { return kept_.Read(toPlainText()); }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void insertFromMimeData(const QMimeData* source) override;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 private:
  /// Whether a text may take the place of the selection; tells the user if not.
  [[nodiscard]] bool Fits(const QString& inserted);
  int limit_ = 0;
  KeptText kept_;
};

}  // namespace QvPlatform
