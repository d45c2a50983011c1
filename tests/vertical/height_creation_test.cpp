// Heights from their source to their record, without a window.

#include "vertical/height_creation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "processors/ref_system_processor.h"
#include "tests/vertical/height_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;  // the subject has many names
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Kind = HeightSourceKind;
using enum HeightRefusal;

constexpr int kGeodetic = 4;
constexpr int kProjected = 5;
// Six nodes, none of them with the same height.
const TShell2DTableExtents kFileGrid{"36", "38", "54", "55", "1", "1"};

void GeodeticWithTable(TreeBuilder tree) {
  SystemTree(tree, kGeodetic);
  HeightTableTree(tree.Sub(1500));
}

std::string TextOf(const TShell2DTableExtents& grid) {
  return grid.West + " " + grid.East + " " + grid.South + " " + grid.North + " " +
         grid.CellEastWest + " " + grid.CellNorthSouth;
}

class HeightCreationTest : public HeightTest {
 protected:
  HeightCreationTest() {
    owner_ = Systems().InsertFromTree(MakeTree(SystemTree, kGeodetic).get());
    metre_ = database_.data->datasetLinearUnit.Fields(0).AsInteger();
    EXPECT_TRUE(SetPlane());
  }
  ~HeightCreationTest() override {
    // The record belongs to its owner, as after the owner's Save.
    Systems().LocateKey(owner_);
    Set(Systems(), "VERT_SYSTEM_AUTOKEY", std::to_string(Records().GetCurrentKey()));
    EXPECT_THAT(database_.Findings(), IsEmpty());
  }
  bool SetPlane(int kind = kGeodetic, int unit = 0) {
    const TreePtr tree = MakeTree(SystemTree, kind);
    return heights_.SetPlaneSystem(WriteTreeText(tree.get()), unit == 0 ? metre_ : unit);
  }
  [[nodiscard]] std::string File(const std::string& text) {
    const std::string path = database_.folder.Path("geoid.txt");
    EXPECT_TRUE(SaveStorageFile(path, false, text));
    return path;
  }
  HeightRefusal TakeFilePlane(int kind = kGeodetic) {
    return heights_.TakeFilePlane(MakeTree(SystemTree, kind).get());
  }
  // Takes file and plane, as the dialog does for a user.
  void TakeSource() {
    heights_.ChooseKind(Kind::kFile);
    EXPECT_EQ(heights_.TakeFile(File(HeightText())), kNone);
    EXPECT_EQ(TakeFilePlane(), kNone);
  }
  void CreateTable() {
    TakeSource();
    EXPECT_EQ(heights_.Create(HeightKind::kTable, {}), kNone);
    ASSERT_EQ(heights_.MadeData().Kind(), HeightKind::kTable);
  }
  bool Store(bool append, const char* name = "Alps") {
    return heights_.Store({.Name = name, .Abbreviation = "A", .Description = "D"}, append);
  }
  // Stores a table, and sets the plane for the next opening.
  void StoreTable(int plane = kGeodetic) {
    CreateTable();
    ASSERT_TRUE(Store(true));
    ASSERT_TRUE(SetPlane(plane));
  }

  HeightCreation heights_{*database_.data};
  int owner_ = 0;
  int metre_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Forms, HeightCreationTest, testing::Bool(), FormName{});

