// The calculator of data grids, over real reference systems.

#include "dialogs/heights/recalculate_grid.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <array>

#include "platform/text/text.h"
#include "tests/dialogs/dialog_fixture.h"
#include "tests/support/sample_trees.h"

namespace refframe_tests {
namespace {

using QvRefSystem::CreateShellReferenceSystem;
using QvRefSystem::TformQvRfRecalculateGridParams;
using QvRefSystem::TformQvRfSelector;
using QvRefSystem::TShell2DTableExtents;
using QvRefSystem::TShellReferenceSystem;

constexpr std::array kParts{"ExtentsNorth", "ExtentsWest", "ExtentsEast",
                            "ExtentsSouth", "StepWE",      "StepNS"};
using Texts = std::array<std::string, kParts.size()>;
const Texts kGround{"41", "-81.5", "-80.5", "40", "0.25", "0.5"};

class RecalculateGrid : public DialogTest {
 protected:
  RecalculateGrid() {
    for (const int kind : {4, 5})
      EXPECT_GT(database_.Processor(QvRefSystem::TObjectType::kReferenceSystem)
                    .InsertFromTree(MakeTree(SystemTree, kind).get()),
                0);
  }
  static std::unique_ptr<TShellReferenceSystem> System(int kind) {
    return CreateShellReferenceSystem(MakeTree(SystemTree, kind).get(), nullptr);
  }
  static std::string Name(const char* prefix, const char* part) {
    return std::string(prefix) + "DataGrid" + part;
  }
  static Texts Grid(const QWidget& form, const char* side) {
    Texts texts;
    for (std::size_t n = 0; n < kParts.size(); ++n)
      texts[n] = Child<QLineEdit>(form, Name(side, kParts[n]).c_str()).text().toStdString();
    return texts;
  }
  static void Type(const QWidget& form, const Texts& texts) {
    for (std::size_t n = 0; n < kParts.size(); ++n) {
      auto& edit = Child<QLineEdit>(form, Name("edSrc", kParts[n]).c_str());
      edit.clear();
      QTest::keyClicks(&edit, QString::fromStdString(texts[n]));
    }
  }
  /// The labels of north, west, east and south, joined.
  static std::string Axes(const QWidget& form, const char* side) {
    std::string axes;
    for (std::size_t n = 0; n < 4; ++n)
      axes += Child<QLabel>(form, Name(side, kParts[n]).c_str()).text().toStdString() + "|";
    return axes;
  }
  static void Choose(QWidget& form, const char* system) {
    ScreenUser user;
    user.In<TformQvRfSelector>([&](QWidget& selector) {
      EXPECT_FALSE(form.isVisible());
      Search(selector, system);
      Click(selector, "bitbtnOk");
    });
    Click(form, "btnSrcRefSystemSelect");
  }
  static const Texts kNothing;

