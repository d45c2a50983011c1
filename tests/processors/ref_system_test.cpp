// What only reference systems do: bodies by kind, primaries made up for the way, exchange subtrees.

#include <gtest/gtest.h>

#include "tests/support/sample_trees.h"
#include "tests/support/test_database.h"

namespace refframe_tests {
namespace {

using QvCommonUtils::TStringTree;
using enum QvRefSystem::TObjectType;

class ReferenceSystems : public testing::Test {
 protected:
  QvRefSystem::TQvRfDataProcessor& Systems() { return database_.Processor(kReferenceSystem); }
  int Insert(int kind) { return Systems().InsertFromTree(MakeTree(SystemTree, kind).get()); }
  void SetField(const char* name, int value) {
    Systems().DataSet->Edit();
    Systems().DataSet->FieldByName(name).SetInteger(value);
    Systems().DataSet->Post();
  }
  static std::string Value(const TStringTree* tree, int id) {
    std::string value;
    return tree != nullptr && tree->GetString(id, 0, &value) ? value : "(none)";
  }
  TestDatabase database_;
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
    TStringTree tree;
    ASSERT_TRUE(Systems().WriteToTree(&tree, 0, 0)) << row.kind;
    EXPECT_EQ(Ids(&tree), row.ids) << row.kind;
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
  TStringTree tree;
  ASSERT_TRUE(Systems().WriteToTree(&tree, 0, 0));
  TStringTree* primary = FindSubtree(&tree, 1121, 0);
  EXPECT_EQ(primary->Label, "primary reference system");
  EXPECT_EQ(Value(primary, 1020), "Primary ref. system");
  EXPECT_EQ(Value(primary, 102005), "26705");  // the projected system's own
  EXPECT_EQ(Value(FindSubtree(primary, 1106, 0), 5320), "Radian");

  // Without the code the system is found as it is; with it both are stored once, then found.
  TStringTree noCode;
  MergeTree(&tree, &noCode);
  RemoveField(FindSubtree(&noCode, 1121, 0), 102005, 0);
  EXPECT_EQ(Systems().InsertFromTree(&noCode), without);
  const int count = Systems().DataSet->RecordCount();
  const int with = Systems().InsertFromTree(&tree);
  EXPECT_NE(with, without);
  EXPECT_EQ(Systems().DataSet->RecordCount(), count + 2);
  EXPECT_EQ(Systems().InsertFromTree(&tree), with);
  EXPECT_EQ(Systems().DataSet->RecordCount(), count + 2);
}

TEST_F(ReferenceSystems, TravelWithTheirMifCodesWholeOrNotAtAll) {
  Insert(5);
  TStringTree tree;
  ASSERT_TRUE(Systems().WriteToTree(&tree, 0, 0));
  const TStringTree* exported = FindSubtree(&tree, 101000, 0);
  ASSERT_NE(exported, nullptr);
  EXPECT_EQ(Ids(exported), "101001 101003 101002 |");
  EXPECT_EQ(Value(exported, 101001), "8");
  EXPECT_EQ(Value(exported, 101003), "62");

  // A negative datum code stands for a datum of the user's, told by its ellipsoid.
  auto& values = database_.data->datasetParamValue;
  const auto setDatumCode = [&](const std::string& value) {
    values.MoveTo(
        values.FindFirst({QvPlatform::TMatch::Integer(0, 2), QvPlatform::TMatch::Integer(2, 3)}));
    values.Edit();
    values.FieldByName("VALUE").SetString(value);
    values.Post();
  };
  setDatumCode("-1");
  ASSERT_TRUE(Systems().WriteToTree(&tree, 0, 0));
  EXPECT_EQ(Ids(FindSubtree(&tree, 101000, 0)), "101001 101004 101002 |");

  // A unit without a name drops the whole subtree, and the system is written all the same.
  values.MoveTo(
      values.FindFirst({QvPlatform::TMatch::Integer(0, 8), QvPlatform::TMatch::Integer(2, 3)}));
  values.Delete();
  ASSERT_TRUE(Systems().WriteToTree(&tree, 0, 0));
  EXPECT_EQ(FindSubtree(&tree, 101000, 0), nullptr);
}

TEST_F(ReferenceSystems, CarryABuiltInGeoidByItsCode) {
  const TreePtr tree = MakeTree(SystemTree, 4);
  TreeBuilder(tree.get()).Sub(1500).Field(1501, "3").Field(1521, "5773");
  const int key = Systems().InsertFromTree(tree.get());
  ASSERT_GT(key, 0);
  EXPECT_NE(Insert(4), key);
  ASSERT_TRUE(Systems().LocateKey(key));
  TStringTree written;
  ASSERT_TRUE(Systems().WriteToTree(&written, 0, 0));
  const TStringTree* geoid = FindSubtree(&written, 1500, 0);
  ASSERT_NE(geoid, nullptr);
  EXPECT_EQ(Value(geoid, 1503), "SystemGeoid; Code=5773");
  EXPECT_EQ(Value(geoid, 1521), "5773");
  EXPECT_EQ(Systems().InsertFromTree(&written), key);

  SetField("VERT_SYSTEM_CODE", 1);
  EXPECT_FALSE(Systems().WriteToTree(&written, 0, 0));
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
      RemoveField(cursor, row.id, 0);
      EnsureField(cursor, row.id, 0, row.value, "changed");
    }
    EXPECT_EQ(Systems().InsertFromTree(tree.get()), 0) << row.name;
  }
  const TreePtr stored = MakeTree(SystemTree, 4);
  TreeBuilder(stored.get()).Sub(1500).Field(1501, "2");
  EXPECT_EQ(Systems().InsertFromTree(stored.get()), 0);
  const TreePtr unknown = MakeTree(SystemTree, 4);
  TreeBuilder(unknown.get()).Sub(1500).Field(1501, "9");
  EXPECT_THROW(Systems().InsertFromTree(unknown.get()), QvRefSystem::InvalidTypeError);
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

TEST_F(ReferenceSystems, OfLocalKindLeaveTheirOriginWhereSystemsAreExchanged) {
  const int key = Insert(2);
  database_.data->ShowImportExport = true;
  TStringTree tree;
  ASSERT_TRUE(Systems().WriteToTree(&tree, 0, 0));
  EXPECT_EQ(FindField(&tree, 1120, 0), nullptr);
  EXPECT_EQ(Systems().InsertFromTree(&tree), key);
}

TEST_F(ReferenceSystems, StoreWhatTheyAreBuiltFromOnceForAll) {
  for (int kind = 1; kind <= 6; ++kind)
    Insert(kind);
  EXPECT_EQ(Systems().DataSet->RecordCount(), 6);
  EXPECT_EQ(database_.data->datasetLinearUnit.RecordCount(), 1);
  EXPECT_EQ(database_.data->datasetAngularUnit.RecordCount(), 1);
  EXPECT_EQ(database_.data->datasetEllipsoid.RecordCount(), 1);
  EXPECT_EQ(database_.data->datasetDatum.RecordCount(), 1);
  EXPECT_EQ(database_.data->datasetPrimeMeridian.RecordCount(), 1);
  EXPECT_EQ(database_.data->datasetMapProj.RecordCount(), 1);
}

}  // namespace
}  // namespace refframe_tests
