// The calculator of data grids, over real reference systems.

#include "dialogs/heights/recalculate_grid.h"

#include <array>

#include "platform/text/text.h"
#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;

const GridTexts kTyped{"41", "-81.5", "-80.5", "40", "0.25", "0.5"};
constexpr char kGround[] = "41 -81.5 -80.5 40 0.25 0.5";
constexpr char kNothing[] = "     ";

GridTexts TextsOf(const TShell2DTableExtents& grid) {
  return {grid.North, grid.West, grid.East, grid.South, grid.CellEastWest, grid.CellNorthSouth};
}

class RecalculateGrid : public DialogTest {
 protected:
  RecalculateGrid() {
    for (const int kind : {4, 5})
      Insert(TObjectType::kReferenceSystem, MakeTree(SystemTree, kind));
  }
  static std::unique_ptr<TShellReferenceSystem> System(int kind) {
    return CreateShellReferenceSystem(MakeTree(SystemTree, kind).get(), nullptr);
  }
  static void TypeGround(const QWidget& form, const GridTexts& texts = kTyped) {
    TypeGrid(form, "edSrcDataGrid", texts);
  }
  /// The labels of north, west, east and south, joined.
  static std::string Axes(const QWidget& form, const std::string& side) {
    std::string axes;
    for (std::size_t n = 0; n < 4; ++n)
      axes += TextOf(form, (side + "DataGrid" + kGridParts[n]).c_str()) + "|";
    return axes;
  }
  bool Run(TShellReferenceSystem* target, TShell2DTableExtents* result, const Act& act) {
    ScreenUser user(In<TformQvRfRecalculateGridParams>(act));
    return dialog_.Run(target, result);
  }

  TformQvRfRecalculateGridParams dialog_{nullptr, DialogChooser()};
};

TEST_F(RecalculateGrid, CoversTheGroundInTheTargetSystem) {
  const auto geodetic = System(4);
  const auto utm = System(5);
  TShell2DTableExtents result;
  ASSERT_TRUE(Run(utm.get(), &result, [](QWidget& form) {
    EXPECT_EQ(Axes(form, "lblSrc"), "||||");
    EXPECT_EQ(Axes(form, "lblDst"), "Y|X|X|Y|") << "the first axis runs east";
    EXPECT_EQ(TextOf(form, "edDstRefSystemName"), "NAD27 / UTM 17N");
    EXPECT_EQ(TextOf(form, "memoDstRefSystemDescription"), "A system");
    TypeGround(form);
    Click(form, "bitbtnRecalculate");
    EXPECT_EQ(GridOf(form, "edDstDataGrid"), kNothing) << "no source system";
    Choose(form, "btnSrcRefSystemSelect", "NAD27 geodetic");
    EXPECT_EQ(Axes(form, "lblSrc"), "X|Y|Y|X|") << "the first axis runs north";
    EXPECT_EQ(TextOf(form, "edSrcRefSystemName"), "NAD27 geodetic");
    EXPECT_EQ(TextOf(form, "memoSrcRefSystemDescription"), "A system");
    EXPECT_EQ(GridOf(form, "edSrcDataGrid"), kGround) << "what was typed stays";
    EXPECT_NE(GridOf(form, "edDstDataGrid"), kNothing) << "a new system recalculates";
    Click(form, "btnApply");
  }));
  const TShell2DTableExtents source{"-81.5", "-80.5", "40", "41", "0.25", "0.5"};
  TShell2DTableExtents expected;
  ASSERT_TRUE(geodetic->RecalculateTableGrid(&source, utm.get(), &expected));
  EXPECT_EQ(TextsOf(result), TextsOf(expected));
  double north = 0;
  ASSERT_TRUE(QvPlatform::TextToDouble(result.North, &north));
  EXPECT_NEAR(north, 4.54e6, 0.02e6) << "metres to the parallel of 41 degrees";
}

TEST_F(RecalculateGrid, WithoutAWholeGridTheTargetIsEmpty) {
  TShell2DTableExtents result{"1", "1", "1", "1", "1", "1"};
  EXPECT_TRUE(Run(System(4).get(), &result, [](QWidget& form) {
    TypeGround(form);
    Choose(form, "btnSrcRefSystemSelect", "geodetic");
    EXPECT_EQ(GridOf(form, "edDstDataGrid"), kGround) << "the same system, the same grid";
    for (const char* wrong : {"", "abc"}) {
      for (std::size_t n = 0; n < kGridParts.size(); ++n) {
        TypeGround(form);
        Click(form, "bitbtnRecalculate");
        EXPECT_EQ(GridOf(form, "edDstDataGrid"), kGround);
        GridTexts texts = kTyped;
        texts[n] = wrong;
        TypeGround(form, texts);
        EXPECT_EQ(GridOf(form, "edDstDataGrid"), kGround) << "typing alone computes nothing";
        Click(form, "bitbtnRecalculate");
        EXPECT_EQ(GridOf(form, "edDstDataGrid"), kNothing) << kGridParts[n] << ": " << wrong;
      }
    }
    Click(form, "btnApply");
  }));
  EXPECT_EQ(TextsOf(result), GridTexts());
}

TEST_F(RecalculateGrid, CloseChangesNothingAndTheNextRunStartsAnew) {
  const auto target = System(4);
  TShell2DTableExtents result{"1", "2", "3", "4", "5", "6"};
  EXPECT_FALSE(Run(target.get(), &result, [](QWidget& form) {
    TypeGround(form);
    Choose(form, "btnSrcRefSystemSelect", "geodetic");
    Click(form, "btnClose");
  }));
  EXPECT_FALSE(Run(target.get(), &result, [](QWidget& form) {
    EXPECT_EQ(GridOf(form, "edSrcDataGrid"), kNothing);
    EXPECT_EQ(GridOf(form, "edDstDataGrid"), kNothing);
    EXPECT_EQ(Axes(form, "lblSrc") + TextOf(form, "edSrcRefSystemName"), "||||");
    TypeGround(form);
    Press(form, "edSrcDataGridStepNS", Qt::Key_Return);
    EXPECT_TRUE(form.isVisible()) << "Enter computes";
    EXPECT_EQ(GridOf(form, "edDstDataGrid"), kNothing) << "the system of the last run is gone";
    Press(form, "edSrcDataGridStepNS", Qt::Key_Escape);
  }));
  EXPECT_EQ(result.CellNorthSouth, "6");
}

TEST_F(RecalculateGrid, ShowsNothingWithoutAResultOrATargetThatTellsItsAxes) {
  class Mute : public TShellReferenceSystem {
   public:
    explicit Mute(const TShellReferenceSystem& other) : TShellReferenceSystem(other) {}
    [[nodiscard]] bool IsFirstAxisNorth() const override { throw GeodesyError("no axes"); }
  };
  TShell2DTableExtents result;
  const auto target = System(4);
  Mute mute(*target);
  EXPECT_FALSE(dialog_.Run(nullptr, &result));
  EXPECT_FALSE(dialog_.Run(target.get(), nullptr));
  EXPECT_FALSE(dialog_.Run(&mute, &result));
  EXPECT_EQ(Axes(dialog_, "lblDst"), "||||");
}

}  // namespace
}  // namespace refframe_tests
