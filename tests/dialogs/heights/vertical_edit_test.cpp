// The dialog of height systems, as the dialog of a reference system opens it.

#include "dialogs/heights/vertical_edit.h"

#include "dialogs/heights/offset_report.h"
#include "dialogs/heights/recalculate_grid.h"
#include "dialogs/heights/table_raster_view.h"
#include "processors/ref_system_processor.h"
#include "tests/dialogs/edit/edit_dialog_fixture.h"
#include "vertical/vertical_processor.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using namespace testing;
using enum TObjectType;
using QvPlatform::MessageAnswer;
using QvPlatform::SystemText;
using QvPlatform::TextId;

constexpr char kFileGrid[] = "55 36 38 54 1 1";

class VerticalEdit : public EditDialogTest {
 protected:
  VerticalEdit() {
    // Names alone, which no check lets pass.
    while (database_.data->datasetEllipsoid.RecordCount() > 0)
      database_.data->datasetEllipsoid.Delete();
    plane_ = Insert(kReferenceSystem, MakeTree(SystemTree, 4), {{1020, "Plane"}});
    const TreePtr highlands = MakeTree(SystemTree, 4);
    HeightTableTree(TreeBuilder(highlands.get()).Sub(1500));
    Insert(kReferenceSystem, highlands, {{1020, "Highlands"}});
    Records().LocateKey(0);
    owner_.setGeometry(20, 20, 100, 100);
    file_ = database_.folder.Path("geoid.txt");
    WriteFile(HeightText());
  }
  ~VerticalEdit() override {
    // The new record is the owner's, as after the owner's Save.
    if (made_ != 0) {
      Systems().LocateKey(plane_);
      SetField(*Systems().DataSet, "VERT_SYSTEM_AUTOKEY", std::to_string(made_));
    }
    ExpectSound(database_);
  }

  [[nodiscard]] TQvRfDataProcessor& Systems() { return *database_.data->RefSystemProcessor; }
  [[nodiscard]] TQvRfVerticalRefSystemDataProcessor& Records() {
    return *database_.data->VerticalRefSystemProcessor;
  }
  [[nodiscard]] std::string Field(const char* name) {
    return Records().DataSet->FieldByName(name).AsString();
  }
  void WriteFile(const std::string& text) { EXPECT_TRUE(SaveStorageFile(file_, false, text)); }

  // A run over the plane system: of a new record, or of the one that was made before. The user
  // closes what `act` leaves open.
  template <typename Act>
  bool Run(Act act) {
    QvCommonUtils::TStringTree tree;
    Systems().LocateKey(plane_);
    EXPECT_TRUE(Systems().WriteToTree(&tree, 0, 0));
    EXPECT_TRUE(form_.SetPlaneSystem(WriteTreeText(&tree), KeyOf(kLinearUnit, "metre")));
    ScreenUser user(In<TformQvRfVerticalRefSystemEdit>(ThenClose(act)));
    if (made_ != 0) {
      Records().LocateKey(made_);
      return form_.EditCurrent();
    }
    const bool saved = form_.CreateNew();
    if (saved) made_ = Records().GetCurrentKey();
    return saved;
  }
  void TakeFileSource(QWidget& form) const {
    Check(form, "radiobtnDataSourceFile");
    NameFile(form, "btnDataSourceParamsFileName", file_);
    Choose(form, "btnDataSourceParamsFilePlaneRefsystem", "Plane");
  }
  static std::string State(const QWidget& form) {
    EXPECT_EQ(IsShown(form, "btnDataView"), TextOf(form, "pnlDataType") == "Table");
    EXPECT_EQ(IsShown(form, "edDataOffset"), TextOf(form, "pnlDataType") == "Offset");
    EXPECT_EQ(IsPainted(form, "pnlDataType", Qt::red), TextOf(form, "pnlDataType") == "No data");
    return TextOf(form, "pnlDataType");
  }
  static std::string Enabled(const QWidget& form) {
    std::string names;
    for (const char* name : {"btnDataCreate", "radiobtnDataTable", "radiobtnDataOffset"})
      names += IsEnabled(form, name) ? "x" : "-";
    return names;
  }
  /// Why a control is refused; empty if it is not.
  static std::string Refusal(const QWidget& form, const char* name) {
    return IsPainted(form, name, Qt::red) ? TipOf(form, name) : std::string();
  }
  TformQvRfVerticalRefSystemEdit form_{&owner_, DialogChooser()};
  std::string file_;
  int plane_ = 0;
  int made_ = 0;
};

