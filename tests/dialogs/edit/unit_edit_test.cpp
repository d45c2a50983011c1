// What the dialogs of units do beside their rows.

#include "platform/text/text.h"
#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;

class UnitEditTest : public EditTest {
 protected:
  ~UnitEditTest() override { QvPlatform::SetUserLocale("en-US"); }
  static void Fill(QWidget& dialog, const std::string& name, const char* b, const char* c) {
    Type(dialog, "edName", name);
    Type(dialog, "edFactorB", b);
    Type(dialog, "edFactorC", c);
    Save(dialog);
  }
};

TEST_F(UnitEditTest, NumbersAreReadInTheNotationOfTheUser) {
  const struct {
    const char* locale;
    const char* text;
    const char* stored;  // "" if refused
  } rows[] = {{"en-US", "1.5", "1.5"},    {"en-US", "1,5", ""},     {"de-DE", "1,5", "1.5"},
              {"de-DE", "1.5", ""},       {"de-DE", "1.000,5", ""}, {"en-US", "1,000.5", ""},
              {"de-DE", "-2e3", "-2000"}, {"en-US", "0.0", ""},     {"en-US", "", ""}};
  for (const auto& row : rows) {
    QvPlatform::SetUserLocale(row.locale);
    const bool saved = Make(kLinearUnitForm, [&](QWidget& dialog) {
      Fill(dialog, "unit", row.text, "1");
      if (!dialog.isVisible()) return;
      EXPECT_EQ(RefusedControls(dialog, kLinearUnitForm), "edFactorB") << row.text;
    });
    EXPECT_EQ(saved, *row.stored != 0) << row.locale << " " << row.text;
    if (!saved) continue;
    EXPECT_EQ(TextOfField(kLinearUnitForm, "FACTOR_B"), row.stored);
    Change(kLinearUnitForm, [&](QWidget& dialog) {
      const std::string shown = std::string(row.text) == "-2e3" ? "-2000" : row.text;
      EXPECT_EQ(TextOf(dialog, "edFactorB"), shown) << row.locale;
    });
  }
}

TEST_F(UnitEditTest, AFactorThatIsLeftAloneKeepsItsLastBit) {
  const double foot = 1200.0 / 3937.0;
  AddValid(kLinearUnitForm, "US foot", {{"FACTOR_B", "0.3048006096012192"}});
  EXPECT_TRUE(Change(kLinearUnitForm, Save));
  EXPECT_EQ(Table(kLinearUnitForm).FieldByName("FACTOR_B").AsFloat(), foot);
}

TEST_F(UnitEditTest, AnEmptyAbbreviationBecomesTheName) {
  const auto typeAndLeave = [](QWidget& dialog, const char* control, const char* text) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    Type(dialog, control, text);
    Press(dialog, control, Qt::Key_Tab);
  };
  EXPECT_TRUE(Make(kScaleUnitForm, [&](QWidget& dialog) {
    EXPECT_EQ(TextOf(dialog, "lblBaseUnitAbbreviation"), "1");
    typeAndLeave(dialog, "edName", " per mille ");
    EXPECT_EQ(TextOf(dialog, "lblThisUnitAbbreviation"), "per mille");
    Fill(dialog, " per mille ", "0.001", "1");
  }));
  EXPECT_EQ(TextOfField(kScaleUnitForm, "ABBREVIATION"), " per mille ");
  Change(kScaleUnitForm, [&](QWidget& dialog) {
    EXPECT_EQ(TextOf(dialog, "edAbbreviation"), " per mille ");
    typeAndLeave(dialog, "edAbbreviation", "pm");
    EXPECT_EQ(TextOf(dialog, "lblThisUnitAbbreviation"), "pm");
  });
}

TEST_F(UnitEditTest, TheFactorsOfAnAngularUnitAreLockedByItsCode) {
  const auto enabled = [](QWidget& dialog) {
    return IsEnabled(dialog, "edFactorB") && IsEnabled(dialog, "edFactorC");
  };
  for (const auto* form : {&kLinearUnitForm, &kAngularUnitForm}) {
    for (const char* code : {"0", "1"}) {
      AddValid(*form, "Delivered", {{"CODE", code}});
      EXPECT_TRUE(Change(*form, [&](QWidget& dialog) {
        EXPECT_EQ(enabled(dialog), form != &kAngularUnitForm || *code == '0');
        Type(dialog, "edName", "Renamed");
        Save(dialog);
      }));
      EXPECT_EQ(Record(*form, {"NAME", "FACTOR_B", "CODE"}),
                std::string("NAME=Renamed FACTOR_B=2.5 CODE=") + code);
    }
  }
  EXPECT_TRUE(Make(kAngularUnitForm, [&](QWidget& dialog) {
    EXPECT_TRUE(enabled(dialog)) << "as usual, after a locked one";
    Fill(dialog, "New", "2", "3");
  }));
  EXPECT_EQ(TextOfField(kAngularUnitForm, "CODE"), "1") << "locked from now on";
}

}  // namespace
}  // namespace refframe_tests
