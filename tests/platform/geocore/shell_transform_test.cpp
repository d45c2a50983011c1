#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <thread>
#include <tuple>

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

TEST(ShellTransformTest, ReachesThePublishedExamplesAndComesBack) {
  const auto geodetic = Shell(Wgs84());
  for (const auto& [model, place] :
       {std::pair(Geocentric(), TShellPoint{3771793.968, 140253.342, 5124304.349}),
        {Topocentric(Wgs84(), {"55", "5", "200"}), {-189013.869, -128642.040, -4220.171}}}) {
    SCOPED_TRACE(model.name);
    const auto system = Shell(model);
    ExpectNear(Move(geodetic, system, kPlace), place, 5e-4, 5e-4);
    // A thousandth of a second of the example, and half a millimetre of its coordinates.
    ExpectNear(Move(system, geodetic, place), kPlace, 1e-8, 1e-3);
  }
}

// A horizon whose northward axis looks to the east: what was east is south of it.
TEST(ShellTransformTest, TurnsAHorizonByItsAzimuthAndHandedness) {
  const auto geodetic = Shell(Wgs84());
  const TShellPoint plain = Move(geodetic, Shell(Topocentric(Wgs84(), {"55", "5", "200"})), kPlace);
  const TShellPoint turned =
      Move(geodetic, Shell(Topocentric(Wgs84(), {"55", "5", "200"}, "90")), kPlace);
  ExpectNear(turned, {-plain.Second, plain.First, plain.Third}, 1e-8, 1e-8);
  SystemModel leftHanded = Topocentric(Wgs84(), {"55", "5", "200"}, " 90 ");
  leftHanded.swap = true;
  ExpectNear(Move(geodetic, Shell(leftHanded), kPlace), {turned.Second, turned.First, turned.Third},
             1e-8, 1e-8);
  EXPECT_TRUE(Shell(leftHanded).IsFirstAxisNorth());
}

SystemModel Paris() {
  SystemModel system = InGrads(Wgs84());
  system.primeMeridian.longitude = "2.5969213";
  system.primeMeridian.unit = Grad();
  return system;
}

SystemModel GeocentricFromParis() {
  SystemModel system = Paris();
  system.kind = SystemKind::kGeocentric;
  system.linearUnit = Unit(1000);
  return system;
}

struct AxesRow {
  const char* name;
  SystemModel model;
  // What stands in the system for the point computed with plain axes.
  TShellPoint (*expected)(const TShellPoint& geodetic, const TShellPoint& utm,
                          const TShellPoint& utmFromParis, const TShellPoint& geocentric);
};

constexpr double kParisLongitude = 2.33722917;  // degrees: 2.5969213 grads

const AxesRow kAxesRows[] = {
    {"grads from Paris", Paris(),
     [](const auto& g, const auto&, const auto&, const auto&) {
       return TShellPoint{g.First / 0.9, (g.Second - kParisLongitude) / 0.9, g.Third};
     }},
    {"longitudes from 0 to 360", Positive(Wgs84()),
     [](const auto& g, const auto&, const auto&, const auto&) {
       return TShellPoint{g.First, g.Second < 0 ? g.Second + 360 : g.Second, g.Third};
     }},
    {"axes to the west and south", SouthWest(Utm(Wgs84(), "15")),
     [](const auto&, const auto& u, const auto&, const auto&) {
       return TShellPoint{-u.First, -u.Second, u.Third};
     }},
    {"northing first, in feet", InFeet(NorthFirst(Utm(Wgs84(), "15"))),
     [](const auto&, const auto& u, const auto&, const auto&) {
       return TShellPoint{u.Second / 0.3048, u.First / 0.3048, u.Third / 0.3048};
     }},
    {"a projection that counts from Paris", Utm(Paris(), "0"),
     [](const auto&, const auto&, const auto& p, const auto&) { return p; }},
    {"kilometres along an axis through Paris", GeocentricFromParis(),
     [](const auto&, const auto&, const auto&, const auto& c) {
       const double turn = -kParisLongitude * std::numbers::pi / 180;
       return TShellPoint{(c.First * std::cos(turn) - c.Second * std::sin(turn)) / 1000,
                          (c.First * std::sin(turn) + c.Second * std::cos(turn)) / 1000,
                          c.Third / 1000};
     }},
};

