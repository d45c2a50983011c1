// The dialogs in the language of the user.

#include <set>

#include "apps/host/main_window.h"
#include "apps/host/options_dialog.h"
#include "dialogs/heights/offset_report.h"
#include "dialogs/heights/recalculate_grid.h"
#include "dialogs/heights/table_raster_view.h"
#include "dialogs/select/database_manager.h"
#include "dialogs/select/used_by_list.h"
#include "platform/widgets/qt_text.h"
#include "platform/widgets/text_translation.h"
#include "tests/dialogs/dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using QvPlatform::TextId;
using QvPlatform::TextTranslation;

const QLocale kGerman(QLocale::German, QLocale::Germany);

class Translation : public ListTest {};

TEST_F(Translation, AGermanUserMeetsGermanDialogs) {
  const TextTranslation german(kGerman);
  const std::unique_ptr<TformQvRfSelector> selector(GetSelectorFor(nullptr, 3));
  ChooseIn(*selector, [](QWidget& form) {
    EXPECT_EQ(form.windowTitle(), "Auswahl: Ellipsoid");
    EXPECT_EQ(Child<QPushButton>(form, "bitbtnEdit").text(), "&Bearbeiten");
    EXPECT_EQ(Child<QLabel>(form, "lblSearch").text(), "&Suche");
    EXPECT_EQ(Child<QLabel>(form, "lblCount").text(), "Alle 7");
    Search(form, "xyz");
    Click(form, "bitbtnSearchDown");
  });
  EXPECT_EQ(database_.ui.messages, std::vector<std::string>{"„xyz“ nicht gefunden"});
  TStrings lines;
  ASSERT_TRUE(selector->GetInfo(&lines));
  EXPECT_TRUE(lines.at(1).starts_with("Beschreibung: ")) << "texts of the core";
}

TEST_F(Translation, ALanguageWithoutATranslationLeavesTheTexts) {
  { const TextTranslation german(kGerman); }
  for (const QLocale& locale : {QLocale(QLocale::Icelandic), QLocale::c()}) {
    const TextTranslation translation(locale);
    EXPECT_EQ(QvPlatform::Translated("Warning"), "Warning");
    EXPECT_EQ(QvPlatform::SystemText(TextId::kEllipsoid), "ellipsoid");
  }
}

// Stands behind all other translators and keeps what they have no translation for.
class Gaps : public QTranslator {
 public:
  QString translate(const char* context, const char* source, const char*, int) const override {
    if (std::string_view(context) == "refframe" && *source != '\0') sources.insert(source);
    return {};
  }
  bool isEmpty() const override { return false; }
  mutable std::set<std::string> sources;
};

// What reaches the user by tables and arguments is found here, where no reader of sources sees it.
TEST_F(Translation, NoTextOfAnyDialogIsLeftWithoutATranslation) {
  Gaps gaps;
  QCoreApplication::installTranslator(&gaps);
  {
    const TextTranslation german(kGerman);
    TQvGeoRefFrameDialogOptions options;
    TformGeoRefFrameDatabaseManager manager(nullptr);
    manager.Fill(&options);
    for (auto* selector : manager.findChildren<TformQvRfSelector*>()) {
      selector->SetDialogMode(true, false);
      selector->UpdateEditButtons();
    }
    const TformQvRfUsedByList list(nullptr);
    const TformQvRfTableRasterView rasterView(nullptr);
    const TformQvRfOffsetApproximationReport report(nullptr);
    const TformQvRfRecalculateGridParams grid(nullptr, DialogChooser());
    const OptionsDialog hostOptions({}, nullptr);
    TemporaryFolder folder;
    QSettings settings(QString::fromStdString(folder.Path("settings.ini")), QSettings::IniFormat);
    const MainWindow window(settings, database_.ui);
    const auto actions = window.findChildren<QAction*>();
    EXPECT_TRUE(std::ranges::any_of(
        actions, [](const QAction* action) { return action->text() == "Baum ö&ffnen..."; }));
  }
  QCoreApplication::removeTranslator(&gaps);
  std::string missing;
  for (const std::string& source : gaps.sources)
    missing += source + "\n";
  EXPECT_EQ(missing, "");
}

}  // namespace
}  // namespace refframe_tests
