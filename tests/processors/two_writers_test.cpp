// Two who have one database open: what one looks at is what the other has written by then.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "assembly/database_check.h"
#include "processors/ref_system_processor.h"
#include "tests/support/sample_trees.h"
#include "tests/support/test_database.h"
#include "vertical/vertical_processor.h"

namespace refframe_tests {
namespace {

using QvRefSystem::TObjectType;

class TwoWriters : public testing::TestWithParam<bool> {
 protected:
  TwoWriters() : second_(QvRefSystem::MakeDataModule(ui_)) {
    second_->DatabasePath = first_.path;
    EXPECT_TRUE(second_->OpenDatabase(first_.path, QvRefSystem::kFullMode, GetParam()));
  }
  [[nodiscard]] QvRefSystem::TQvRfDataProcessor& First(TObjectType type) const {
    return first_.Processor(type);
  }
  [[nodiscard]] QvRefSystem::TQvRfDataProcessor& Second(TObjectType type) const {
    return *QvRefSystem::ProcessorFor(*second_, static_cast<int>(type));
  }
  static int Insert(QvRefSystem::TQvRfDataProcessor& processor, int kind) {
    const TreePtr tree = MakeTree(SystemTree, kind);
    if (kind == 4) HeightTableTree(TreeBuilder(tree.get()).Sub(1500));
    return processor.InsertFromTree(tree.get());
  }

  TestDatabase first_{GetParam()};
  ScriptedUi ui_;
  std::unique_ptr<QvRefSystem::TdatamoduleQvRfData> second_;
};
INSTANTIATE_TEST_SUITE_P(, TwoWriters, testing::Bool(), FormName{});

TEST_P(TwoWriters, FindWhatTheOtherHasInserted) {
  for (int kind = 1; kind <= 6; ++kind) {
    const int key = Insert(First(TObjectType::kReferenceSystem), kind);
    ASSERT_GT(key, 0);
    EXPECT_EQ(Insert(Second(TObjectType::kReferenceSystem), kind), key);
  }
  EXPECT_THAT(first_.Findings(), testing::IsEmpty());
}

TEST_P(TwoWriters, KeepWhatTheOtherHasComeToUse) {
  const int datum = First(TObjectType::kDatum).InsertFromTree(MakeTree(DatumTree).get());
  ui_.onQuestion = [&] { EXPECT_GT(Insert(First(TObjectType::kReferenceSystem), 4), 0); };
  ASSERT_TRUE(Second(TObjectType::kLinearUnit).DataSet != nullptr);
  (void)second_->Refresh();
  ASSERT_TRUE(Second(TObjectType::kDatum).LocateKey(datum));
  EXPECT_FALSE(Second(TObjectType::kDatum).DeleteRecord(nullptr));
  ASSERT_EQ(ui_.usedBy.size(), 1U);
  EXPECT_EQ(ui_.usedBy.front().name, "NAD27 geodetic");
  EXPECT_TRUE(Second(TObjectType::kDatum).LocateKey(datum));
}

// What the first deletes, the second brings again with its system.
TEST_P(TwoWriters, DoNotReferToWhatTheOtherHasDeleted) {
  const int datum = First(TObjectType::kDatum).InsertFromTree(MakeTree(DatumTree).get());
  (void)second_->Refresh();
  ASSERT_TRUE(First(TObjectType::kDatum).LocateKey(datum));
  ASSERT_TRUE(First(TObjectType::kDatum).DeleteRecord(nullptr));
  EXPECT_GT(Insert(Second(TObjectType::kReferenceSystem), 4), 0);
  EXPECT_THAT(first_.Findings(), testing::Each(testing::StartsWith("note: ")));
}

TEST_P(TwoWriters, GiveHeightFilesTheirOwnNames) {
  for (int round = 0; round < 2; ++round) {
    for (auto* heights : {&First(TObjectType::kVerticalReferenceSystem),
                          &Second(TObjectType::kVerticalReferenceSystem)})
      ASSERT_GT(heights->InsertFromTree(MakeTree(HeightTableTree).get()), 0);
  }
  (void)first_.data->Refresh();
  EXPECT_THAT(first_.Findings(),
              testing::Each(testing::HasSubstr("no reference system refers to it")));
  EXPECT_EQ(first_.Findings().size(), 4U);
}

}  // namespace
}  // namespace refframe_tests
