#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "platform/geocore/shell_transform.h"
#include "tests/platform/geocore/shell_systems.h"

namespace refframe_tests {
namespace {

using QvRefSystem::THeightTable;

constexpr int kEgm96 = 5773;

SystemModel WithGeoid(SystemModel system) {
  system.geoidCode = kEgm96;
  return system;
}

SystemModel WithHeights(SystemModel system, int kind, const std::string& offset = {},
                        double offsetMetres = 1) {
  system.heights.emplace();
  system.heights->kind = static_cast<QvRefSystem::HeightKind>(kind);
  system.heights->offset = offset;
  system.heights->offsetUnit = Unit(offsetMetres);
  return system;
}

// Undulations 2 x + 3 y + 5 over the plane, which a bilinear grid holds exactly.
std::shared_ptr<const THeightTable> Slope(double west, double south, double cell, int count) {
  auto table = std::make_shared<THeightTable>();
  table->Resize(count, count, cell, cell, west, south);
  for (int i = 0; i < count; ++i) {
    for (int j = 0; j < count; ++j)
      table->Set(i, j, 2 * (west + i * cell) + 3 * (south + j * cell) + 5);
  }
  return table;
}

// NGA's published check values of the 15-minute grid, interpolated bilinearly.
TEST(ShellHeightsTest, CountsFromEgm96) {
  const auto ellipsoidal = Shell(Wgs84());
  const auto orthometric = Shell(WithGeoid(Wgs84()));
  EXPECT_TRUE(orthometric.HasHeightSystem());
  EXPECT_FALSE(ellipsoidal.HasHeightSystem());
  EXPECT_NEAR(Move(orthometric, ellipsoidal, {0, 0, 100}).Third, 117.1616, 1e-4);
  const TShellPoint place{38.628155, 269.779155 - 360, 100};
  EXPECT_NEAR(Move(orthometric, ellipsoidal, place).Third, 100 - 31.6090, 1e-4);
  const TShellPoint back = Move(ellipsoidal, orthometric, Move(orthometric, ellipsoidal, place));
  EXPECT_NEAR(back.Third, 100, 1e-9);
}

// A datum away from that of the geoid sees it at another height: by the whole way in three
// dimensions, which a translation along Z shows at the pole and not on the equator.
TEST(ShellHeightsTest, MovesTheGeoidIntoTheDatumOfTheSystem) {
  SystemModel shifted = Wgs84();
  SetShift(&shifted, 1, {"0", "0", "100"});
  const auto wgs84 = Shell(Wgs84());
  const auto lower = Shell(shifted);
  const auto overGeoid = Shell(WithGeoid(shifted));
  for (const double latitude : {0.0, 47.0, 89.9, -60.0}) {
    TShellPoint onGeoid = Move(overGeoid, wgs84, {latitude, 12, 0});
    const double undulation =
        Move(Shell(WithGeoid(Wgs84())), wgs84, {onGeoid.First, onGeoid.Second, 0}).Third;
    EXPECT_NEAR(onGeoid.Third, undulation, 1e-4) << latitude;
    onGeoid = Move(overGeoid, lower, {latitude, 12, 0});
    EXPECT_NEAR(Move(lower, overGeoid, onGeoid).Third, 0, 1e-9) << latitude;
  }
}

TEST(ShellHeightsTest, CountsFromAnOffsetInItsOwnUnit) {
  SystemModel feet = WithHeights(Wgs84(), 2, "40", 0.5);  // 20 m
  feet.linearUnit = Unit(0.3048);
  EXPECT_NEAR(Move(Shell(feet), Shell(Wgs84()), {10, 10, 100}).Third, 30.48 + 20, 1e-12);
  EXPECT_NEAR(Move(Shell(Wgs84()), Shell(feet), {10, 10, 50.48}).Third, 100, 1e-12);
}

TEST(ShellHeightsTest, CountsFromATableInThePlaneOfTheSystem) {
  // Northing first, south positive, in kilometres: X of the table is the easting all the same.
  SystemModel plane = Utm(Wgs84(), "15");
  plane.linearUnit = Unit(1000);
  plane.projection->swap = true;
  plane.projection->axisSign[0] = -1;
  const auto table = Slope(400, -5400, 10, 21);
  const auto overTable = Shell(WithHeights(plane, 1), table);
  const auto ellipsoidal = Shell(plane);
  const auto undulation = [&](double x, double y) {
    return Move(overTable, ellipsoidal, overTable.Core().FromPlane(x, y, 0)).Third;
  };
  EXPECT_NEAR(undulation(512.5, -5315.5), 2 * 512.5 - 3 * 5315.5 + 5, 1e-9);
  // Outside the nearest edge counts.
  EXPECT_NEAR(undulation(300, -5300), 2 * 400 - 3 * 5300 + 5, 1e-9);
  TShellPoint point = overTable.Core().FromPlane(512.5, -5315.5, 77);
  QvRefSystem::PutUndulations(overTable.Core(), QvRefSystem::Points<QvRefSystem::Axes>(&point));
  EXPECT_NEAR(point.Third, 2 * 512.5 - 3 * 5315.5 + 5, 1e-9);
}

TEST(ShellHeightsTest, FindsAMeridianOfATableATurnAway) {
  const auto ellipsoidal = Shell(Wgs84());
  const auto overTable = Shell(WithHeights(Wgs84(), 1), Slope(350, 0, 1, 21));
  const auto undulation = [&](double longitude) {
    return Move(overTable, ellipsoidal, {5, longitude, 0}).Third;
  };
  EXPECT_NEAR(undulation(-5), 2 * 355 + 3 * 5 + 5, 1e-9);
  EXPECT_NEAR(undulation(5), 2 * 365 + 3 * 5 + 5, 1e-9);
  // The nearer edge around the globe.
  EXPECT_NEAR(undulation(20), 2 * 370 + 3 * 5 + 5, 1e-9);
  EXPECT_NEAR(undulation(-20), 2 * 350 + 3 * 5 + 5, 1e-9);
}

TEST(ShellHeightsTest, TakesASingleNodeForTheWholeWorld) {
  const auto overTable = Shell(WithHeights(Wgs84(), 1), Slope(10, 20, 1, 1));
  EXPECT_NEAR(Move(overTable, Shell(Wgs84()), {-40, 100, 1}).Third, 1 + 2 * 10 + 3 * 20 + 5, 1e-9);
}

TEST(ShellHeightsTest, RefusesHeightsThatItCannotCompute) {
  SystemModel unknown = Wgs84();
  unknown.geoidCode = 1;
  EXPECT_THROW((void)Shell(unknown), QvRefSystem::GeodesyError);
  EXPECT_THROW((void)Shell(WithHeights(Wgs84(), 1)), QvRefSystem::GeodesyError);
  EXPECT_THROW((void)Shell(WithHeights(Wgs84(), 2, "ten")), QvRefSystem::GeodesyError);
}

}  // namespace
}  // namespace refframe_tests
