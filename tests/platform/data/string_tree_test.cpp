#include "platform/data/string_tree.h"

#include <gtest/gtest.h>

#include "tests/platform/data/random_tree.h"

namespace QvCommonUtils {
namespace {

using testing::FillDeep;

TStringTree* AddSubtree(TStringTree* tree, int id, int index, std::string_view label) {
  EnsureSubtree(tree, id, index, label);
  return FindSubtree(tree, id, index);
}

TEST(StringTreeAccess, MissingFieldLeavesTheResultAlone) {
  TStringTree tree;
  EnsureSubtree(&tree, 1020, 0, "a subtree is no field");
  int number = 7;
  double real = 0.5;
  std::string text = "kept";
  EXPECT_FALSE(tree.GetInteger(1020, 0, &number));
  EXPECT_FALSE(tree.GetDouble(1020, 0, &real));
  EXPECT_FALSE(tree.GetString(1020, 0, &text));
  EXPECT_EQ(number, 7);
  EXPECT_EQ(real, 0.5);
  EXPECT_EQ(text, "kept");
}

TEST(StringTreeAccess, NumbersAreReadAsAWholeOrNotAtAll) {
  const struct {
    std::string text;
    bool isInteger, isDouble;
  } cases[] = {
      {"12", true, true},          {"-2147483648", true, true}, {" 12\t", true, true},
      {"2147483648", false, true}, {"1.5", false, true},        {"1e3", false, true},
      {"1,5", false, false},       {"12x", false, false},       {"", false, false},
      {" ", false, false},         {"1 2", false, false},       {"0x10", false, false},
      {"nan", false, false},       {"inf", false, false},       {"1e999", false, false},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.text);
    TStringTree tree;
    tree.InsertString("value", 1, 0, row.text);
    int number = 77;
    double real = 77.5;
    EXPECT_EQ(tree.GetInteger(1, 0, &number), row.isInteger);
    EXPECT_EQ(tree.GetDouble(1, 0, &real), row.isDouble);
    EXPECT_EQ(number == 77, !row.isInteger);
    EXPECT_EQ(real == 77.5, !row.isDouble);
  }
}

TEST(StringTreeAccess, InsertedFieldsReadBackAndOneWithoutValuesAsAnEmptyString) {
  TStringTree tree;
  tree.InsertInteger("type", 1100, 0, -2147483647 - 1);
  int least = 0;
  EXPECT_TRUE(tree.GetInteger(1100, 0, &least));
  EXPECT_EQ(least, -2147483647 - 1);
  tree.Fields.push_back(tree.CreateField(1, 0, nullptr, 0, "empty"));
  std::string text = "old";
  int number = 3;
  EXPECT_TRUE(tree.GetString(1, 0, &text));
  EXPECT_EQ(text, "");
  EXPECT_FALSE(tree.GetInteger(1, 0, &number));
}

TEST(StringTreeHelpers, EnsuringASecondFieldKeepsTheFirst) {
  TStringTree tree;
  EXPECT_TRUE(EnsureField(&tree, 1020, 0, "old", "name"));
  EXPECT_FALSE(EnsureField(&tree, 1020, 0, "new", "name"));
  EXPECT_TRUE(EnsureField(&tree, 1020, 1, "at another index", "name"));
  EXPECT_EQ(tree.Fields.size(), 2U);
  std::string text;
  ASSERT_TRUE(tree.GetString(1020, 0, &text));
  EXPECT_EQ(text, "old");
  ASSERT_TRUE(tree.GetString(1020, 1, &text));
  EXPECT_EQ(text, "at another index");
}

TEST(StringTreeHelpers, EnsuringASecondSubtreeKeepsTheFirst) {
  TStringTree tree;
  EXPECT_TRUE(EnsureSubtree(&tree, 1107, 0, "datum"));
  EnsureField(FindSubtree(&tree, 1107, 0), 5620, 0, "DHDN", "name");
  EXPECT_FALSE(EnsureSubtree(&tree, 1107, 0, "other"));
  ASSERT_EQ(tree.Subtrees.size(), 1U);
  EXPECT_EQ(tree.Subtrees[0]->Label, "datum");
  EXPECT_EQ(tree.Subtrees[0]->Fields.size(), 1U);
}

TEST(StringTreeHelpers, RemovingTakesTheFirstOnly) {
  TStringTree tree;
  tree.InsertString("a", 1, 0, "first");
  tree.InsertString("b", 1, 0, "second");
  AddSubtree(&tree, 1, 0, "subtree");
  RemoveField(&tree, 1, 0);
  ASSERT_EQ(tree.Fields.size(), 1U);
  EXPECT_EQ(tree.Fields[0]->Label, "b");
  RemoveField(&tree, 9, 9);
  RemoveSubtree(&tree, 1, 0);
  RemoveSubtree(&tree, 1, 0);
  EXPECT_EQ(tree.Fields.size(), 1U);
  EXPECT_TRUE(tree.Subtrees.empty());
}

TEST(StringTreeHelpers, CursorStaysWhereThereIsNoWay) {
  TStringTree tree;
  TStringTree* datum = AddSubtree(&tree, 1107, 0, "datum");
  TStringTree* cursor = &tree;
  EXPECT_FALSE(EnterSubtree(&cursor, 1107, 1));
  EXPECT_EQ(cursor, &tree);
  EXPECT_FALSE(LeaveSubtree(&cursor));
  EXPECT_EQ(cursor, &tree);
  ASSERT_TRUE(EnterSubtree(&cursor, 1107, 0));
  EXPECT_EQ(cursor, datum);
  ASSERT_TRUE(LeaveSubtree(&cursor));
  EXPECT_EQ(cursor, &tree);
}

TEST(StringTreeHelpers, ClearingKeepsAddressAndLabel) {
  TStringTree tree;
  TStringTree* datum = AddSubtree(&tree, 1107, 2, "datum");
  EnsureField(datum, 5620, 0, "DHDN", "name");
  AddSubtree(datum, 5610, 0, "ellipsoid");
  ClearTree(datum);
  EXPECT_TRUE(datum->Fields.empty());
  EXPECT_TRUE(datum->Subtrees.empty());
  EXPECT_EQ(datum->Id, 1107);
  EXPECT_EQ(datum->Index, 2);
  EXPECT_EQ(datum->Label, "datum");
  EXPECT_EQ(datum->Parent, &tree);
}

TEST(StringTreeDepth, NoSubtreeIsMadeBelowTheDeepestLevel) {
  TStringTree tree;
  FillDeep(&tree, kMaxTreeDepth);
  TStringTree* cursor = &tree;
  while (EnterSubtree(&cursor, 1, 0)) {
  }
  EXPECT_THROW(EnsureSubtree(cursor, 1, 0, "too deep"), TreeFormatError);
  EXPECT_TRUE(cursor->Subtrees.empty());
}

TEST(StringTreeMerge, ContentGoesBehindWhatIsThere) {
  TStringTree source;
  source.InsertString("name", 1, 0, "from source");
  EnsureField(AddSubtree(&source, 10, 0, "shared"), 2, 0, "deep", "value");
  AddSubtree(&source, 11, 0, "new");
  source.InsertInteger("Found ID", 201001, -1, 5);

  TStringTree target;
  target.InsertString("name", 1, 0, "kept");
  EnsureField(AddSubtree(&target, 10, 0, "own label"), 1, 0, "there", "value");
  MergeTree(&source, &target);

  std::string text;
  ASSERT_TRUE(target.GetString(1, 0, &text));
  EXPECT_EQ(text, "kept");
  EXPECT_EQ(target.Fields.size(), 3U);
  EXPECT_NE(FindField(&target, 201001, -1), nullptr);
  ASSERT_EQ(target.Subtrees.size(), 2U);
  EXPECT_EQ(target.Subtrees[0]->Label, "own label");
  EXPECT_EQ(target.Subtrees[0]->Fields.size(), 2U);
  EXPECT_EQ(target.Subtrees[1]->Label, "new");
  EXPECT_EQ(target.Subtrees[1]->Parent, &target);
}

TEST(StringTreeMerge, MergingIntoAnEmptyTreeCopies) {
  for (unsigned seed = 0; seed < 40; ++seed) {
    TStringTree source;
    testing::RandomTree(seed, testing::RandomTree::NodeLabels::kAnyByte).Fill(&source, 4);
    TStringTree target;
    MergeTree(&source, &target);
    EXPECT_TRUE(SameTree(&source, &target)) << "seed " << seed;
  }
}

TEST(StringTreeSame, EachDifferenceShows) {
  const auto build = [](TStringTree* tree, int changed) {
    const std::string values[] = {"1", changed == 0 ? "x" : "2"};
    tree->Fields.push_back(tree->CreateField(changed == 1 ? 8 : 7, changed == 2 ? 1 : 0, values,
                                             changed == 3 ? 1 : 2, changed == 4 ? "x" : "pair"));
    if (changed == 5) tree->InsertString("more", 9, 0, "");
    TStringTree* child = AddSubtree(tree, changed == 6 ? 12 : 11, changed == 7 ? 1 : 0,
                                    changed == 8 ? "x" : "child");
    child->InsertString("deep", 1, 0, changed == 9 ? "x" : "same");
    if (changed == 10) AddSubtree(child, 1, 0, "more");
  };
  TStringTree original;
  build(&original, -1);
  TStringTree equal;
  build(&equal, -1);
  equal.InsertString("a note does not count", 201002, -1, "5");
  EXPECT_TRUE(SameTree(&original, &equal));
  EXPECT_TRUE(SameTree(&equal, &original));
  for (int changed = 0; changed <= 10; ++changed) {
    TStringTree other;
    build(&other, changed);
    EXPECT_FALSE(SameTree(&original, &other)) << "change " << changed;
    EXPECT_FALSE(SameTree(&other, &original)) << "change " << changed;
  }
}

TEST(StringTreeLabel, ShortAndLongLabelsBehaveLikeStrings) {
  for (const std::size_t size : {0U, 1U, 39U, 40U, 41U, 5000U}) {
    SCOPED_TRACE(size);
    const std::string text(size, 'a');
    TLabel label(text);
    const TLabel copy(label);
    EXPECT_EQ(label, text);
    label = "short";
    EXPECT_EQ(label, "short");
    EXPECT_EQ(std::string(copy), text);
    label = copy;
    label = *&label;
    EXPECT_EQ(label, copy);
    EXPECT_EQ(label.size(), size);
  }
}

}  // namespace
}  // namespace QvCommonUtils