TEST_F(VerticalEdit, AFileMakesATableWhichTheNextRunShowsAgain) {
  QRect left;
  ASSERT_TRUE(Run([&](QWidget& form) {
    left = form.geometry().translated(31, 17).adjusted(0, 0, 53, 29);
    form.setGeometry(left);
    EXPECT_EQ(form.windowTitle(), "Edit height system");
    EXPECT_EQ(Child<QGroupBox>(form, "grboxDataGrid").title(), " Data Grid (Plane) ");
    EXPECT_EQ(TextOf(form, "lblDataGridExtentsNorth") + TextOf(form, "lblDataGridExtentsWest"),
              "XY");
    EXPECT_EQ(State(form) + Enabled(form), "No data---");
    EXPECT_FALSE(IsEnabled(form, "grboxDataGrid")) << "without a source there is no grid";
    Check(form, "radiobtnDataSourceFile");
    EXPECT_TRUE(IsShown(form, "pnlDataSourceParamsFile"));
    EXPECT_FALSE(IsShown(form, "pnlDataSourceParamsVertRefsystem"));
    EXPECT_FALSE(IsEnabled(form, "btnDataSourceView"));
    NameFile(form, "btnDataSourceParamsFileName", file_);
    EXPECT_EQ(TextOf(form, "edDataSourceParamsFileName"), file_);
    EXPECT_EQ(GridOf(form, "edDataGrid") + Enabled(form), std::string(kFileGrid) + "---");
    Open<TformQvRfTableRasterView>(form, "btnDataSourceView", Ok);
    Choose(form, "btnDataSourceParamsFilePlaneRefsystem", "Plane");
    EXPECT_EQ(TextOf(form, "comboDataSourceParamsFilePlaneRefsystem"), "Plane");
    EXPECT_EQ(Enabled(form), "xxx");
    Click(form, "btnDataCreate");
    EXPECT_EQ(State(form), "Table");
    Open<TformQvRfTableRasterView>(form, "btnDataView", Ok);
    Save(form);
    EXPECT_THAT(Refusal(form, "edName"), HasSubstr("must not be empty"));
    Type(form, "edName", "Lowlands");
    EXPECT_EQ(Refusal(form, "edName"), "");
    Type(form, "edAbbreviation", "LOW");
    Save(form);
  }));
  EXPECT_EQ(Field("NAME") + Field("ABBREVIATION") + Field("VDATA_TYPE"), "LowlandsLOW1");
  EXPECT_THAT(HeightFiles(), UnorderedElementsAre("Alps", "Lowlands"));
  EXPECT_FALSE(form_.isVisible());
  const auto files = HeightFiles();
  EXPECT_FALSE(Run([&](QWidget& form) {
    EXPECT_EQ(form.geometry(), left) << "where and as large as the user left it";
    EXPECT_EQ(TextOf(form, "edName"), "Lowlands");
    EXPECT_TRUE(IsChecked(form, "radiobtnDataSourceFile"));
    EXPECT_EQ(TextOf(form, "edDataSourceParamsFileName") +
                  TextOf(form, "comboDataSourceParamsFilePlaneRefsystem"),
              file_ + "Plane");
    EXPECT_EQ(GridOf(form, "edDataGrid") + State(form) + Enabled(form),
              std::string(kFileGrid) + "Tablexxx");
    Type(form, "edName", "Renamed");
    Type(form, "edDataGridExtentsEast", "37");
    Click(form, "btnDataCreate");
    QTest::keyClick(&form, Qt::Key_Escape);
  }));
  EXPECT_EQ(Field("NAME") + Field("VDATA_EXTENTS_EAST"), "Lowlands38");
  EXPECT_EQ(HeightFiles(), files);
  EXPECT_TRUE(Run([](QWidget& form) {
    EXPECT_EQ(GridOf(form, "edDataGrid") + State(form), std::string(kFileGrid) + "Table");
    Save(form);
  }));
  EXPECT_THAT(HeightFiles(), SizeIs(2)) << "no old file is left";
  EXPECT_THAT(database_.ui.messages, IsEmpty()) << "the data are current";
}

