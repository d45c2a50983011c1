// What repair mends, and that it leaves all else as it is.

#include "assembly/database_repair.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "assembly/database_check.h"
#include "database/storage_files.h"
#include "platform/dbset/data_set.h"
#include "tests/support/sample_trees.h"
#include "tests/support/test_database.h"

namespace refframe_tests {
namespace {

using QvRefSystem::TableId;
using QvRefSystem::TObjectType;
using testing::ElementsAre;
using testing::HasSubstr;

class Repair : public testing::TestWithParam<bool> {
 protected:
  Repair() {
    for (const int kind : {4, 5}) {
      const TreePtr tree = MakeTree(SystemTree, kind);
      if (kind == 4) HeightTableTree(TreeBuilder(tree.get()).Sub(1500));
      EXPECT_GT(database_.Processor(TObjectType::kReferenceSystem).InsertFromTree(tree.get()), 0);
    }
  }
  [[nodiscard]] QvPlatform::TQvDataSet& Table(TableId id) const {
    return database_.data->DataSet(id);
  }
  // A further record like the first one of the table, with other content in a field.
  void Repeat(TableId id, const char* field, int value) const {
    QvPlatform::TQvDataSet& table = Table(id);
    table.First();
    std::vector<std::string> values;
    for (int i = 0; i < table.FieldCount(); ++i)
      values.push_back(table.Fields(i).AsString());
    table.Append();
    for (int i = 0; i < table.FieldCount(); ++i) {
      if (table.Fields(i).Definition().need == QvPlatform::FieldNeed::kGeneratedKey) continue;
      table.Fields(i).SetString(values[static_cast<std::size_t>(i)]);
    }
    table.FieldByName(field).SetInteger(value);
    table.Post();
  }
  // The rows of param_value of an owner again, for another owner.
  void RepeatCodes(int content, int from, int to) const {
    QvPlatform::TQvDataSet& table = Table(TableId::kParamValue);
    const auto rows = table.FindAll(
        {QvPlatform::RowMatch::Integer(table.FieldByName("OWNER_ID").GetIndex(), from),
         QvPlatform::RowMatch::Integer(table.FieldByName("OWNER_CONTENT").GetIndex(), content)});
    std::vector<std::vector<std::string>> copies;
    for (const QvPlatform::RowView row : rows) {
      copies.emplace_back();
      for (int i = 0; i < table.FieldCount(); ++i)
        copies.back().push_back(row.GetString(i));
    }
    for (const auto& copy : copies) {
      table.Append();
      for (int i = 0; i < table.FieldCount(); ++i)
        table.Fields(i).SetString(copy[static_cast<std::size_t>(i)]);
      table.FieldByName("OWNER_ID").SetInteger(to);
      table.Post();
    }
  }
  [[nodiscard]] QvRefSystem::RepairReport Run(bool dryRun) {
    return RepairDatabase(*database_.data,
                          {.dryRun = dryRun, .backup = [this](auto&, const std::string& target) {
                             backups_.push_back(target);
                           }});
  }
  [[nodiscard]] std::string Integer(TableId id, const char* field) const {
    Table(id).First();
    return Table(id).FieldByName(field).AsString();
  }

  TestDatabase database_{GetParam()};
  std::vector<std::string> backups_;
};
INSTANTIATE_TEST_SUITE_P(, Repair, testing::Bool(), FormName{});

TEST_P(Repair, DoesNothingToASoundDatabase) {
  EXPECT_THAT(Run(false).steps, testing::IsEmpty());
  EXPECT_THAT(backups_, testing::IsEmpty());
}

// An ellipsoid on a unit that stands twice is itself the double of another only once the units are
// one; the datum on it as well.
TEST_P(Repair, MergesUntilNothingMoreBecomesEqual) {
  Repeat(TableId::kLinearUnit, "FAVOUR", 1);
  RepeatCodes(8, 1, 2);
  Repeat(TableId::kEllipsoid, "UNIT_AUTOKEY", 2);
  RepeatCodes(3, 1, 2);
  Repeat(TableId::kDatum, "ELLIPSOID_AUTOKEY", 2);
  RepeatCodes(2, 1, 2);
  for (const char* field : {"ELLIPSOID_AUTOKEY", "DATUM_AUTOKEY"}) {
    Table(TableId::kRefSystem).Last();
    Table(TableId::kRefSystem).Edit();
    Table(TableId::kRefSystem).FieldByName(field).SetInteger(2);
    Table(TableId::kRefSystem).Post();
  }
  const std::vector<int> broken = database_.Counts();
  const auto told = Run(true);
  EXPECT_EQ(database_.Counts(), broken);
  EXPECT_THAT(told.steps,
              ElementsAre(HasSubstr("linear_unit.dat, key 2, \"metre\": merged into key 1"),
                          HasSubstr("ellipsoid.dat, key 2, \"Clarke 1866\": merged into key 1"),
                          HasSubstr("geodetic_datum.dat, key 2")));
  EXPECT_EQ(Run(false).steps, told.steps);
  EXPECT_EQ(backups_.size(), 1U);
  EXPECT_THAT(database_.Findings(), testing::IsEmpty());
  for (const auto id : {TableId::kLinearUnit, TableId::kEllipsoid, TableId::kDatum})
    EXPECT_EQ(Table(id).RecordCount(), 1);
}

TEST_P(Repair, LeavesWhatOnlyAPersonCanTell) {
  Repeat(TableId::kLinearUnit, "FAVOUR", 1);    // without the codes of the other
  Repeat(TableId::kAngularUnit, "CODE", 9122);  // another code
  Repeat(TableId::kVerticalRefSystem, "FAVOUR", 1);
  const std::vector<int> counts = database_.Counts();
  const std::vector<std::string> before = database_.Findings();
  EXPECT_THAT(before, testing::Contains(HasSubstr("note: linear_unit.dat, key 2")));
  EXPECT_THAT(Run(false).steps, testing::IsEmpty());
  EXPECT_EQ(database_.Counts(), counts);
}

TEST_P(Repair, ClearsAwayWhatDeletionsLeft) {
  const std::string heights = database_.data->GetHeightsPrefix();
  ASSERT_TRUE(QvRefSystem::SaveStorageFile(heights + "left", GetParam(), "1 2 3"));
  auto& systems = database_.Processor(TObjectType::kReferenceSystem);
  // The projected system stands on the geodetic one without heights.
  ASSERT_TRUE(systems.LocateKey(3));
  ASSERT_TRUE(systems.DeleteRecord(nullptr));
  EXPECT_THAT(database_.Findings(), testing::Each(testing::StartsWith("note: ")));
  EXPECT_THAT(Run(false).steps,
              ElementsAre(HasSubstr("param_value.dat: row of tag 4 of owner 1/3, \"26705\""),
                          HasSubstr("\"left\": moved to the backups")));
  EXPECT_THAT(database_.Findings(), testing::IsEmpty());
  std::string content;
  EXPECT_TRUE(QvRefSystem::LoadStorageFile(database_.data->GetBackupPrefix() + "left", GetParam(),
                                           &content));
  EXPECT_EQ(content, "1 2 3");
}

}  // namespace
}  // namespace refframe_tests