TEST(ShellTransformTest, HasCoordinatesInItsOwnAxes) {
  const auto geodetic = Shell(Wgs84());
  for (const TShellPoint& place : {TShellPoint{47.5, 11.25, 500}, TShellPoint{-12, -3.5, -20}}) {
    const TShellPoint utm = Move(geodetic, Shell(Utm(Wgs84(), "15")), place);
    const TShellPoint utmFromParis = Move(geodetic, Shell(Utm(Wgs84(), "2.33722917")), place);
    const TShellPoint geocentric = Move(geodetic, Shell(Geocentric()), place);
    for (const AxesRow& row : kAxesRows) {
      SCOPED_TRACE(row.name);
      const auto system = Shell(row.model);
      const TShellPoint there = Move(geodetic, system, place);
      ExpectNear(there, row.expected(place, utm, utmFromParis, geocentric), 1e-7, 1e-6);
      ExpectNear(Move(system, geodetic, there), place, 1e-11, 1e-6);
    }
  }
}

TEST(ShellTransformTest, BringsLongitudesIntoTheRangeOfTheirNotation) {
  const auto half = Shell(Wgs84());
  const auto full = Shell(Positive(Wgs84()));
  for (const auto& [entered, inHalf, inFull] : {std::tuple{190.0, -170.0, 190.0},
                                                {-190.0, 170.0, 170.0},
                                                {360.0, 0.0, 0.0},
                                                {-0.5, -0.5, 359.5},
                                                {359.5, -0.5, 359.5},
                                                {-180.0, -180.0, 180.0}}) {
    EXPECT_NEAR(Move(half, full, {1, entered, 0}).Second, inFull, 1e-12) << entered;
    EXPECT_NEAR(Move(full, half, {1, entered, 0}).Second, inHalf == -180 ? 180 : inHalf, 1e-12)
        << entered;
    // Between equals nothing happens but that.
    EXPECT_NEAR(Move(half, half, {1, entered, 0}).Second, inHalf, 1e-12) << entered;
  }
}

// Two datums of one ellipsoid and shift lose nothing, however far the shift leads.
TEST(ShellTransformTest, MeetsAnEqualDatumWithoutLeavingTheEllipsoid) {
  SystemModel one = Wgs84();
  SetShift(&one, 2, {"5000", "-3000", "8000", "900", "-700", "800", "50"});
  SystemModel other = one;
  other.datum->name = "other";
  other.primeMeridian.longitude = "10";
  const TShellPoint moved = Move(Shell(one), Shell(other), {50, 30, 1e-9});
  EXPECT_DOUBLE_EQ(moved.First, 50);
  EXPECT_DOUBLE_EQ(moved.Second, 20);
  EXPECT_EQ(moved.Third, 1e-9);
}

TEST(ShellTransformTest, ComesBackFromTheDepthsAndFromOrbit) {
  const auto geodetic = Shell(Wgs84());
  const auto geocentric = Shell(Geocentric());
  for (const double radius : {100.1e3, 1e6, 6378e3, 7e6, 4.2e7}) {
    for (const double slope : {-90.0, -60.0, -1e-9, 0.0, 45.0, 89.9999999}) {
      const double angle = slope * std::numbers::pi / 180;
      const TShellPoint place{-radius * std::cos(angle), 0, radius * std::sin(angle)};
      ExpectNear(Move(geodetic, geocentric, Move(geocentric, geodetic, place)), place, 3e-8, 3e-8);
    }
  }
  EXPECT_EQ(Move(geocentric, geodetic, {1000, 0, 0}).First, HUGE_VAL);
  EXPECT_THAT(geocentric.ExplainFailure(geodetic, {0, 0, 0}), testing::HasSubstr("centre"));
}

TEST(ShellTransformTest, ComesBackOverSevenParametersWithoutLoss) {
  for (const int type : {2, 3}) {
    SystemModel shifted = Wgs84();
    SetShift(&shifted, type, {"565.2", "50.3", "465.6", "60", "-80", "50", "40"});
    const auto system = Shell(shifted);
    const auto target = Shell(Utm(Wgs84(), "9"));
    ExpectNear(Move(target, system, Move(system, target, {52, 7, 80})), {52, 7, 80}, 1e-12, 1e-7);
  }
}

struct FailureRow {
  const char* name;
  TShellPoint point;
  const char* reason;
};