TEST_F(VerticalEdit, AnOffsetIsAcceptedOrRejectedInItsReport) {
  const auto approximate = [this](QWidget& form, const char* button, bool insert) {
    Check(form, "radiobtnDataOffset");
    Open<TformQvRfOffsetApproximationReport>(form, "btnDataCreate", [&](QWidget& report) {
      EXPECT_THAT(TextOf(report, "memoInfoText"), HasSubstr(file_ + ": RMS error"));
      EXPECT_EQ(TextOf(report, "lblOffsetUnit"), "metre (m)");
      if (insert) Check(report, "chboxInfoInsert");
      Click(report, button);
    });
  };
  EXPECT_TRUE(Run([&](QWidget& form) {
    TakeFileSource(form);
    Type(form, "edName", "Level");
    Type(form, "memoDescription", "About");
    approximate(form, "btnReject", true);
    EXPECT_EQ(State(form) + TextOf(form, "memoDescription"), "No dataAbout");
    Save(form);
    EXPECT_THAT(database_.ui.messages, ElementsAre(SystemText(TextId::kNoHeights)));
    approximate(form, "btnAccept", true);
    EXPECT_EQ(State(form), "Offset");
    EXPECT_EQ(TextOf(form, "edDataOffset"), "13.396 metre (m)");
    EXPECT_THAT(TextOf(form, "memoDescription"), StartsWith("About Approximation of"));
    Save(form);
  }));
  EXPECT_EQ(Field("VDATA_TYPE") + " " + Field("VDATA_OFFSET"), "2 13.396");
  EXPECT_THAT(HeightFiles(), ElementsAre("Alps"));
}

TEST_F(VerticalEdit, ASystemWithHeightsIsASource) {
  EXPECT_TRUE(Run([](QWidget& form) {
    constexpr char kName[] = "comboDataSourceParamsVertRefsystem";
    Check(form, "radiobtnDataSourceVertRefsystem");
    Choose(form, "btnDataSourceParamsVertRefsystem", "Plane");
    for (const char* control : {kName, "memoDataSourceParamsVertRefsystem"})
      EXPECT_THAT(Refusal(form, control), HasSubstr("no height system"));
    Choose(form, "btnDataSourceParamsVertRefsystem", "Highlands");
    EXPECT_EQ(Refusal(form, kName) + TipOf(form, kName), "");
    EXPECT_EQ(TextOf(form, kName) + TextOf(form, "memoDataSourceParamsVertRefsystem"),
              "HighlandsA system");
    EXPECT_EQ(GridOf(form, "edDataGrid"), kFileGrid);
    Click(form, "btnDataCreate");
    EXPECT_EQ(State(form), "Table");
    Type(form, "edName", "Alps");
    Save(form);
  }));
  EXPECT_THAT(HeightFiles(), UnorderedElementsAre("Alps", "Alps[1]")) << "each has its own";
  EXPECT_FALSE(Run([](QWidget& form) {
    EXPECT_EQ(TextOf(form, "comboDataSourceParamsVertRefsystem"), "Highlands");
    // A plane for a file must have no heights.
    Check(form, "radiobtnDataSourceFile");
    Choose(form, "btnDataSourceParamsFilePlaneRefsystem", "Highlands");
    EXPECT_EQ(TextOf(form, "comboDataSourceParamsFilePlaneRefsystem"), "");
    EXPECT_THAT(Refusal(form, "comboDataSourceParamsFilePlaneRefsystem"),
                HasSubstr("must not have"));
  }));
}

TEST_F(VerticalEdit, AnOffsetIsTypedWithItsUnit) {
  constexpr char kValue[] = "edDataSourceParamsVertOffsetValue";
  EXPECT_TRUE(Run([&](QWidget& form) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    Check(form, "radiobtnDataSourceOffset");
    EXPECT_FALSE(IsEnabled(form, "grboxDataGrid"));
    Type(form, kValue, "1,5");
    QTest::keyClick(&Child(form, kValue), Qt::Key_Tab);
    EXPECT_THAT(Refusal(form, kValue), HasSubstr("not a number"));
    EXPECT_EQ(Enabled(form), "---");
    Type(form, kValue, "-2.50");
    EXPECT_EQ(Refusal(form, kValue), "");
    QTest::keyClick(&Child(form, kValue), Qt::Key_Tab);
    Choose(form, "btnDataSourceParamsVertOffsetUnits", "metre");
    EXPECT_EQ(TextOf(form, "comboDataSourceParamsVertOffsetUnits") +
                  TextOf(form, "lblDataSourceParamsVertOffsetUnitsAbbr"),
              "metrem");
    EXPECT_EQ(Enabled(form), "x-x") << "an offset makes no table";
    Click(form, "btnDataCreate");
    EXPECT_EQ(State(form) + TextOf(form, "edDataOffset"), "Offset-2.50 metre (m)");
    Type(form, "edName", "Harbour");
    Save(form);
  }));
  EXPECT_EQ(Field("VDATA_OFFSET") + Field("VDATA_EXTENTS_NORTH"), "-2.50");
  EXPECT_FALSE(Run([&](QWidget& form) {
    EXPECT_TRUE(IsChecked(form, "radiobtnDataSourceOffset"));
    EXPECT_EQ(TextOf(form, kValue) + State(form), "-2.50Offset");
  }));
}

