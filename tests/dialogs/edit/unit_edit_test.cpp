// What the dialogs of units do beside their rows.

#include <gtest/gtest.h>

#include "platform/text/text.h"
#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using QvRefSystem::kAngularUnitForm;
using QvRefSystem::kLinearUnitForm;
using QvRefSystem::kScaleUnitForm;
using QvRefSystem::TformQvRfEdit;

class UnitEditTest : public EditTest {
 protected:
  ~UnitEditTest() override { QvPlatform::SetUserLocale("en-US"); }
  template <typename Act>
  bool Make(const QvRefSystem::FormDescription& form, Act act) {
    ScreenUser user;
    user.In<TformQvRfEdit>(act);
    return FormOf(form).CreateNew();
  }
  template <typename Act>
  bool Change(const QvRefSystem::FormDescription& form, Act act) {
    ScreenUser user;
    user.In<TformQvRfEdit>(act);
    return FormOf(form).EditCurrent();
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
      Type(dialog, "edName", "unit");
      Type(dialog, "edFactorB", row.text);
      Type(dialog, "edFactorC", "1");
      Click(dialog, "bitbtnSave");
      if (!dialog.isVisible()) return;
      EXPECT_EQ(RefusedControls(dialog, kLinearUnitForm), "edFactorB") << row.text;
      Click(dialog, "bitbtnClose");
    });
    EXPECT_EQ(saved, *row.stored != 0) << row.locale << " " << row.text;
    if (!saved) continue;
    EXPECT_EQ(TextOfField(kLinearUnitForm, "FACTOR_B"), row.stored);
    Change(kLinearUnitForm, [&](QWidget& dialog) {
      const std::string shown = std::string(row.text) == "-2e3" ? "-2000" : row.text;
      EXPECT_EQ(TextOf(dialog, "edFactorB"), shown) << row.locale;
      Click(dialog, "bitbtnClose");
    });
  }
}

TEST_F(UnitEditTest, AFactorThatIsLeftAloneKeepsItsLastBit) {
  const double foot = 1200.0 / 3937.0;
  AddValid(kLinearUnitForm, "US foot");
  Table(kLinearUnitForm).Edit();
  Table(kLinearUnitForm).FieldByName("FACTOR_B").SetFloat(foot);
  Table(kLinearUnitForm).Post();
  EXPECT_TRUE(Change(kLinearUnitForm, [](QWidget& dialog) { Click(dialog, "bitbtnSave"); }));
  EXPECT_EQ(Table(kLinearUnitForm).FieldByName("FACTOR_B").AsFloat(), foot);
}

TEST_F(UnitEditTest, AnEmptyAbbreviationBecomesTheName) {
  EXPECT_TRUE(Make(kScaleUnitForm, [](QWidget& dialog) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    EXPECT_EQ(TextOf(dialog, "lblBaseUnitAbbreviation"), "1");
    Type(dialog, "edName", " per mille ");
    QTest::keyClick(&Child(dialog, "edName"), Qt::Key_Tab);
    EXPECT_EQ(TextOf(dialog, "lblThisUnitAbbreviation"), "per mille");
    Type(dialog, "edFactorB", "0.001");
    Type(dialog, "edFactorC", "1");
    Click(dialog, "bitbtnSave");
  }));
  EXPECT_EQ(TextOfField(kScaleUnitForm, "ABBREVIATION"), " per mille ");
  Change(kScaleUnitForm, [](QWidget& dialog) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    EXPECT_EQ(TextOf(dialog, "edAbbreviation"), " per mille ");
    Type(dialog, "edAbbreviation", "pm");
    QTest::keyClick(&Child(dialog, "edAbbreviation"), Qt::Key_Tab);
    EXPECT_EQ(TextOf(dialog, "lblThisUnitAbbreviation"), "pm");
    Click(dialog, "bitbtnClose");
  });
}

TEST_F(UnitEditTest, TheFactorsOfAnAngularUnitAreLockedByItsCode) {
  const auto enabled = [](QWidget& dialog) {
    return IsEnabled(dialog, "edFactorB") && IsEnabled(dialog, "edFactorC");
  };
  for (const auto* form : {&kAngularUnitForm, &kLinearUnitForm}) {
    AddValid(*form, "Delivered");
    Table(*form).Edit();
    Table(*form).FieldByName("CODE").SetInteger(1);
    Table(*form).Post();
    EXPECT_TRUE(Change(*form, [&](QWidget& dialog) {
      EXPECT_EQ(enabled(dialog), form != &kAngularUnitForm);
      Type(dialog, "edName", "Renamed");
      Click(dialog, "bitbtnSave");
    }));
    EXPECT_EQ(Record(*form, {"NAME", "FACTOR_B", "CODE"}), "NAME=Renamed FACTOR_B=2.5 CODE=1");
  }
  EXPECT_TRUE(Make(kAngularUnitForm, [&](QWidget& dialog) {
    EXPECT_TRUE(enabled(dialog)) << "as usual, after a locked one";
    Type(dialog, "edName", "New");
    Type(dialog, "edFactorB", "2");
    Type(dialog, "edFactorC", "3");
    Click(dialog, "bitbtnSave");
  }));
  Change(kAngularUnitForm, [&](QWidget& dialog) {
    EXPECT_FALSE(enabled(dialog));
    Click(dialog, "bitbtnClose");
  });
  Table(kAngularUnitForm).First();  // CODE 0
  Change(kAngularUnitForm, [&](QWidget& dialog) {
    EXPECT_TRUE(enabled(dialog));
    Click(dialog, "bitbtnClose");
  });
}

}  // namespace
}  // namespace refframe_tests