TEST_P(HeightCreationTest, AFileAndItsPlaneMakeATable) {
  heights_.ChooseKind(Kind::kFile);
  EXPECT_EQ(heights_.TakeFile(File(HeightText())), kNone);
  EXPECT_EQ(TextOf(heights_.Grid()), TextOf(kFileGrid));
  EXPECT_FALSE(heights_.Source().CanMake(HeightKind::kTable)) << "its plane is not known";
  EXPECT_EQ(TakeFilePlane(), kNone);
  ASSERT_TRUE(heights_.Source().CanMake(HeightKind::kTable));
  database_.ui.progress.clear();
  EXPECT_EQ(heights_.Create(heights_.Source().UsualKind(), {}), kNone);
  EXPECT_THAT(database_.ui.progress, ElementsAre("Recalculating geoid undulation data"));
  EXPECT_TRUE(heights_.IsCurrent());

  ASSERT_TRUE(Store(true, "Alps: 1/2"));
  EXPECT_EQ(heights_.Target(), nullptr) << "used up";
  EXPECT_EQ(FileText(), HeightText());
  EXPECT_EQ(Text("VDATA_CRC32"), std::to_string(HeightCrc()));
  EXPECT_THAT(Files(), ElementsAre(Text("VDATA_FILENAME")));
  EXPECT_EQ(Text("VDATA_FILENAME"), "Alps  1 2");
  EXPECT_EQ(Text("VDATA_EXTENTS_WEST") + Text("VDATA_EXTENTS_NORTH"), "3655");
  EXPECT_EQ(Text("VDATA_CELL_EAST_WEST") + Text("VDATA_UNIT_AUTOKEY"), "10");
  EXPECT_EQ(Text("NAME") + Text("ABBREVIATION") + Text("DESCRIPTION"), "Alps: 1/2AD");
}

TEST_P(HeightCreationTest, WhatWasStoredIsThereAtTheNextOpening) {
  StoreTable();
  EXPECT_TRUE(heights_.IsStoredPlaneSame(heights_.Target()));
  // Not the file: the owner may not be stored yet, and what it made is at hand.
  database_.ui.progress.clear();
  EXPECT_EQ(heights_.StartEdit(), kNone);
  EXPECT_THAT(database_.ui.progress, IsEmpty());
  EXPECT_EQ(heights_.Source().Kind, Kind::kFile);
  EXPECT_EQ(heights_.Source().FilePlaneSystem->Name(), "NAD27 geodetic");
  EXPECT_TRUE(heights_.Source().CanMake(HeightKind::kTable));
  EXPECT_TRUE(heights_.IsCurrent());
  EXPECT_EQ(TextOf(heights_.MadeData().Grid), TextOf(kFileGrid));

  ASSERT_TRUE(Store(false, "Andes"));
  EXPECT_THAT(Files(), SizeIs(1)) << "the old file went with its place in the record";
  EXPECT_EQ(FileText(), HeightText());
  EXPECT_EQ(Records().DataSet->RecordCount(), 1);

  heights_.StartNew();
  EXPECT_EQ(heights_.Source().Kind, Kind::kNone);
  EXPECT_FALSE(heights_.IsStoredPlaneSame(heights_.Target())) << "all is forgotten";
}

TEST_P(HeightCreationTest, AnotherPlaneKeepsTheGridAndLosesTheData) {
  StoreTable(kProjected);
  EXPECT_FALSE(heights_.IsStoredPlaneSame(heights_.Target()));
  EXPECT_EQ(heights_.StartEdit(), kNone);
  EXPECT_EQ(heights_.MadeData().Kind(), std::nullopt);
  EXPECT_FALSE(heights_.IsCurrent());
  TShell2DTableExtents seen;
  const auto geodetic = CreateShellReferenceSystem(MakeTree(SystemTree, kGeodetic).get(), nullptr);
  const bool hasImage = geodetic->RecalculateTableGrid(&kFileGrid, heights_.Target(), &seen);
  EXPECT_EQ(TextOf(heights_.Grid()), TextOf(hasImage ? seen : TShell2DTableExtents{}));
}

