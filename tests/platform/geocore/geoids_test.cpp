#include "platform/geocore/geoids.h"

#include <gtest/gtest.h>

#include "platform/geocore/proj_handles.h"

namespace QvRefSystem {
namespace {

constexpr int kEgm96 = 5773;
constexpr int kNavd88 = 5703;

TEST(GeoidsTest, HoldEgm96UnderItsRegistryName) {
  std::string name;
  ASSERT_TRUE(GetSystemGeoidName(kEgm96, &name));
  EXPECT_EQ(name, "EGM96 height");
  std::map<int, std::string> list;
  ASSERT_TRUE(GetSystemGeoidsList(&list));
  EXPECT_EQ(list.at(kEgm96), name);
  EXPECT_EQ(FindSystemGeoid(kEgm96)->baseSystem, 4979);
}

TEST(GeoidsTest, LeaveTheNameAloneForACodeWithoutAGrid) {
  for (const int code : {0, -1, 4326, 999999}) {
    std::string name = "untouched";
    EXPECT_FALSE(GetSystemGeoidName(code, &name)) << code;
    EXPECT_EQ(name, "untouched");
  }
}

// A geoid that is listed can be computed with; one that is not listed has no grid here.
TEST(GeoidsTest, ListNoGeoidWhoseGridIsMissing) {
  std::map<int, std::string> list;
  ASSERT_TRUE(GetSystemGeoidsList(&list));
  for (const auto& [code, name] : list) {
    const PJ_GRID_INFO grid = proj_grid_info(FindSystemGeoid(code)->grid.c_str());
    EXPECT_STRNE(grid.format, "missing") << name;
  }
  const bool hasGrid = FindSystemGeoid(kNavd88) != nullptr;
  EXPECT_EQ(hasGrid, list.contains(kNavd88));
}

}  // namespace
}  // namespace QvRefSystem
