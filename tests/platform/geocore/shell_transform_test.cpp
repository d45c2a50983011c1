#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/platform/geocore/shell_systems.h"

namespace refframe_tests {
namespace {

void ExpectNear(const TShellPoint& point, const TShellPoint& expected, double plane,
                double height) {
  EXPECT_NEAR(point.First, expected.First, plane);
  EXPECT_NEAR(point.Second, expected.Second, plane);
  EXPECT_NEAR(point.Third, expected.Third, height);
}

// 53 48 33.820 N, 2 07 46.380 E, 73 m: IOGP Guidance Note 373-7-2, geographic/geocentric and
// geographic/topocentric conversions.
constexpr TShellPoint kPlace{53 + 48 / 60.0 + 33.820 / 3600, 2 + 7 / 60.0 + 46.380 / 3600, 73};
constexpr TShellPoint kGeocentricPlace{3771793.968, 140253.342, 5124304.349};

TEST(ShellTransformTest, ReachesTheGeocentricExampleAndComesBack) {
  const auto geodetic = Shell(Wgs84());
  const auto geocentric = Shell(Geocentric());
  ExpectNear(Move(geodetic, geocentric, kPlace), kGeocentricPlace, 5e-4, 5e-4);
  // A thousandth of a second of the example, and half a millimetre of its coordinates.
  ExpectNear(Move(geocentric, geodetic, kGeocentricPlace), kPlace, 1e-8, 1e-3);
}

TEST(ShellTransformTest, ReachesTheTopocentricExampleAndComesBack) {
  const auto geodetic = Shell(Wgs84());
  const auto horizon = Shell(Topocentric(Wgs84(), {"55", "5", "200"}));
  const TShellPoint expected{-189013.869, -128642.040, -4220.171};
  ExpectNear(Move(geodetic, horizon, kPlace), expected, 5e-4, 5e-4);
  ExpectNear(Move(horizon, geodetic, expected), kPlace, 1e-8, 1e-3);
}

}  // namespace
}  // namespace refframe_tests