TEST(ShellTransformTest, FailsThePointsThatHaveNoImageAndSaysWhy) {
  const double nan = std::nan("");
  const FailureRow rows[] = {
      {"beyond the pole", {90.001, 0, 0}, "latitude"},
      {"a longitude in seconds", {1, 3600, 0}, "longitude"},
      {"no number", {nan, 0, 0}, "finite"},
      {"no height", {1, 1, HUGE_VAL}, "finite"},
      {"no longitude", {1, -HUGE_VAL, 0}, "finite"},
      {"a quarter of the Earth away", {0, 91, 0}, "plane"},
  };
  const auto geodetic = Shell(Wgs84());
  const auto plane = Shell(Utm(Wgs84(), "0"));
  std::vector<TShellPoint> points{{10, 1, 5}};
  for (const FailureRow& row : rows)
    points.push_back(row.point);
  points.push_back({10, 1, 5});
  EXPECT_EQ(geodetic.Transform(plane, points), std::size(rows));
  EXPECT_EQ(points.front().First, points.back().First);
  EXPECT_TRUE(std::isfinite(points.front().First));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const TShellPoint& point = points[i + 1];
    EXPECT_TRUE(point.First == HUGE_VAL && point.Second == HUGE_VAL && point.Third == HUGE_VAL)
        << rows[i].name;
    EXPECT_THAT(geodetic.ExplainFailure(plane, rows[i].point), testing::HasSubstr(rows[i].reason))
        << rows[i].name;
  }
  EXPECT_EQ(geodetic.ExplainFailure(plane, {10, 1, 5}), "");
}

TEST(ShellTransformTest, KeepsLocalSystemsToTheirEquals) {
  SystemModel local;
  local.kind = SystemKind::kLocalCartesian;
  local.name = "site";
  SystemModel sphere = local;
  sphere.kind = SystemKind::kLocal;
  sphere.ellipsoid = Wgs84().ellipsoid;
  sphere.ellipsoid->sphere = true;
  for (const SystemModel& model : {local, sphere}) {
    const auto system = Shell(model);
    EXPECT_EQ(Move(system, *system.CreateCopy(), {1, 2, 3}).Second, 2);
    TShellPoint point{1, 2, 3};
    EXPECT_THROW((void)system.Transform(Shell(Wgs84()), {&point, 1}), QvRefSystem::GeodesyError);
    EXPECT_THROW((void)Shell(Wgs84()).Transform(system, {&point, 1}), QvRefSystem::GeodesyError);
    EXPECT_THROW((void)system.Transform(Shell(InFeet(model)), {&point, 1}),
                 QvRefSystem::GeodesyError);
  }
}

// Objects of PROJ belong to a thread; a system does not.
TEST(ShellTransformTest, ComputesOnAThreadThatDidNotMakeIt) {
  const auto geodetic = Shell(Wgs84());
  const auto plane = Shell(Utm(Wgs84(), "15"));
  const TShellPoint expected = Move(geodetic, plane, {48, 16, 100});
  for (int i = 0; i < 3; ++i) {
    TShellPoint found;
    std::thread([&] { found = Move(geodetic, plane, {48, 16, 100}); }).join();
    EXPECT_EQ(found.First, expected.First);
  }
}

// More systems than PROJ's objects are kept for: the first ones come back to work.
TEST(ShellTransformTest, ComputesWithAnyNumberOfSystems) {
  const auto geodetic = Shell(Wgs84());
  std::vector<std::unique_ptr<TShellReferenceSystem>> zones;
  for (int meridian = -90; meridian < 90; ++meridian)
    zones.push_back(Shell(Utm(Wgs84(), std::to_string(meridian))).CreateCopy());
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 180; ++i)
      EXPECT_NEAR(Move(geodetic, *zones[i], {1, i - 90.0, 0}).First, 500000, 1e-6);
  }
}

// The ellipsoidal equidistant cylindrical projection: IOGP Guidance Note 373-7-2.
TEST(ShellTransformTest, MeasuresTheMeridianOfTheEquidistantCylindrical) {
  const auto plane =
      Shell(Projected(Wgs84(), 1028, {{8823, "0"}, {8802, "0"}, {8806, "0"}, {8807, "0"}}));
  const auto geodetic = Shell(Wgs84());
  ExpectNear(Move(geodetic, plane, {55, 10, 0}), {1113194.91, 6097230.31, 0}, 5e-3, 0);
  for (const double latitude : {-90.0, -45.0, 0.0, 30.0, 89.9999, 90.0}) {
    const TShellPoint back = Move(plane, geodetic, Move(geodetic, plane, {latitude, 20, 3}));
    ExpectNear(back, {latitude, 20, 3}, 1e-12, 1e-9);
  }
  EXPECT_EQ(Move(plane, geodetic, {0, 1.1e7, 0}).First, HUGE_VAL);
}

}  // namespace
}  // namespace refframe_tests
