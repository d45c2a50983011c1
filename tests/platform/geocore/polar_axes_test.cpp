#include "platform/geocore/polar_axes.h"

#include <gtest/gtest.h>

#include <numbers>

namespace QvRefSystem {
namespace {

UnitModel Angular(double perHalfTurn) {
  UnitModel unit;
  unit.factorB = std::numbers::pi;
  unit.factorC = perHalfTurn;
  return unit;
}

ProjectionModel Projection(int method, int latitudeCode, const char* latitude, int longitudeCode,
                           const char* longitude) {
  ProjectionModel projection;
  projection.method = method;
  projection.parameters = {{latitudeCode, "latitude", latitude},
                           {longitudeCode, "longitude", longitude}};
  projection.angularUnit = Angular(180);
  return projection;
}

struct Row {
  const char* name;
  ProjectionModel projection;
  double easting, northing, westing, southing;
};

// Meridians as the EPSG registry gives them to the axes of systems 5041, 5042, 3413, 5482, 3571.
TEST(PolarAxesTest, RunAlongTheMeridiansOfTheRegistry) {
  const Row rows[] = {
      {"UPS north", Projection(9810, 8801, "90", 8802, "0"), 90, 180, -90, 0},
      {"UPS south", Projection(9810, 8801, "-90", 8802, "0"), 90, 0, -90, 180},
      {"NSIDC north", Projection(9829, 8832, "70", 8833, "-45"), 45, 135, -135, -45},
      {"Ross Sea", Projection(9810, 8801, "-90", 8802, "180"), -90, 180, 90, 0},
      {"Bering Sea", Projection(9820, 8801, "90", 8802, "180"), -90, 0, 90, 180},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const auto pole = PolarAspectOf(row.projection);
    ASSERT_TRUE(pole);
    EXPECT_EQ(pole->MeridianOf(false, 1), row.easting);
    EXPECT_EQ(pole->MeridianOf(true, 1), row.northing);
    EXPECT_EQ(pole->MeridianOf(false, -1), row.westing);
    EXPECT_EQ(pole->MeridianOf(true, -1), row.southing);
  }
}

TEST(PolarAxesTest, TakeAnglesInTheProjectionsOwnUnit) {
  ProjectionModel projection = Projection(9810, 8801, "-100", 8802, "50");
  projection.angularUnit = Angular(200);
  const auto pole = PolarAspectOf(projection);
  ASSERT_TRUE(pole);
  EXPECT_FALSE(pole->northPole);
  EXPECT_EQ(pole->MeridianOf(true, 1), 45);
}

TEST(PolarAxesTest, AreNotThoseOfProjectionsElsewhere) {
  EXPECT_FALSE(PolarAspectOf(Projection(9820, 8801, "52", 8802, "10")));
  EXPECT_FALSE(PolarAspectOf(Projection(9807, 8801, "90", 8802, "10")));
  EXPECT_FALSE(PolarAspectOf(Projection(9810, 8801, "ninety", 8802, "10")));
}

}  // namespace
}  // namespace QvRefSystem
