#include "registry/area_of_use.h"

#include <gtest/gtest.h>

namespace {

using QvRefSystem::AreaOfUseOf;

// Bounds of the EPSG Dataset's extents, degrees, which it may come to widen a little.
TEST(AreaOfUse, IsThatOfTheRegistry) {
  const struct {
    int code;
    const char* name;
    // West, south, east, north.
    double limits[4];
  } rows[] = {
      {4326, "World", {-180, -90, 180, 90}},
      {32637, "36\u00b0E and 42\u00b0E", {36, 0, 42, 84}},
      {32760, "174\u00b0E and 180\u00b0E", {174, -80, 180, 0}},
      // Crosses the antimeridian: the western bound lies in the east.
      {3832, "", {98.69, -60, -68, 66.67}},
      {5041, "60\u00b0N", {-180, 60, 180, 90}},
      {4978, "World", {-180, -90, 180, 90}},
  };
  for (const auto& row : rows) {
    const auto area = AreaOfUseOf(row.code);
    ASSERT_TRUE(area) << row.code;
    EXPECT_NE(area->name.find(row.name), std::string::npos) << row.code << ": " << area->name;
    const double limits[] = {area->box.west, area->box.south, area->box.east, area->box.north};
    for (int i = 0; i < 4; ++i)
      EXPECT_NEAR(limits[i], row.limits[i], 0.5) << row.code;
  }
}

TEST(AreaOfUse, IsNotMadeUpForOtherCodes) {
  for (const int code : {0, -1, 1, 999999, 7030 /* an ellipsoid */})
    EXPECT_FALSE(AreaOfUseOf(code)) << code;
}

}  // namespace