  TformQvRfRecalculateGridParams dialog_{nullptr, QvRefSystem::DialogChooser()};
};
const Texts RecalculateGrid::kNothing{};

TEST_F(RecalculateGrid, CoversTheGroundInTheTargetSystem) {
  const auto geodetic = System(4);
  const auto utm = System(5);
  ScreenUser user;
  user.In<TformQvRfRecalculateGridParams>([](QWidget& form) {
    EXPECT_EQ(Axes(form, "lblSrc"), "||||");
    EXPECT_EQ(Axes(form, "lblDst"), "Y|X|X|Y|") << "the first axis runs east";
    EXPECT_EQ(Child<QLineEdit>(form, "edDstRefSystemName").text(), "NAD27 / UTM 17N");
    EXPECT_EQ(Child<QPlainTextEdit>(form, "memoDstRefSystemDescription").toPlainText(), "A system");
    Type(form, kGround);
    Click(form, "bitbtnRecalculate");
    EXPECT_EQ(Grid(form, "edDst"), kNothing) << "no source system";
    Choose(form, "NAD27 geodetic");
    EXPECT_EQ(Axes(form, "lblSrc"), "X|Y|Y|X|") << "the first axis runs north";
    EXPECT_EQ(Child<QLineEdit>(form, "edSrcRefSystemName").text(), "NAD27 geodetic");
    EXPECT_EQ(Child<QPlainTextEdit>(form, "memoSrcRefSystemDescription").toPlainText(), "A system");
    EXPECT_EQ(Grid(form, "edSrc"), kGround) << "what was typed stays";
    EXPECT_NE(Grid(form, "edDst"), kNothing) << "a new system recalculates";
    Click(form, "btnApply");
  });
  TShell2DTableExtents result;
  ASSERT_TRUE(dialog_.Run(utm.get(), &result));
  TShell2DTableExtents source{"-81.5", "-80.5", "40", "41", "0.25", "0.5"};
  TShell2DTableExtents expected;
  ASSERT_TRUE(geodetic->RecalculateTableGrid(&source, utm.get(), &expected));
  const auto list = [](const TShell2DTableExtents& grid) {
    return Texts{grid.North, grid.West,         grid.East,
                 grid.South, grid.CellEastWest, grid.CellNorthSouth};
  };
  EXPECT_EQ(list(result), list(expected));
  double north = 0;
  ASSERT_TRUE(QvPlatform::TextToDouble(result.North, &north));
  EXPECT_NEAR(north, 4.54e6, 0.02e6) << "metres to the parallel of 41 degrees";
}

TEST_F(RecalculateGrid, WithoutAWholeGridTheTargetIsEmpty) {
  const auto target = System(4);
  TShell2DTableExtents result{"1", "1", "1", "1", "1", "1"};
  ScreenUser user;
  user.In<TformQvRfRecalculateGridParams>([](QWidget& form) {
    Type(form, kGround);
    Choose(form, "geodetic");
    EXPECT_EQ(Grid(form, "edDst"), kGround) << "the same system, the same grid";
    for (const char* wrong : {"", "abc"}) {
      for (std::size_t n = 0; n < kParts.size(); ++n) {
        Texts texts = kGround;
        Type(form, texts);
        Click(form, "bitbtnRecalculate");
        EXPECT_EQ(Grid(form, "edDst"), kGround);
        texts[n] = wrong;
        Type(form, texts);
        EXPECT_EQ(Grid(form, "edDst"), kGround) << "typing alone computes nothing";
        Click(form, "bitbtnRecalculate");
        EXPECT_EQ(Grid(form, "edDst"), kNothing) << kParts[n] << ": " << wrong;
      }
    }
    Click(form, "btnApply");
  });
  EXPECT_TRUE(dialog_.Run(target.get(), &result));
  EXPECT_EQ(result.West + result.East + result.South + result.North + result.CellEastWest +
                result.CellNorthSouth,
            "");
}

TEST_F(RecalculateGrid, CloseChangesNothingAndTheNextRunStartsAnew) {
  const auto target = System(4);
  TShell2DTableExtents result{"1", "2", "3", "4", "5", "6"};
  ScreenUser user;
  user.In<TformQvRfRecalculateGridParams>([](QWidget& form) {
        Type(form, kGround);
        Choose(form, "geodetic");
        Click(form, "btnClose");
      })
      .In<TformQvRfRecalculateGridParams>([](QWidget& form) {
        EXPECT_EQ(Grid(form, "edSrc"), kNothing);
        EXPECT_EQ(Grid(form, "edDst"), kNothing);
        EXPECT_EQ(Axes(form, "lblSrc"), "||||");
        EXPECT_EQ(Child<QLineEdit>(form, "edSrcRefSystemName").text(), "");
        Type(form, kGround);
        Press(form, "edSrcDataGridStepNS", Qt::Key_Return);
        EXPECT_TRUE(form.isVisible()) << "Enter computes";
        EXPECT_EQ(Grid(form, "edDst"), kNothing) << "the system of the last run is gone";
        Press(form, "edSrcDataGridStepNS", Qt::Key_Escape);
      });
  EXPECT_FALSE(dialog_.Run(target.get(), &result));
  EXPECT_FALSE(dialog_.Run(target.get(), &result));
  EXPECT_EQ(result.CellNorthSouth, "6");
}

TEST_F(RecalculateGrid, WithoutATargetOrAResultNothingShows) {
  TShell2DTableExtents result;
  EXPECT_FALSE(dialog_.Run(nullptr, &result));
  const auto target = System(4);
  EXPECT_FALSE(dialog_.Run(target.get(), nullptr));
}

TEST_F(RecalculateGrid, ATargetThatCannotTellItsAxesIsNotShown) {
  class TMute : public TShellReferenceSystem {
   public:
    explicit TMute(const TShellReferenceSystem& other) : TShellReferenceSystem(other) {}
    [[nodiscard]] bool IsFirstAxisNorth() const override {
      throw QvRefSystem::GeodesyError("no axes");
    }
  };
  TMute target(*System(4));
  TShell2DTableExtents result;
  EXPECT_FALSE(dialog_.Run(&target, &result));
  EXPECT_EQ(Axes(dialog_, "lblDst"), "||||");
}

}  // namespace
}  // namespace refframe_tests
