#include "platform/widgets/qt_user_interface.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QProgressDialog>

#include "platform/widgets/conflict_box.h"
#include "platform/widgets/qt_text.h"

namespace QvPlatform {
namespace {

struct KindRow {
  QMessageBox::Icon icon;
  const char* title;
};

// In the order of MessageKind.
constexpr KindRow kKinds[] = {{QMessageBox::NoIcon, Translatable("Reference systems")},
                              {QMessageBox::Warning, Translatable("Warning")},
                              {QMessageBox::Critical, Translatable("Error")},
                              {QMessageBox::Question, Translatable("Confirmation")}};

struct ButtonRow {
  QMessageBox::StandardButton button;
  const char* objectName;
  MessageAnswer answer;
};

constexpr ButtonRow kButtons[] = {{QMessageBox::Ok, "btnOk", MessageAnswer::kOk},
                                  {QMessageBox::Yes, "btnYes", MessageAnswer::kYes},
                                  {QMessageBox::No, "btnNo", MessageAnswer::kNo}};

MessageAnswer AnswerOf(int button) {
  for (const ButtonRow& row : kButtons) {
    if (row.button == button) return row.answer;
  }
  return MessageAnswer::kNo;
}

class QtProgress final : public TProgress {
 public:
  QtProgress(const QString& title, int count)
      : dialog_(title, Translated("Cancel"), 0, count, QApplication::activeWindow()) {
    dialog_.setObjectName(QStringLiteral("progress"));
    dialog_.setWindowModality(Qt::ApplicationModal);
    dialog_.setAutoClose(false);
    dialog_.setAutoReset(false);
    // Until it shows, nothing is painted and nothing can be cancelled.
    constexpr int kHalfASecond = 500;
    dialog_.setMinimumDuration(kHalfASecond);
  }
  bool Next() override {
    // A modal progress dialog handles the pending events here, the click on Cancel among them.
    dialog_.setValue(dialog_.value() < 0 ? 1 : dialog_.value() + 1);
    return !dialog_.wasCanceled();
  }
  void SetMax(int count) override { dialog_.setMaximum(count); }

 private:
  QProgressDialog dialog_;
};

}  // namespace

MessageAnswer QtUserInterface::ShowMessage(MessageKind kind, const std::string& text,
                                           MessageButtons buttons) {
  const KindRow& row = kKinds[static_cast<std::size_t>(kind)];
  const bool ask = buttons == MessageButtons::kYesNo;
  QMessageBox box(row.icon, Translated(row.title), ToQt(text),
                  ask ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok,
                  QApplication::activeWindow());
  box.setObjectName(QStringLiteral("messageBox"));
  // Names come from records and files: they are never markup.
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  for (const ButtonRow& button : kButtons) {
    if (auto* widget = box.button(button.button)) widget->setObjectName(button.objectName);
  }
  // What cannot be undone is never the answer to a careless Enter or Esc.
  box.setDefaultButton(ask ? QMessageBox::No : QMessageBox::Ok);
  box.setEscapeButton(ask ? QMessageBox::No : QMessageBox::Ok);
  return AnswerOf(box.exec());
}

ConflictAnswer QtUserInterface::AskConflict(const std::string& name,
                                            std::span<const ConflictRow> rows) {
  ConflictBox box(QApplication::activeWindow(), ToQt(name), rows);
  box.exec();
  return box.Answer();
}

UsedByAnswer QtUserInterface::ShowUsedBy(TComponent* owner, std::span<const UsedByRow> rows,
                                         bool viewAllowed) {
  return showUsedBy_ ? showUsedBy_(owner, rows, viewAllowed) : UsedByAnswer::kClosed;
}

std::unique_ptr<TProgress> QtUserInterface::StartProgress(int /*options*/, const std::string& title,
                                                          int count) {
  return std::make_unique<QtProgress>(ToQt(title), count);
}

}  // namespace QvPlatform
