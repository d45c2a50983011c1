// Keys that are still named are not given again, whatever has become of the table.

#include "database/key_counters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "assembly/database_repair.h"
#include "tests/support/sample_trees.h"
#include "tests/support/test_database.h"

namespace refframe_tests {
namespace {

using QvRefSystem::TObjectType;
using testing::Contains;
using testing::HasSubstr;

class NamedKeys : public testing::TestWithParam<bool> {
 protected:
  int Insert(TestDatabase& database) const {
    const TreePtr tree = MakeTree(SystemTree, 4);
    HeightTableTree(TreeBuilder(tree.get()).Sub(1500));
    ReplaceField(tree.get(), 1020, "system " + std::to_string(++inserted_));
    return database.Processor(TObjectType::kReferenceSystem).InsertFromTree(tree.get());
  }
  static bool Open(TestDatabase& database) {
    return database.data->OpenDatabase(database.path, QvRefSystem::kFullMode, GetParam());
  }
  [[nodiscard]] static std::string Stream(const TestDatabase& database, const char* name) {
    return database.path + (GetParam() ? "." : "/") + name + (GetParam() ? "" : ".dat");
  }
  mutable int inserted_ = 0;
};
INSTANTIATE_TEST_SUITE_P(, NamedKeys, testing::Bool(), FormName{});

TEST_P(NamedKeys, AreNotGivenByATableThatIsMadeAnew) {
  for (const char* lost : {"reference_system", "vertical_refsystem"}) {
    TestDatabase database(GetParam());
    for (int i = 1; i <= 3; ++i)
      ASSERT_EQ(Insert(database), i);
    database.data->CloseDatabase();
    ASSERT_TRUE(QvRefSystem::DeleteStorageFile(Stream(database, lost), GetParam()));
    ASSERT_TRUE(Open(database));
    EXPECT_THAT(database.ui.messages,
                Contains(HasSubstr("made anew, empty: \"" + std::string(lost))));
    EXPECT_EQ(Insert(database), 4) << lost;
    auto& heights = database.Processor(TObjectType::kVerticalReferenceSystem);
    EXPECT_EQ(heights.GetCurrentKey(), 4) << lost;
  }
}

// An earlier copy of a table, put back, knows fewer keys than the others name.
TEST_P(NamedKeys, AreToldAndLeftBehindByRepair) {
  TestDatabase database(GetParam());
  ASSERT_EQ(Insert(database), 1);
  std::string earlier;
  ASSERT_TRUE(
      QvRefSystem::LoadStorageFile(Stream(database, "reference_system"), GetParam(), &earlier));
  ASSERT_EQ(Insert(database), 2);
  database.data->CloseDatabase();
  ASSERT_TRUE(
      QvRefSystem::SaveStorageFile(Stream(database, "reference_system"), GetParam(), earlier));
  ASSERT_TRUE(Open(database));
  EXPECT_THAT(database.Findings(),
              Contains("reference_system.dat: key 2 is named, and new keys begin behind 1"));
  (void)RepairDatabase(*database.data, {.dryRun = false, .backup = [](auto&, const auto&) {}});
  EXPECT_EQ(database.data->datasetRefSystem.LastKey(), 2);
  EXPECT_EQ(Insert(database), 3);
}

}  // namespace
}  // namespace refframe_tests
