#include "platform/widgets/qt_user_interface.h"

#include "platform/widgets/colour.h"
#include "platform/widgets/qt_text.h"
#include "platform/widgets/text_translation.h"
#include "tests/dialogs/dialog_fixture.h"

namespace refframe_tests {
namespace {

using QvPlatform::MessageAnswer;
using QvPlatform::MessageButtons;
using QvPlatform::MessageKind;
using QvPlatform::QtUserInterface;

TEST(QtUserInterface, AnswersAreThoseOfTheButtons) {
  const struct {
    const char* name;
    MessageKind kind;
    MessageButtons buttons;
    std::function<void(QMessageBox&)> act;
    MessageAnswer answer;
  } rows[] = {
      {"ok", MessageKind::kPlain, MessageButtons::kOk, [](auto& box) { Click(box, "btnOk"); },
       MessageAnswer::kOk},
      {"yes", MessageKind::kConfirmation, MessageButtons::kYesNo,
       [](auto& box) { Click(box, "btnYes"); }, MessageAnswer::kYes},
      {"no", MessageKind::kConfirmation, MessageButtons::kYesNo,
       [](auto& box) { Click(box, "btnNo"); }, MessageAnswer::kNo},
      {"Enter is no", MessageKind::kConfirmation, MessageButtons::kYesNo,
       [](auto& box) { QTest::keyClick(&box, Qt::Key_Return); }, MessageAnswer::kNo},
      {"Esc is no", MessageKind::kConfirmation, MessageButtons::kYesNo,
       [](auto& box) { QTest::keyClick(&box, Qt::Key_Escape); }, MessageAnswer::kNo},
      {"Esc of an error", MessageKind::kError, MessageButtons::kOk,
       [](auto& box) { QTest::keyClick(&box, Qt::Key_Escape); }, MessageAnswer::kOk},
  };
  QtUserInterface ui(nullptr);
  for (const auto& row : rows) {
    ScreenUser user(In<QMessageBox>([&](QMessageBox& box) {
      EXPECT_EQ(box.text(), "<b>Grad</b> & \"Größe\"") << "shown letter by letter";
      EXPECT_EQ(box.textFormat(), Qt::PlainText);
      row.act(box);
    }));
    EXPECT_EQ(ui.ShowMessage(row.kind, "<b>Grad</b> & \"Größe\"", row.buttons), row.answer)
        << row.name;
  }
}

TEST(QtUserInterface, ProgressGoesOnUntilTheUserCancels) {
  QtUserInterface ui(nullptr);
  const auto progress = ui.StartProgress(0, "Conversion", 5);
  QProgressDialog* dialog = nullptr;
  for (QWidget* window : QApplication::topLevelWidgets())
    if (auto* found = qobject_cast<QProgressDialog*>(window)) dialog = found;
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->labelText(), "Conversion");
  EXPECT_EQ(dialog->maximum(), 5);
  EXPECT_TRUE(progress->Next());
  EXPECT_TRUE(progress->Next());
  EXPECT_EQ(dialog->value(), 2);
  dialog->cancel();
  EXPECT_FALSE(progress->Next());
}

TEST(QtUserInterface, WithoutAUsedByListTheRemovalIsRefused) {
  QtUserInterface ui(nullptr);
  EXPECT_EQ(ui.ShowUsedBy(nullptr, {}, true), QvPlatform::UsedByAnswer::kClosed);
}

TEST(Texts, GoThroughTheApplicationsTranslatorsWhileTranslationLives) {
  class Upper : public QTranslator {
   public:
    QString translate(const char* context, const char* source, const char*, int) const override {
      return QString(context) == "refframe" ? QString(source).toUpper() : QString();
    }
    bool isEmpty() const override { return false; }
  } translator;
  QCoreApplication::installTranslator(&translator);
  using QvPlatform::TextId;
  {
    const QvPlatform::TextTranslation translation;
    EXPECT_EQ(QvPlatform::SystemText(TextId::kSelect), "SELECT");
    EXPECT_EQ(QvPlatform::Translated("Close"), "CLOSE");
  }
  EXPECT_EQ(QvPlatform::SystemText(TextId::kSelect), "Select");
  QCoreApplication::removeTranslator(&translator);
}

TEST(Colours, RunFromRedInTheLowByteToBlue) {
  const std::pair<int, QColor> rows[] = {{255, Qt::red},
                                         {0x00FF00, Qt::green},
                                         {0xFF0000, Qt::blue},
                                         {0x336699, QColor(0x99, 0x66, 0x33)}};
  for (const auto& [value, colour] : rows) {
    EXPECT_EQ(QvPlatform::ColourFromBgr(value), colour);
    EXPECT_EQ(QvPlatform::BgrFromColour(colour), value);
  }
}

}  // namespace
}  // namespace refframe_tests
