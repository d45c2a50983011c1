// Height systems and their files, in both forms of a database.

#include "vertical/vertical_processor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/vertical/height_fixture.h"

namespace refframe_tests {
namespace {

using QvCommonUtils::TStringTree;
using QvRefSystem::TObjectType;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class HeightSystems : public HeightTest {
 protected:
  [[nodiscard]] int Count() const { return heights_.DataSet->RecordCount(); }
  void DeleteFile() const {
    const auto path = heights_.CurrentHeightFile();
    ASSERT_TRUE(path && QvRefSystem::DeleteStorageFile(*path, InContainer()));
  }
  void Set(const char* field, const std::string& value) { HeightTest::Set(heights_, field, value); }
  int Insert(void (*sample)(TreeBuilder)) {
    return heights_.InsertFromTree(MakeTree(sample).get());
  }
  // Inserts a sample with one member changed; a null value takes the member away.
  int InsertWith(void (*sample)(TreeBuilder), int id, const char* value) {
    const TreePtr tree = MakeTree(sample);
    RemoveField(tree.get(), id, 0);
    if (value != nullptr) EnsureField(tree.get(), id, 0, value, "changed");
    return heights_.InsertFromTree(tree.get());
  }
  // Another file comes into the place of the open one, as when a copy is put back: whatever is
  // written from now on is refused.
  /// The file that holds the records of heights.
  [[nodiscard]] std::filesystem::path Medium() const {
    const std::filesystem::path path(database_.path);
    return InContainer() ? path : path / "vertical_refsystem.dat";
  }

  QvRefSystem::TQvRfVerticalRefSystemDataProcessor& heights_ = Records();
};

INSTANTIATE_TEST_SUITE_P(Forms, HeightSystems, testing::Bool(), FormName{});

// Ids, labels and values of a tree's fields in order.
Strings Members(const TStringTree& tree) {
  Strings members;
  for (const auto& field : tree.Fields) {
    members.push_back(std::to_string(field->Id) + " " + std::string(field->Label) + " " +
                      std::string(field->GetValueText(0)));
  }
  return members;
}

TEST_P(HeightSystems, WithATableTravelOnOneLine) {
  const int key = Insert(HeightTableTree);
  ASSERT_GT(key, 0);
  EXPECT_EQ(heights_.GetCurrentKey(), key);
  EXPECT_EQ(Text("VDATA_FILENAME"), "Alps");
  EXPECT_EQ(Text("VDATA_CRC32"), std::to_string(HeightCrc()));
  EXPECT_EQ(Text("VDATA_FORMAT") + Text("FAVOUR"), "00");
  // A file as it is made here has lines; in a tree they are blanks.
  SaveFile(HeightText());
  TStringTree written;
  ASSERT_TRUE(heights_.WriteToTree(&written, 0, 0));
  const std::string line = "54 55 36 38 1 1 20.125 20.250 20.375  19.500 -19.625 19.750  ";
  EXPECT_THAT(
      Members(written),
      ElementsAre("1502 name Alps", "1503 description A table", "1504 abbreviation ALP",
                  "1501 type 1", "1512 crc32 " + std::to_string(HeightCrc()), "1511 table " + line,
                  "1515 extents North 55", "1516 extents East 38", "1517 extents South 54",
                  "1518 extents West 36", "1519 cell North-South 1", "1520 cell East-West 1"));
  for (const bool xml : {false, true}) {
    TStringTree read;
    if (xml) {
      ReadTreeXml(WriteTreeXml(&written), &read);
    } else {
      ReadTreeText(WriteTreeText(&written), &read);
    }
    EXPECT_GT(heights_.InsertFromTree(&read), key);
    EXPECT_EQ(FileText(), line);
    EXPECT_TRUE(heights_.IsSameRecord(key)) << "the name of the file does not count";
    EXPECT_EQ(FindField(&read, 201001, -1), nullptr) << "no notes are left";
  }
  EXPECT_EQ(Count(), 3);
  EXPECT_THAT(Files(), InContainer() ? UnorderedElementsAre("Alps", "Alps_1", "Alps_2")
                                     : UnorderedElementsAre("Alps", "Alps[1]", "Alps[2]"));
}

TEST_P(HeightSystems, WithAnOffsetBringTheirUnit) {
  const int key = Insert(HeightOffsetTree);
  ASSERT_GT(key, 0);
  EXPECT_EQ(database_.data->datasetLinearUnit.RecordCount(), 1);
  EXPECT_EQ(heights_.CurrentHeightFile(), std::nullopt);
  TStringTree tree;
  ASSERT_TRUE(heights_.WriteToTree(&tree, 1500, 0));
  TStringTree* written = FindSubtree(&tree, 1500, 0);
  EXPECT_EQ(written->Label, "height system");
  EXPECT_THAT(Members(*written),
              ElementsAre("1502 name Harbour", "1503 description An offset",
                          "1504 abbreviation HBR", "1501 type 2", "1513 offset -2.33"));
  EXPECT_NE(FindSubtree(written, 1514, 0), nullptr);
  EXPECT_GT(heights_.InsertFromTree(written), key);
  EXPECT_EQ(database_.data->datasetLinearUnit.RecordCount(), 1);
  EXPECT_THAT(Files(), IsEmpty());

  Set("VDATA_UNIT_AUTOKEY", "77");
  EXPECT_FALSE(heights_.WriteToTree(&tree, 0, 0));
}

TEST_P(HeightSystems, KeepAWholeGridOrNone) {
  const struct {
    const char* name;
    int id;
    const char* value;
    const char* north;
    const char* cell;
  } rows[] = {{"no west", 1518, nullptr, "", ""},
              {"an empty west", 1518, "", "", ""},
              {"one cell size", 1520, nullptr, "55", ""},
              {"all", 1520, "2", "55", "1"}};
  TStringTree written;
  for (const auto& row : rows) {
    ASSERT_GT(InsertWith(HeightTableTree, row.id, row.value), 0) << row.name;
    EXPECT_EQ(Text("VDATA_EXTENTS_NORTH"), row.north) << row.name;
    EXPECT_EQ(Text("VDATA_CELL_NORTH_SOUTH"), row.cell) << row.name;
    ASSERT_TRUE(heights_.WriteToTree(&written, 0, 0));
    EXPECT_EQ(FindField(&written, 1515, 0) != nullptr, *row.north != '\0') << row.name;
    EXPECT_EQ(FindField(&written, 1519, 0) != nullptr, *row.cell != '\0') << row.name;
  }
  // An offset keeps a grid as well, and writes no cells.
  const TreePtr tree = MakeTree(HeightOffsetTree);
  for (int id = 1515; id <= 1520; ++id)
    TreeBuilder(tree.get()).Field(id, "3");
  ASSERT_GT(heights_.InsertFromTree(tree.get()), 0);
  EXPECT_EQ(Text("VDATA_CELL_EAST_WEST"), "3");
  ASSERT_TRUE(heights_.WriteToTree(&written, 0, 0));
  EXPECT_NE(FindField(&written, 1518, 0), nullptr);
  EXPECT_EQ(FindField(&written, 1519, 0), nullptr);
}

TEST_P(HeightSystems, ThatAreNotWholeAreNotTaken) {
  for (const int id : {1501, 1502, 1503, 1504, 1511, 1512})
    EXPECT_EQ(InsertWith(HeightTableTree, id, nullptr), 0) << id;
  for (const char* kind : {"0", "2", "3", "9", "one"})
    EXPECT_EQ(InsertWith(HeightTableTree, 1501, kind), 0) << kind;
  EXPECT_EQ(InsertWith(HeightOffsetTree, 1513, nullptr), 0);
  const TreePtr tree = MakeTree(HeightOffsetTree);
  RemoveField(FindSubtree(tree.get(), 1514, 0), 5320, 0);
  EXPECT_EQ(heights_.InsertFromTree(tree.get()), 0);
  EXPECT_EQ(heights_.InsertFromTree(nullptr), 0);
  EXPECT_EQ(Count(), 0);
  EXPECT_THAT(Files(), IsEmpty());
  EXPECT_FALSE(heights_.DataSet->ControlsDisabled());
  EXPECT_THAT(database_.ui.messages, IsEmpty());
}

TEST_P(HeightSystems, CompareWhatTheirKindHas) {
  const struct {
    void (*sample)(TreeBuilder);
    int id;
    const char* value;
    bool same;
  } rows[] = {{HeightTableTree, 1503, "other", true},   {HeightTableTree, 1504, "other", true},
              {HeightTableTree, 1511, "1 2 3", true},   {HeightTableTree, 1502, "ALPS", false},
              {HeightTableTree, 1512, "-5", false},     {HeightTableTree, 1515, "55.0", false},
              {HeightTableTree, 1520, "2", false},      {HeightOffsetTree, 1513, "-2.330", false},
              {HeightOffsetTree, 1502, "Hafen", false}, {HeightOffsetTree, 1503, "other", true}};
  for (const auto& row : rows) {
    const int key = Insert(row.sample);
    ASSERT_GT(key, 0);
    const int other = InsertWith(row.sample, row.id, row.value);
    ASSERT_GT(other, 0);
    EXPECT_EQ(heights_.IsSameRecord(key), row.same) << row.id << " " << row.value;
    EXPECT_EQ(heights_.GetCurrentKey(), other);
    EXPECT_FALSE(heights_.IsSameRecord(0));
    EXPECT_FALSE(heights_.IsSameRecord(4711));
  }
  // In another unit an offset is another one, and it is no table of its name.
  const int offset = Insert(HeightOffsetTree);
  const TreePtr feet = MakeTree(HeightOffsetTree);
  TStringTree* unit = FindSubtree(feet.get(), 1514, 0);
  RemoveField(unit, 5301, 0);
  TreeBuilder(unit).Field(5301, "9002");
  ASSERT_GT(heights_.InsertFromTree(feet.get()), 0);
  EXPECT_FALSE(heights_.IsSameRecord(offset));
  ASSERT_GT(InsertWith(HeightTableTree, 1502, "Harbour"), 0);
  EXPECT_FALSE(heights_.IsSameRecord(offset));
}

TEST_P(HeightSystems, KeepTheirFilesWhereHeightsLie) {
  const char* const names[] = {"../../x", "a/b", "..", "CON", "x.y", "C:\\z", " ", "a\tb"};
  for (const char* name : names) {
    ASSERT_GT(InsertWith(HeightTableTree, 1502, name), 0) << name;
    EXPECT_EQ(Text("NAME"), name);
    EXPECT_THAT(FileText(), HasSubstr("20.125")) << name;
    ASSERT_TRUE(heights_.DuplicateCurrent()) << name;
    EXPECT_THAT(FileText(), HasSubstr("20.125")) << name;
  }
  EXPECT_EQ(Files().size(), 2 * std::size(names)) << "nothing came to lie anywhere else";
}

TEST_P(HeightSystems, LeaveFilesThatTheirRecordsNameElsewhere) {
  const std::string outside = database_.folder.Path("outside");
  ASSERT_TRUE(QvRefSystem::SaveStorageFile(outside, false, HeightText()));
  Insert(HeightTableTree);
  Set("VDATA_FILENAME", "../../outside");
  TStringTree tree;
  EXPECT_FALSE(heights_.WriteToTree(&tree, 0, 0));
  EXPECT_TRUE(tree.Fields.empty());
  EXPECT_FALSE(heights_.DuplicateCurrent());
  EXPECT_TRUE(heights_.DeleteRecord(nullptr));
  EXPECT_EQ(Count(), 0);
  EXPECT_TRUE(std::filesystem::exists(outside));
}

TEST_P(HeightSystems, GoWithTheirFilesAndWithoutAQuestion) {
  const int first = Insert(HeightTableTree);
  const int second = Insert(HeightTableTree);
  ASSERT_TRUE(heights_.LocateKey(first));
  EXPECT_TRUE(heights_.DeleteRecord(nullptr));
  EXPECT_EQ(heights_.GetCurrentKey(), second);
  EXPECT_EQ(Files().size(), 1U);
  EXPECT_THAT(FileText(), HasSubstr("20.125"));
  // A record whose file is gone goes as well.
  DeleteFile();
  EXPECT_TRUE(heights_.DeleteRecord(nullptr));
  EXPECT_TRUE(heights_.DeleteRecord(nullptr)) << "of an empty table nothing goes";
  EXPECT_EQ(Count(), 0);
  EXPECT_THAT(database_.ui.messages, IsEmpty());

  // A user is asked by those whom he drives.
  Insert(HeightTableTree);
  database_.ui.answers = {QvPlatform::MessageAnswer::kNo};
  EXPECT_TRUE(heights_.DeleteWithConsent(nullptr));
  EXPECT_EQ(Count(), 1);
  EXPECT_TRUE(heights_.DeleteWithConsent(nullptr));
  EXPECT_EQ(Count(), 0);
  EXPECT_EQ(database_.ui.messages.back(),
            "Do you really want to delete \"Alps\"(vertical reference system)?");
}

TEST_P(HeightSystems, DoNotTakeTheFileOfAnother) {
  const int first = Insert(HeightTableTree);
  DeleteFile();
  ASSERT_GT(Insert(HeightTableTree), 0);
  EXPECT_EQ(Text("VDATA_FILENAME"), "1 Alps") << "the first record still names its own";
  // A file that two records name all the same stays as long as one of them does.
  Set("VDATA_FILENAME", "Alps");
  SaveFile(HeightText());
  EXPECT_TRUE(heights_.DeleteRecord(nullptr));
  EXPECT_EQ(heights_.GetCurrentKey(), first);
  EXPECT_EQ(FileText(), HeightText());
}

// Of the same size, still a table: only what was kept of the file tells the difference.
TEST_P(HeightSystems, RefuseAFileThatWasDamagedOrExchanged) {
  Insert(HeightTableTree);
  std::string damaged = FileText();
  damaged[damaged.find("20.125") + 1] = '1';
  ASSERT_TRUE(QvRefSystem::SaveStorageFile(*heights_.CurrentHeightFile(), GetParam(), damaged));
  TStringTree tree;
  EXPECT_FALSE(heights_.WriteToTree(&tree, 0, 0));
  EXPECT_FALSE(heights_.DuplicateCurrent());
  EXPECT_THAT(database_.ui.messages, testing::Each(HasSubstr("damaged or exchanged")));
  EXPECT_THAT(database_.Findings(), testing::Contains(HasSubstr("damaged or exchanged")));
}

// A folder tells "Alps" from "ALPS", a container does not: each record has its own file, which goes
// with it and with no other.
TEST_P(HeightSystems, ThatDifferByCaseAloneHaveTheirOwnFiles) {
  const int first = Insert(HeightTableTree);
  const TreePtr other = MakeTree(HeightTableTree);
  ReplaceField(other.get(), 1502, "ALPS");
  const int second = heights_.InsertFromTree(other.get());
  EXPECT_EQ(Text("VDATA_FILENAME"), GetParam() ? "ALPS_1" : "ALPS");
  for (const int key : {first, second}) {
    ASSERT_TRUE(heights_.LocateKey(key));
    EXPECT_THAT(FileText(), HasSubstr("20.125"));
    EXPECT_TRUE(heights_.DeleteRecord(nullptr));
    EXPECT_EQ(Files().size(), key == first ? 1U : 0U);
  }
}

TEST_P(HeightSystems, AreCopiedWithTheirFiles) {
  EXPECT_FALSE(heights_.DuplicateCurrent());
  const int key = Insert(HeightTableTree);
  for (const auto& [field, value] : {std::pair("FAVOUR", "3"), std::pair("VDATA_FORMAT", "2"),
                                     std::pair("RESERVED1", "11"), std::pair("RESERVED5", "15")}) {
    Set(field, value);
  }
  ASSERT_TRUE(heights_.DuplicateCurrent());
  EXPECT_NE(heights_.GetCurrentKey(), key);
  EXPECT_TRUE(heights_.IsSameRecord(key));
  EXPECT_EQ(Text("FAVOUR") + Text("VDATA_FORMAT") + Text("RESERVED1") + Text("RESERVED5"),
            "321115");
  EXPECT_EQ(Text("DESCRIPTION") + Text("ABBREVIATION"), "A tableALP");
  EXPECT_EQ(Files().size(), 2U);
  EXPECT_TRUE(heights_.DeleteRecord(nullptr));
  ASSERT_TRUE(heights_.LocateKey(key));
  EXPECT_THAT(FileText(), HasSubstr("20.125"));

  // Without the file there is nothing to copy.
  DeleteFile();
  EXPECT_FALSE(heights_.DuplicateCurrent());
  EXPECT_EQ(Count(), 1);
  EXPECT_EQ(heights_.GetCurrentKey(), key);
  EXPECT_THAT(database_.ui.messages, ElementsAre(HasSubstr("Heights")));
  Insert(HeightOffsetTree);
  ASSERT_TRUE(heights_.DuplicateCurrent());
  EXPECT_EQ(Text("VDATA_OFFSET"), "-2.33");
}

TEST_P(HeightSystems, AndTheirFilesAreUndoneTogether) {
  const int kept = Insert(HeightTableTree);
  {
    const QvPlatform::TQvWriteGroup group(database_.data->WritableTables());
    ASSERT_GT(Insert(HeightTableTree), 0);
    ASSERT_TRUE(heights_.DuplicateCurrent());
    ASSERT_TRUE(heights_.LocateKey(kept));
    ASSERT_TRUE(heights_.DeleteRecord(nullptr));
    EXPECT_EQ(Count(), 2);
  }
  EXPECT_EQ(Count(), 1);
  ASSERT_TRUE(heights_.LocateKey(kept));
  EXPECT_THAT(FileText(), HasSubstr("20.125"));
  EXPECT_EQ(Files().size(), 1U);
}

TEST_P(HeightSystems, LeaveNothingWhereTheirRecordIsRefusedAndGoOnWhenTheirMediumIsBack) {
  const int key = Insert(HeightTableTree);
  const std::filesystem::path away = Medium().string() + ".away";
  std::filesystem::rename(Medium(), away);
  EXPECT_FALSE(heights_.DuplicateCurrent());
  EXPECT_EQ(heights_.DataSet->State(), QvPlatform::DataSetState::kBrowse);
  EXPECT_EQ(Insert(HeightTableTree), 0);
  heights_.DataSet->Cancel();
  ASSERT_TRUE(heights_.LocateKey(key));
  EXPECT_FALSE(heights_.DeleteRecord(nullptr));
  EXPECT_EQ(database_.ui.messages.size(), 3U);
  EXPECT_FALSE(heights_.DataSet->ControlsDisabled());
  std::filesystem::rename(away, Medium());
  EXPECT_EQ(Count(), 1);
  EXPECT_EQ(heights_.GetCurrentKey(), key);
  EXPECT_THAT(Files(), ElementsAre("Alps"));
  EXPECT_GT(Insert(HeightTableTree), key);
}

TEST(HeightSystemsInAFolder, LeaveNoRecordWhereTheirFileIsRefused) {
  TestDatabase database;
  auto& heights = *database.data->VerticalRefSystemProcessor;
  // A file stands where the folder should be.
  ASSERT_TRUE(QvRefSystem::SaveStorageFile(database.path + "/Heights", false, "x"));
  EXPECT_EQ(heights.InsertFromTree(MakeTree(HeightTableTree).get()), 0);
  EXPECT_EQ(heights.DataSet->RecordCount(), 0);
  ASSERT_EQ(database.ui.messages.size(), 1U);
  EXPECT_THAT(database.ui.messages.front(),
              testing::AllOf(testing::StartsWith(SystemText(QvPlatform::TextId::kCannotCreateFile)),
                             HasSubstr(" " + database.path + "/Heights/Alps (")));
  // Nothing stays of a system whose heights cannot be stored.
  const TreePtr system = MakeTree(SystemTree, 4);
  HeightTableTree(TreeBuilder(system.get()).Sub(1500));
  const std::vector<int> before = database.Counts();
  EXPECT_EQ(database.Processor(TObjectType::kReferenceSystem).InsertFromTree(system.get()), 0);
  EXPECT_EQ(database.Counts(), before);
}

}  // namespace
}  // namespace refframe_tests
