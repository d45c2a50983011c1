// What only reference systems do: bodies by kind, primaries made up for the way, exchange subtrees.

#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "platform/dbset/write_group.h"
#include "tests/support/sample_trees.h"
#include "tests/support/test_database.h"

namespace refframe_tests {
namespace {

using QvCommonUtils::TStringTree;
using enum QvRefSystem::TObjectType;

std::string Value(const TStringTree* tree, int id) {
  std::string value;
  return tree != nullptr && tree->GetString(id, 0, &value) ? value : "(none)";
}

// A database of either form, and its systems.
class DatabaseOfSystems {
 public:
  explicit DatabaseOfSystems(bool resourceForm) : database_(resourceForm) {}

 protected:
  [[nodiscard]] QvRefSystem::TQvRfDataProcessor& Systems() const {
    return database_.Processor(kReferenceSystem);
  }
  int Insert(int kind) const {  // NOLINT(modernize-use-nodiscard)
    return Systems().InsertFromTree(MakeTree(SystemTree, kind).get());
  }
  void SetField(const char* name, int value) const {
    Systems().DataSet->Edit();
    Systems().DataSet->FieldByName(name).SetInteger(value);
    Systems().DataSet->Post();
  }
  TestDatabase database_;
};

class ReferenceSystems : public testing::Test, protected DatabaseOfSystems {
 protected:
  ReferenceSystems() : DatabaseOfSystems(false) {}
};

// The ids of a tree's own members in order; subtrees follow the fields in a tree of their own.
std::string Ids(const TStringTree* tree) {
  std::string ids;
  for (const auto& field : tree->Fields)
    ids += std::to_string(field->Id) + " ";
  ids += "|";
  for (const auto& subtree : tree->Subtrees)
    ids += " " + std::to_string(subtree->Id);
  return ids;
}

TEST_F(ReferenceSystems, WriteTheBodyOfTheirKindInOrder) {
  const struct {
    int kind;
    const char* ids;
  } rows[] = {
      {1, "1020 1021 1022 1100 1400 1025 1025 1025 | 2000 1104 101000"},
      {2, "1020 1021 1022 1100 1400 1025 1025 1025 1120 1120 | 2000 1104 1103 101000"},
      {3, "1020 1021 1022 1100 1025 1025 1025 102005 | 2000 1101 1104 1107 101000"},
      {4,
       "1020 1021 1022 1100 1025 1025 1025 101001 102001 102005 | 2000 1106 1101 1201 1107 "
       "101000"},
      {5,
       "1020 1021 1022 1100 1025 1025 1025 101001 102001 102005 | 2000 1101 1201 1104 1300 1121 "
       "1107 101000"},
      {6, "1020 1021 1022 1100 1400 1025 1025 1025 1120 1120 1120 1122 | 2000 1104 1121 101000"},
  };
  for (const auto& row : rows) {
    ASSERT_GT(Insert(row.kind), 0);
    const TreePtr tree = WrittenTree(Systems());
    EXPECT_EQ(Ids(tree.get()), row.ids) << row.kind;
  }
}

TEST_F(ReferenceSystems, KeepTheirPlaceWhileThePrimaryIsWritten) {
  const int key = Insert(5);
  EXPECT_TRUE(Systems().WriteToTree(nullptr, 0, 0));
  TStringTree tree;
  ASSERT_TRUE(Systems().WriteToTree(&tree, 77, 3));
  EXPECT_EQ(Systems().GetCurrentKey(), key);
  const TStringTree* own = FindSubtree(&tree, 77, 3);
  ASSERT_NE(own, nullptr);
  EXPECT_EQ(own->Label, "reference system");
  EXPECT_EQ(Value(FindSubtree(own, 1121, 0), 1020), "NAD27 geodetic");
  // The unit stands at the level of the system and inside the heights.
  EXPECT_EQ(Value(FindSubtree(own, 1104, 0), 5320), "metre");
  EXPECT_EQ(Value(FindSubtree(FindSubtree(own, 1201, 0), 1104, 0), 5320), "metre");
}

TEST_F(ReferenceSystems, MakeUpAPrimaryThatIsKeptOnlyWithACode) {
  Insert(5);
  SetField("PRIMARY_REFSYSTEM_AUTOKEY", 0);
  const int without = Systems().GetCurrentKey();
  const TreePtr tree = WrittenTree(Systems());
  TStringTree* primary = FindSubtree(tree.get(), 1121, 0);
  EXPECT_EQ(primary->Label, "primary reference system");
  EXPECT_EQ(Value(primary, 1020), "Primary ref. system");
  EXPECT_EQ(Value(primary, 102005), "26705");  // the projected system's own
  EXPECT_EQ(Value(FindSubtree(primary, 1106, 0), 5320), "Radian");

  // Without the code the system is found as it is; with it both are stored once, then found.
  TStringTree noCode;
  MergeTree(tree.get(), &noCode);
  RemoveField(FindSubtree(&noCode, 1121, 0), 102005, 0);
  EXPECT_EQ(Systems().InsertFromTree(&noCode), without);
  const int count = Systems().DataSet->RecordCount();
  const int with = Systems().InsertFromTree(tree.get());
  EXPECT_NE(with, without);
  EXPECT_EQ(Systems().DataSet->RecordCount(), count + 2);
  EXPECT_EQ(Systems().InsertFromTree(tree.get()), with);
  EXPECT_EQ(Systems().DataSet->RecordCount(), count + 2);
}

TEST_F(ReferenceSystems, TravelWithTheirMifCodesWholeOrNotAtAll) {
  Insert(5);
  TreePtr tree = WrittenTree(Systems());
  const TStringTree* exported = FindSubtree(tree.get(), 101000, 0);
  ASSERT_NE(exported, nullptr);
  EXPECT_EQ(Ids(exported), "101001 101003 101002 |");
  EXPECT_EQ(Value(exported, 101001), "8");
  EXPECT_EQ(Value(exported, 101003), "62");

  // A negative datum code stands for a datum of the user's, told by its ellipsoid.
  auto& values = database_.data->datasetParamValue;
  const auto setDatumCode = [&](const std::string& value) {
    values.MoveTo(values.FindFirst(
        {QvPlatform::RowMatch::Integer(0, 2), QvPlatform::RowMatch::Integer(2, 3)}));
    values.Edit();
    values.FieldByName("VALUE").SetString(value);
    values.Post();
  };
  setDatumCode("-1");
  tree = WrittenTree(Systems());
  EXPECT_EQ(Ids(FindSubtree(tree.get(), 101000, 0)), "101001 101004 101002 |");

  // A unit without a name drops the whole subtree, and the system is written all the same.
  values.MoveTo(
      values.FindFirst({QvPlatform::RowMatch::Integer(0, 8), QvPlatform::RowMatch::Integer(2, 3)}));
  values.Delete();
  ASSERT_TRUE(Systems().WriteToTree(tree.get(), 0, 0));
  EXPECT_EQ(FindSubtree(tree.get(), 101000, 0), nullptr);
}

TEST_F(ReferenceSystems, RefuseTreesThatAreNotWhole) {
  const struct {
    const char* name;
    int kind;
    std::vector<int> path;
    int id;
    const char* value;  // null: the subtree `id` goes
  } rows[] = {
      {"a kind of 7", 1, {}, 1100, "7"},
      {"a kind of 0", 1, {}, 1100, "0"},
      {"a kind in words", 1, {}, 1100, "one"},
      {"a geodetic without heights", 4, {}, 1201, nullptr},
      {"a geodetic without unit of heights", 4, {1201}, 1104, nullptr},
      {"a geodetic without datum", 4, {}, 1107, nullptr},
      {"a topocentric without primary", 6, {}, 1121, nullptr},
      {"a projected without projection", 5, {}, 1300, nullptr},
      {"a primary of kind 7 with a code", 5, {1121}, 1100, "7"},
      {"a kind beyond 32 bits", 4, {}, 1100, "4294967300"},
      {"a swap that is no number", 1, {}, 1400, "yes"},
      {"a datum without ellipsoid", 4, {1107}, 5610, nullptr},
      {"a shift of type 9", 3, {1107, 1102, 5443}, 5701, "9"},
  };
  for (const auto& row : rows) {
    const TreePtr tree = MakeTree(SystemTree, row.kind);
    TStringTree* cursor = tree.get();
    for (const int id : row.path)
      ASSERT_TRUE(EnterSubtree(&cursor, id, 0));
    if (row.value == nullptr) {
      ASSERT_NE(FindSubtree(cursor, row.id, 0), nullptr) << row.name;
      RemoveSubtree(cursor, row.id, 0);
    } else {
      ReplaceField(cursor, row.id, row.value);
    }
    EXPECT_EQ(Systems().InsertFromTree(tree.get()), 0) << row.name;
  }
  // Heights of no kind, a geoid without a code, and heights of a kind that is not known.
  const TreePtr tree = MakeTree(SystemTree, 4);
  TreeBuilder heights = TreeBuilder(tree.get()).Sub(1500).Field(1502, "heights");
  EXPECT_EQ(Systems().InsertFromTree(tree.get()), 0);
  heights.Field(1501, "3");
  EXPECT_EQ(Systems().InsertFromTree(tree.get()), 0);
  FindField(FindSubtree(tree.get(), 1500, 0), 1501, 0)->SetValueText("9", 0);
  EXPECT_THROW(Systems().InsertFromTree(tree.get()), QvRefSystem::InvalidTypeError);
  // The primaries of two refused systems were stored ahead of the refusal, as one record.
  EXPECT_EQ(Systems().DataSet->RecordCount(), 1);
  EXPECT_TRUE(Systems().LocateKey(1));
  EXPECT_FALSE(Systems().DataSet->ControlsDisabled());
}

TEST_F(ReferenceSystems, AreNotWrittenWithAReferenceToNothing) {
  const struct {
    const char* column;
    int kind;
  } rows[] = {{"DATUM_AUTOKEY", 4},
              {"LINEAR_UNIT_AUTOKEY", 1},
              {"MAP_PROJ_AUTOKEY", 5},
              {"ELLIPSOID_AUTOKEY", 2},
              {"PRIMARY_REFSYSTEM_AUTOKEY", 6},
              {"PRIMARY_REFSYSTEM_AUTOKEY", 5},
              {"VERT_SYSTEM_AUTOKEY", 4},
              {"TYPE", 1}};
  for (const auto& row : rows) {
    TestDatabase database;
    auto& systems = database.Processor(kReferenceSystem);
    ASSERT_GT(systems.InsertFromTree(MakeTree(SystemTree, row.kind).get()), 0);
    systems.DataSet->Edit();
    systems.DataSet->FieldByName(row.column).SetInteger(4711);
    systems.DataSet->Post();
    const int key = systems.GetCurrentKey();
    TStringTree tree;
    EXPECT_FALSE(systems.WriteToTree(&tree, 0, 0)) << row.column;
    EXPECT_EQ(systems.GetCurrentKey(), key) << row.column;
  }
  // A primary that is the system itself has no end.
  Insert(6);
  SetField("PRIMARY_REFSYSTEM_AUTOKEY", Systems().GetCurrentKey());
  TStringTree tree;
  EXPECT_FALSE(Systems().WriteToTree(&tree, 0, 0));
}

// A chain of primaries that is deeper than a tree can be fails by itself and spoils no other.
TEST_F(ReferenceSystems, AreWrittenAfterAChainThatIsTooLong) {
  const int first = Insert(4);
  int last = first;
  {
    QvPlatform::TQvWriteGroup group(database_.data->WritableTables());
    for (int i = 0; i < 300; ++i) {
      const int primary = last;
      Insert(6);
      SetField("NAME", i);
      SetField("PRIMARY_REFSYSTEM_AUTOKEY", primary);
      last = Systems().GetCurrentKey();
    }
    group.Commit();
  }
  TStringTree tree;
  ASSERT_TRUE(Systems().LocateKey(last));
  EXPECT_THROW((void)Systems().WriteToTree(&tree, 0, 0), std::runtime_error);
  for (const int key : {first, first + 100, first + 5}) {
    ASSERT_TRUE(Systems().LocateKey(key));
    EXPECT_TRUE(Systems().WriteToTree(&tree, 0, 0)) << key;
  }
}

TEST_F(ReferenceSystems, OfLocalKindLeaveTheirOriginWhereSystemsAreExchanged) {
  const int key = Insert(2);
  database_.data->ShowImportExport = true;
  const TreePtr tree = WrittenTree(Systems());
  EXPECT_EQ(FindField(tree.get(), 1120, 0), nullptr);
  EXPECT_EQ(Systems().InsertFromTree(tree.get()), key);
}

TEST_F(ReferenceSystems, StoreWhatTheyAreBuiltFromOnceForAll) {
  for (int kind = 1; kind <= 6; ++kind)
    Insert(kind);
  EXPECT_EQ(Systems().DataSet->RecordCount(), 6);
  for (const auto part :
       {kLinearUnit, kAngularUnit, kEllipsoid, kDatum, kPrimeMeridian, kMapProjection})
    EXPECT_EQ(database_.Processor(part).DataSet->RecordCount(), 1) << static_cast<int>(part);
}

TEST_F(ReferenceSystems, AreWrittenByOneThreadAfterAnother) {
  ASSERT_GT(Insert(5), 0);
  for (int round = 0; round < 2; ++round) {
    std::thread([&] {
      TStringTree tree;
      EXPECT_TRUE(Systems().WriteToTree(&tree, 0, 0));
      EXPECT_EQ(Value(FindSubtree(&tree, 1104, 0), 5320), "metre");
    }).join();
  }
}

// Heights of a system, of each kind, in both forms of a database.
class SystemsWithHeights : public testing::TestWithParam<bool>, protected DatabaseOfSystems {
 protected:
  SystemsWithHeights() : DatabaseOfSystems(GetParam()) {}
  struct Sample {
    const char* name;
    void (*write)(TreeBuilder);
    int records;
    int files;
  };
  static constexpr Sample kSamples[] = {{"table", HeightTableTree, 1, 1},
                                        {"offset", HeightOffsetTree, 1, 0},
                                        {"geoid", SystemGeoidTree, 0, 0}};
  [[nodiscard]] int Records() const {
    return database_.data->datasetVerticalRefSystem.RecordCount();
  }
  [[nodiscard]] int Files() const {
    return static_cast<int>(
        QvRefSystem::ListStorageFiles(database_.data->GetHeightsPrefix(), GetParam()).size());
  }
  static TreePtr Tree(int kind, void (*heights)(TreeBuilder)) {
    TreePtr tree = MakeTree(SystemTree, kind);
    heights(TreeBuilder(tree.get()).Sub(1500));
    return tree;
  }
  using DatabaseOfSystems::Insert;
  [[nodiscard]] int Insert(int kind, void (*heights)(TreeBuilder)) const {
    return Systems().InsertFromTree(Tree(kind, heights).get());
  }
};

INSTANTIATE_TEST_SUITE_P(Forms, SystemsWithHeights, testing::Bool(), FormName{});

TEST_P(SystemsWithHeights, AreFoundAgainByWhatTheyWrite) {
  for (const int kind : {4, 5}) {
    for (const Sample& sample : kSamples) {
      const int records = Records() + sample.records;
      const int files = Files() + sample.files;
      const int key = Insert(kind, sample.write);
      ASSERT_GT(key, 0) << sample.name;
      EXPECT_EQ(Records(), records) << sample.name;
      EXPECT_EQ(Files(), files) << sample.name;
      const TreePtr written = WrittenTree(Systems());
      ASSERT_NE(FindSubtree(written.get(), 1500, 0), nullptr) << sample.name;
      TStringTree fromText;
      ReadTreeText(WriteTreeText(written.get()), &fromText);
      ASSERT_TRUE(SameTree(written.get(), &fromText)) << sample.name;
      TStringTree fromXml;
      ReadTreeXml(WriteTreeXml(written.get()), &fromXml);
      ASSERT_TRUE(SameTree(written.get(), &fromXml)) << sample.name;
      const std::vector<int> counts = database_.Counts();
      EXPECT_EQ(Systems().InsertFromTree(&fromText), key) << sample.name;
      EXPECT_EQ(Systems().InsertFromTree(&fromXml), key) << sample.name;
      EXPECT_EQ(database_.Counts(), counts) << sample.name;
      EXPECT_EQ(Files(), files) << sample.name;
      const TreePtr again = WrittenTree(Systems());
      EXPECT_TRUE(SameTree(written.get(), again.get())) << "the found system keeps its heights";
    }
  }
}

TEST_P(SystemsWithHeights, DifferByTheirHeights) {
  const int none = Systems().InsertFromTree(MakeTree(SystemTree, 4).get());
  std::set<int> keys{none};
  for (const Sample& sample : kSamples)
    keys.insert(Insert(4, sample.write));
  keys.insert(Insert(4, [](TreeBuilder tree) {
    tree.Field(1512, "17");
    HeightTableTree(tree);
  }));
  EXPECT_EQ(keys.size(), 5U);
  EXPECT_FALSE(keys.contains(0));
  EXPECT_EQ(Systems().InsertFromTree(MakeTree(SystemTree, 4).get()), none);
  // Heights that are not whole are none.
  EXPECT_EQ(Insert(4, [](TreeBuilder tree) { tree.Field(1501, "2"); }), none);
  EXPECT_EQ(Records(), 3);
  EXPECT_EQ(Files(), 2);
}

TEST_P(SystemsWithHeights, OfOtherKindsOnlyWriteThem) {
  database_.data->ShowImportExport = true;
  ASSERT_GT(Insert(4, HeightOffsetTree), 0);
  const int vertical = Systems().DataSet->FieldByName("VERT_SYSTEM_AUTOKEY").AsInteger();
  for (const int kind : {1, 2, 3, 6}) {
    const int records = Records();
    const int key = Insert(kind, HeightTableTree);
    ASSERT_GT(key, 0) << kind;
    EXPECT_EQ(Records(), records) << "heights are not read by kind " << kind;
    SetField("VERT_SYSTEM_AUTOKEY", vertical);
    const TreePtr tree = WrittenTree(Systems());
    EXPECT_EQ(FindField(tree.get(), 1120, 0) != nullptr, kind == 6) << kind;
    const TStringTree* heights = FindSubtree(tree.get(), 1500, 0);
    ASSERT_NE(heights, nullptr) << kind;
    EXPECT_EQ(Value(heights, 1513), "-2.33");
    EXPECT_EQ(Systems().InsertFromTree(tree.get()), key)
        << "heights are not compared by kind " << kind;
  }
}

TEST_P(SystemsWithHeights, TakeThemAlongWhenTheyGo) {
  const int offset = Insert(4, HeightOffsetTree);
  ASSERT_GT(Insert(5, HeightTableTree), 0);
  database_.ui.answers = {QvPlatform::MessageAnswer::kNo};
  EXPECT_TRUE(Systems().DeleteRecord(nullptr));
  EXPECT_EQ(Files(), 1);
  EXPECT_TRUE(Systems().DeleteRecord(nullptr));
  EXPECT_EQ(Records(), 1);
  EXPECT_EQ(Files(), 0);
  ASSERT_TRUE(Systems().LocateKey(offset));
  TStringTree tree;
  EXPECT_TRUE(Systems().WriteToTree(&tree, 0, 0));
  EXPECT_TRUE(Systems().DeleteRecord(nullptr));
  EXPECT_EQ(Records(), 0);
}

TEST_P(SystemsWithHeights, AreWrittenWithOneKnownKindOfThem) {
  ASSERT_GT(Insert(4, SystemGeoidTree), 0);
  TreePtr tree = WrittenTree(Systems());
  EXPECT_EQ(Value(FindSubtree(tree.get(), 1500, 0), 1503), "SystemGeoid; Code=5773");
  EXPECT_EQ(Value(FindSubtree(tree.get(), 1500, 0), 1521), "5773");
  SetField("VERT_SYSTEM_CODE", 1);
  EXPECT_FALSE(Systems().WriteToTree(tree.get(), 0, 0)) << "a geoid that is not known";
  ASSERT_GT(Insert(4, HeightOffsetTree), 0);
  SetField("VERT_SYSTEM_CODE", 5773);
  EXPECT_FALSE(Systems().WriteToTree(tree.get(), 0, 0)) << "an offset and a geoid";
}

}  // namespace
}  // namespace refframe_tests