TEST_F(VerticalEdit, StaleDataAreStoredOnlyIfTheUserInsists) {
  database_.ui.answers = {MessageAnswer::kNo, MessageAnswer::kYes};
  EXPECT_TRUE(Run([this](QWidget& form) {
    TakeFileSource(form);
    Click(form, "btnDataCreate");
    Type(form, "edName", "Lowlands");
    Type(form, "edDataGridStepWE", "5");
    Save(form);
    EXPECT_TRUE(form.isVisible());
    Save(form);
  }));
  EXPECT_THAT(database_.ui.messages, ElementsAre(SystemText(TextId::kHeightsNotCurrent),
                                                 SystemText(TextId::kHeightsNotCurrent)));
  EXPECT_EQ(Field("VDATA_CELL_EAST_WEST"), "1") << "the grid on which they lie";
}

TEST_F(VerticalEdit, AGridIsTypedOrComputed) {
  EXPECT_FALSE(Run([this](QWidget& form) {
    TakeFileSource(form);
    Type(form, "edDataGridStepWE", "5");
    Click(form, "btnDataCreate");
    EXPECT_THAT(database_.ui.messages, ElementsAre(SystemText(TextId::kCellTooGreat)));
    EXPECT_EQ(State(form), "No data");
    EXPECT_THAT(TipOf(form, "pnlDataType"), HasSubstr("Cell size"));
    for (const char* button : {"btnClose", "btnApply"}) {
      const std::string before = GridOf(form, "edDataGrid");
      Open<TformQvRfRecalculateGridParams>(form, "Button1", [&](QWidget& grid) {
        EXPECT_EQ(TextOf(grid, "edDstRefSystemName"), "Plane");
        TypeGrid(grid, "edSrcDataGrid", {"54.5", "36", "37", "54", "0.5", "0.25"});
        Choose(grid, "btnSrcRefSystemSelect", "Plane");
        Click(grid, button);
      });
      EXPECT_EQ(GridOf(form, "edDataGrid"),
                std::string_view(button) == "btnApply" ? "54.5 36 37 54 0.5 0.25" : before);
    }
    Click(form, "btnDataCreate");
    EXPECT_EQ(State(form), "Table");
  }));
  EXPECT_THAT(HeightFiles(), ElementsAre("Alps")) << "nothing was saved";
}

TEST_F(VerticalEdit, AFileThatIsNoneIsToldWithItsNameAndWhatIsWrong) {
  const std::pair<const char*, const char*> rows[] = {
      {"heights", "does not begin with a grid"},
      {"54 55 36 38 1 1 20", "fewer heights than its grid has nodes"},
      {"", "cannot be read, or is empty"}};
  EXPECT_FALSE(Run([&](QWidget& form) {
    TakeFileSource(form);
    for (const auto& [text, why] : rows) {
      // Storage takes an empty text as well.
      WriteFile(text);
      database_.ui.messages.clear();
      NameFile(form, "btnDataSourceParamsFileName", file_);
      EXPECT_THAT(database_.ui.messages, ElementsAre(AllOf(HasSubstr(file_), HasSubstr(why))));
      EXPECT_EQ(Enabled(form), "---") << why;
    }
  }));
}

TEST_F(VerticalEdit, OpensOverAPlaneAlone) {
  EXPECT_FALSE(form_.CreateNew());
  EXPECT_FALSE(form_.SetPlaneSystem("no tree", 1));
  EXPECT_FALSE(form_.CreateNew());
  EXPECT_FALSE(form_.isVisible());
}

}  // namespace
}  // namespace refframe_tests