TEST_P(HeightCreationTest, AStoredSystemIsLoadedFromItsFile) {
  Systems().InsertFromTree(MakeTree(GeodeticWithTable).get());
  const int key = Systems().GetCurrentKey();
  Records().LocateKey(Systems().DataSet->FieldByName("VERT_SYSTEM_AUTOKEY").AsInteger());
  ASSERT_EQ(Text("NAME"), "Alps");
  ASSERT_TRUE(heights_.LoadForReferenceSystem(key));
  EXPECT_EQ(heights_.StartEdit(), kNone);
  ASSERT_EQ(heights_.MadeData().Kind(), HeightKind::kTable);
  EXPECT_EQ(heights_.MadeData().Table->Get(1, 0), -19.625);
  EXPECT_EQ(TextOf(heights_.MadeData().Grid), TextOf(kFileGrid));
  EXPECT_TRUE(heights_.IsCurrent());
  EXPECT_EQ(heights_.Source().Kind, Kind::kNone);

  const std::string whole = FileText();
  const std::pair<const char*, HeightRefusal> kFiles[] = {
      {"54 55 36 38 1 1 7", kNoValues}, {"54 55", kNoGrid}, {"", kNotRead}};
  for (const auto& [text, refusal] : kFiles) {
    SaveFile(text);
    EXPECT_EQ(heights_.StartEdit(), refusal) << text;
    EXPECT_EQ(heights_.MadeData().Kind(), std::nullopt);
  }
  SaveFile(whole);
  owner_ = key;
}

TEST_P(HeightCreationTest, ATableUnderAnotherUnitIsNotCurrent) {
  StoreTable();
  const TreePtr tree = MakeTree(SystemTree, kGeodetic);
  QvCommonUtils::TStringTree* unit = FindSubtree(FindSubtree(tree.get(), 1201, 0), 1104, 0);
  constexpr int kFactor = 5310;
  RemoveField(unit, kFactor, 0);
  TreeBuilder(unit).Field(kFactor, "0.3048");
  ASSERT_TRUE(heights_.SetPlaneSystem(WriteTreeText(tree.get()), metre_));
  EXPECT_EQ(heights_.StartEdit(), kNone);
  EXPECT_EQ(heights_.MadeData().Kind(), HeightKind::kTable);
  EXPECT_FALSE(heights_.IsCurrent()) << "metres would become feet";
}

TEST_P(HeightCreationTest, RefusesWhatCannotBeASource) {
  EXPECT_EQ(heights_.TakeSystem(MakeTree(SystemTree, kGeodetic).get()), kNoHeights);
  EXPECT_EQ(heights_.TakeSystem(MakeTree(GeodeticWithTable).get()), kNone);
  EXPECT_EQ(TextOf(heights_.Grid()), TextOf(kFileGrid)) << "the grid of its own heights";
  EXPECT_EQ(heights_.TakeSystem(MakeTree(MetreTree).get()), kNoSystem);
  EXPECT_EQ(heights_.TakeFilePlane(MakeTree(GeodeticWithTable).get()), kHasHeights);
  EXPECT_EQ(heights_.Source().FilePlaneSystem, nullptr);

  EXPECT_EQ(heights_.TakeFile(File("0 1 -0.1 0.2 1 0.1 1 2 3 4 5 6 7 8")), kNone);
  EXPECT_EQ(TextOf(heights_.Grid()), "-0.1 0.2 0 1 0.1 1") << "the east edge is a sum";
  TakeSource();
  const std::string missing = database_.folder.Path("none.txt");
  EXPECT_EQ(heights_.TakeFile(missing), kNotOpened);
  EXPECT_THAT(database_.ui.messages,
              ElementsAre(testing::StartsWith("Cannot create file " + missing + " (")));
  EXPECT_NE(heights_.Source().FileTable, nullptr) << "the old one is kept";
  EXPECT_EQ(heights_.TakeFile(File("not a grid")), kNoGrid);
  EXPECT_EQ(heights_.Source().FileTable, nullptr);
  EXPECT_EQ(heights_.Source().FileName, "");
  EXPECT_EQ(heights_.TakeFile(File("54 55 36 38 1 1 1 2 3 4 5 x")), kNoValues);

  heights_.ChooseKind(Kind::kOffset);
  heights_.TakeOffsetUnit(metre_);
  for (const char* text : {"", "1,5", "3 m", "nan"}) {
    EXPECT_EQ(heights_.TakeOffset(text), kNoNumber) << text;
    EXPECT_FALSE(heights_.Source().CanMake(HeightKind::kOffset)) << text;
  }
  EXPECT_EQ(heights_.TakeOffset("-2.50"), kNone);
  EXPECT_TRUE(heights_.Source().CanMake(HeightKind::kOffset));
  EXPECT_FALSE(heights_.Source().CanMake(HeightKind::kTable)) << "an offset makes no table";
  heights_.TakeOffsetUnit(metre_ + 1);
  EXPECT_EQ(heights_.Source().UsualKind(), std::nullopt) << "there is no such unit";
}

