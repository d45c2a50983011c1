// Systems that compute, from the trees in which they travel.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

#include "platform/geocore/shell_reference_system.h"
#include "tests/support/sample_trees.h"

namespace refframe_tests {
namespace {

using QvRefSystem::CreateShellReferenceSystem;
using QvRefSystem::TShellPoint;

double EllipsoidalHeight(QvCommonUtils::TStringTree* tree, TShellPoint point) {
  std::string error;
  const auto overHeights = CreateShellReferenceSystem(tree, nullptr, &error);
  if (!overHeights) throw std::runtime_error(error);
  EXPECT_TRUE(overHeights->HasHeightSystem());
  const TreePtr plain = MakeTree(SystemTree, 4);
  const auto ellipsoidal = CreateShellReferenceSystem(plain.get(), nullptr, &error);
  EXPECT_EQ(overHeights->Transform(*ellipsoidal, {&point, 1}), 0u);
  return point.Third;
}

void HeightsTree(TreeBuilder tree, int kind) {
  tree.Field(1501, std::to_string(kind)).Field(1502, "heights");
  if (kind == 1) tree.Field(1511, "54 55 36 38 1 1 11 12 13 1 2 3 ");
  if (kind == 2) {
    tree.Field(1513, "-4.5");
    MetreTree(tree.Sub(1514));
  }
  if (kind == 3) tree.Field(1521, "5773");
}

TEST(ShellTreeTest, ComputesHeightsOfEachKindFromATree) {
  const TreePtr tree = MakeTree(SystemTree, 4);
  HeightsTree(TreeBuilder(tree.get()).Sub(1500), 1);
  // A quarter of the way north between the rows of 1 to 3 and of 11 to 13.
  EXPECT_NEAR(EllipsoidalHeight(tree.get(), {54.25, 37.5, 100}), 100 + 2.5 + 2.5, 1e-9);

  const TreePtr offset = MakeTree(SystemTree, 4);
  HeightsTree(TreeBuilder(offset.get()).Sub(1500), 2);
  EXPECT_NEAR(EllipsoidalHeight(offset.get(), {54.25, 37.5, 100}), 95.5, 1e-9);

  const TreePtr geoid = MakeTree(SystemTree, 4);
  HeightsTree(TreeBuilder(geoid.get()).Sub(1500), 3);
  EXPECT_GT(std::abs(EllipsoidalHeight(geoid.get(), {54.25, 37.5, 0})), 1);
}

TEST(ShellTreeTest, MakesASystemOfEachKind) {
  for (int kind = 1; kind <= 6; ++kind) {
    const TreePtr tree = MakeTree(SystemTree, kind);
    std::string error;
    const auto system = CreateShellReferenceSystem(tree.get(), nullptr, &error);
    ASSERT_TRUE(system) << error;
    EXPECT_EQ(system->Description(), "A system");
    EXPECT_EQ(system->AxisName(2), "Z");
    EXPECT_TRUE(system->IsSameAs(system->CreateCopy().get()));
  }
}

struct TreeRow {
  const char* name;
  int id;
  const char* value;
  const char* reason;
};

TEST(ShellTreeTest, SaysWhatIsWrongWithHeights) {
  constexpr TreeRow rows[] = {
      {"an unknown kind", 1501, "7", "must be 1, 2 or 3"},
      {"a table that is cut", 1511, "54 55 36 38 1 1 11 12", "height table"},
      {"a table without a grid", 1511, "55 54 36 38 1 1 11 12", "height table"},
  };
  for (const TreeRow& row : rows) {
    const TreePtr tree = MakeTree(SystemTree, 4);
    TreeBuilder heights = TreeBuilder(tree.get()).Sub(1500);
    heights.Field(row.id, row.value);
    HeightsTree(heights, 1);
    std::string error;
    EXPECT_EQ(CreateShellReferenceSystem(tree.get(), nullptr, &error), nullptr) << row.name;
    EXPECT_THAT(error, testing::HasSubstr(row.reason)) << row.name;
  }
}

}  // namespace
}  // namespace refframe_tests
