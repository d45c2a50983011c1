#include "dialogs/heights/offset_report.h"

#include "dialogs/heights/table_raster_view.h"
#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;

constexpr char kText[] = "Approximation of Alps: RMS error 0.25 m; Max error 1.5 m.";

class OffsetReport : public DialogTest {
 protected:
  bool Run(std::string* text, const Act& act) {
    errors_.Resize(3, 2, 1, 1, 0, 0);
    errors_.Set(1, 1, 1.5);
    TformQvRfOffsetApproximationReport report(nullptr);
    ScreenUser user(In<TformQvRfOffsetApproximationReport>(act));
    *text = "Alps";
    return report.Run("47.125", "m", text, nullptr, &errors_, "1.5", "0.25");
  }
  THeightTable errors_;
};

TEST_F(OffsetReport, ShowsTheNumbersAndTheErrors) {
  std::string text;
  EXPECT_TRUE(Run(&text, [](QWidget& form) {
    const std::pair<const char*, const char*> edits[] = {
        {"edOffsetValue", "47.125"}, {"edAccuracyRms", "0.25"}, {"edAccuracyMax", "1.5"}};
    for (const auto& [name, value] : edits) {
      EXPECT_EQ(TextOf(form, name), value) << name;
      EXPECT_TRUE(Child<QLineEdit>(form, name).isReadOnly()) << name;
    }
    for (const char* name : {"lblOffsetUnit", "lblAccuracyRmsUnit", "lblAccuracyMaxUnit"})
      EXPECT_EQ(TextOf(form, name), "m") << name;
    EXPECT_EQ(TextOf(form, "memoInfoText"), kText);
    EXPECT_FALSE(IsChecked(form, "chboxInfoInsert"));
    Open<TformQvRfTableRasterView>(form, "btnAccuracyViewRaster", Ok);
    EXPECT_EQ(form.findChild<TformQvRfTableRasterView*>(), nullptr) << "gone when closed";
    Click(form, "btnAccept");
  }));
}

TEST_F(OffsetReport, GivesTheTextOnlyIfItIsWantedAndAccepted) {
  const struct {
    const char* name;
    bool insert;
    const char* button;
    const char* typed;
    std::string expected;
  } kRows[] = {
      {"accepted with the text", true, "btnAccept", "", kText},
      {"accepted with a text of the user's", true, "btnAccept", "More. ",
       std::string("More. ") + kText},
      {"accepted without", false, "btnAccept", "More. ", ""},
      {"rejected", true, "btnReject", "More. ", ""},
  };
  for (const auto& row : kRows) {
    std::string text;
    const bool accepted = Run(&text, [&](QWidget& form) {
      QTest::keyClicks(&Child(form, "memoInfoText"), row.typed);
      if (row.insert) Check(form, "chboxInfoInsert");
      Click(form, row.button);
    });
    EXPECT_EQ(accepted, std::string_view(row.button) == "btnAccept") << row.name;
    EXPECT_EQ(text, row.expected) << row.name;
  }
  std::string text;
  EXPECT_FALSE(Run(&text, [](QWidget& form) { form.close(); })) << "by the window frame";
  EXPECT_EQ(text, "");
}

}  // namespace
}  // namespace refframe_tests
