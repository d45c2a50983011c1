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

// A geodetic system with that subtree of heights.
TreePtr TreeWith(void (*heights)(TreeBuilder)) {
  TreePtr tree = MakeTree(SystemTree, 4);
  heights(TreeBuilder(tree.get()).Sub(1500));
  return tree;
}

double EllipsoidalHeight(void (*heights)(TreeBuilder), TShellPoint point) {
  std::string error;
  const auto overHeights = CreateShellReferenceSystem(TreeWith(heights).get(), nullptr, &error);
  if (!overHeights) throw std::runtime_error(error);
  EXPECT_TRUE(overHeights->HasHeightSystem());
  const auto plain = CreateShellReferenceSystem(MakeTree(SystemTree, 4).get(), nullptr, &error);
  EXPECT_EQ(overHeights->Transform(*plain, {&point, 1}), 0u);
  return point.Third;
}

TEST(ShellTreeTest, ComputesHeightsOfEachKindFromATree) {
  // A quarter of the way north between the rows of 1 to 3 and of 11 to 13.
  const auto table = [](TreeBuilder tree) {
    tree.Field(1511, "54 55 36 38 1 1 11 12 13 1 2 3 ");
    HeightTableTree(tree);
  };
  EXPECT_NEAR(EllipsoidalHeight(table, {54.25, 37.5, 100}), 100 + 2.5 + 2.5, 1e-9);
  EXPECT_NEAR(EllipsoidalHeight(HeightOffsetTree, {54.25, 37.5, 100}), 97.67, 1e-9);
  EXPECT_GT(std::abs(EllipsoidalHeight(SystemGeoidTree, {54.25, 37.5, 0})), 1);
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

TEST(ShellTreeTest, SaysWhatIsWrongWithHeights) {
  const struct {
    void (*heights)(TreeBuilder);
    const char* reason;
  } rows[] = {
      {[](TreeBuilder tree) { tree.Field(1501, "7"); }, "must be 1, 2 or 3"},
      {[](TreeBuilder tree) { tree.Field(1511, "54 55 36 38 1 1 11 12"); }, "height table"},
      {[](TreeBuilder tree) { tree.Field(1511, "55 54 36 38 1 1 11 12"); }, "height table"},
  };
  for (const auto& row : rows) {
    const TreePtr tree = TreeWith(row.heights);
    HeightTableTree(TreeBuilder(FindSubtree(tree.get(), 1500, 0)));
    std::string error;
    EXPECT_EQ(CreateShellReferenceSystem(tree.get(), nullptr, &error), nullptr) << row.reason;
    EXPECT_THAT(error, testing::HasSubstr(row.reason));
  }
}

}  // namespace
}  // namespace refframe_tests