TEST_P(HeightCreationTest, TheGridOfAFileNeedsTwoNodesAlongEachAxis) {
  const struct {
    const char* name;
    TShell2DTableExtents grid;
    HeightRefusal fromFile;
    HeightRefusal fromSystem;
  } rows[] = {
      {"one node", {"36", "36", "54", "54", "1", "1"}, kCellTooGreat, kNone},
      {"cells too great", {"36", "38", "54", "55", "5", "1"}, kCellTooGreat, kNone},
      {"two nodes", {"36", "37", "54", "55", "1", "1"}, kNone, kNone},
      {"no number", {"36", "x", "54", "55", "1", "1"}, kCellTooGreat, kUnusableGrid},
  };
  TakeSource();
  EXPECT_EQ(heights_.TakeSystem(MakeTree(GeodeticWithTable).get()), kNone);
  for (const auto& row : rows) {
    heights_.SetGrid(row.grid);
    for (const Kind kind : {Kind::kFile, Kind::kSystem}) {
      heights_.ChooseKind(kind);
      const HeightRefusal expected = kind == Kind::kFile ? row.fromFile : row.fromSystem;
      EXPECT_EQ(heights_.Create(HeightKind::kTable, {}), expected) << row.name;
      EXPECT_EQ(heights_.IsCurrent(), expected == kNone) << row.name;
      EXPECT_EQ(heights_.MadeData().Table != nullptr, expected == kNone) << row.name;
    }
  }
}

TEST_P(HeightCreationTest, AnOffsetStandsInForHeightsIfItIsAccepted) {
  TakeSource();
  for (const bool accepted : {false, true}) {
    EXPECT_EQ(heights_.Create(HeightKind::kOffset,
                              [&](const HeightApproximation& result) {
                                // The mean of 20.125 20.25 20.375 19.5 -19.625 19.75.
                                EXPECT_EQ(result.Offset, "13.396");
                                EXPECT_EQ(result.Max, "33.021");
                                EXPECT_EQ(result.UnitLabel, "metre (m)");
                                EXPECT_EQ(result.SourceName, heights_.Source().FileName);
                                EXPECT_NEAR(result.Errors.Get(1, 0), -33.021, 1e-9);
                                return accepted;
                              }),
              kNone);
    EXPECT_TRUE(heights_.IsCurrent()) << "also without data";
    EXPECT_EQ(heights_.MadeData().Offset, accepted ? "13.396" : "");
  }
  ASSERT_TRUE(Store(true));
  EXPECT_EQ(Text("VDATA_OFFSET") + " " + Text("VDATA_TYPE"), "13.396 2");
}

TEST_P(HeightCreationTest, AnOffsetHasNoGrid) {
  CreateTable();
  heights_.ChooseKind(Kind::kOffset);
  heights_.TakeOffsetUnit(metre_);
  EXPECT_EQ(heights_.TakeOffset("-2.50"), kNone);
  EXPECT_FALSE(heights_.IsCurrent());
  EXPECT_NE(heights_.MadeData().Table, nullptr) << "what was made stays until it is made anew";
  EXPECT_EQ(heights_.Create(HeightKind::kOffset, {}), kNone);
  ASSERT_TRUE(Store(true));
  EXPECT_EQ(Text("VDATA_OFFSET"), "-2.50");
  EXPECT_EQ(Text("VDATA_UNIT_AUTOKEY"), std::to_string(metre_));
  EXPECT_EQ(Text("VDATA_EXTENTS_WEST") + Text("VDATA_FILENAME"), "");
  EXPECT_THAT(Files(), IsEmpty());
  ASSERT_TRUE(SetPlane());
  EXPECT_EQ(heights_.StartEdit(), kNone);
  EXPECT_EQ(heights_.Source().Kind, Kind::kOffset);
  EXPECT_EQ(heights_.MadeData().Offset, "-2.50");
  EXPECT_TRUE(heights_.IsCurrent());
}

TEST_P(HeightCreationTest, StaleDataAreStoredOnTheGridOfTheirMaking) {
  CreateTable();
  heights_.ChooseKind(Kind::kFile);
  EXPECT_TRUE(heights_.IsCurrent()) << "the source is the same";
  heights_.SetGrid({"0", "9", "0", "9", "1", "1"});
  EXPECT_FALSE(heights_.IsCurrent());
  ASSERT_TRUE(Store(true));
  EXPECT_EQ(Text("VDATA_EXTENTS_EAST"), "38");
}

TEST_P(HeightCreationTest, ACancellingUserLosesNothing) {
  StoreTable();
  const std::string file = Text("VDATA_FILENAME");
  ASSERT_EQ(heights_.StartEdit(), kNone);
  database_.ui.cancels = true;
  EXPECT_FALSE(Store(false));
  EXPECT_NE(heights_.Target(), nullptr) << "the run goes on";
  EXPECT_EQ(Text("VDATA_FILENAME"), file);
  EXPECT_EQ(FileText(), HeightText());
  EXPECT_EQ(heights_.TakeFile(File(HeightText())), kCancelled);
  database_.ui.cancels = false;
  TakeSource();
  database_.ui.cancels = true;
  for (const auto kind : {HeightKind::kTable, HeightKind::kOffset}) {
    EXPECT_EQ(heights_.Create(kind, {}), kNone);
    EXPECT_EQ(heights_.MadeData().Kind(), std::nullopt);
    EXPECT_EQ(heights_.Failure(), "") << "he knows";
  }
}

class HeightCreationInAFolder : public HeightCreationTest {};
INSTANTIATE_TEST_SUITE_P(Forms, HeightCreationInAFolder, testing::Values(false));

TEST_P(HeightCreationInAFolder, KeepsRecordAndFileWhereTheNewFileIsRefused) {
  StoreTable();
  const int key = Records().GetCurrentKey();
  ASSERT_EQ(heights_.StartEdit(), kNone);
  const Strings before = Files();
  // A file stands where the folder should be.
  const std::filesystem::path folder = database_.path + "/Heights";
  std::filesystem::rename(folder, folder.string() + ".away");
  ASSERT_TRUE(SaveStorageFile(folder.string(), false, "x"));
  EXPECT_THROW((void)Store(false, "Andes"), ToldStorageError);
  EXPECT_THAT(database_.ui.messages, SizeIs(1));
  EXPECT_NE(heights_.Target(), nullptr) << "the run goes on";
  std::filesystem::remove(folder);
  std::filesystem::rename(folder.string() + ".away", folder);
  ASSERT_TRUE(Records().LocateKey(key));
  EXPECT_EQ(Text("NAME"), "Alps");
  EXPECT_EQ(FileText(), HeightText());
  EXPECT_EQ(Files(), before);
  EXPECT_TRUE(Store(false, "Andes")) << "once there is room";
  EXPECT_THAT(Files(), ElementsAre("Andes"));
}

}  // namespace
}  // namespace refframe_tests
