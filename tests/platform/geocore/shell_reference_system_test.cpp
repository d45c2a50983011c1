#include "platform/geocore/shell_reference_system.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "platform/geocore/shell_notation.h"
#include "tests/platform/geocore/shell_systems.h"

namespace refframe_tests {
namespace {

using QvRefSystem::TShellCoords;

SystemModel ShiftedUtm() {
  SystemModel system = Wgs84();
  SetShift(&system, 2, {"84", "-97", "-117", "0.5", "-0.25", "0.125", "1.5"});
  return Utm(system, "15");
}

struct SameRow {
  const char* name;
  std::function<void(SystemModel*)> change;
  bool same;
};

// Every change of one thing, and whether the plane stays the same.
const SameRow kUtmRows[] = {
    {"its name", [](auto* m) { m->name = "other"; }, true},
    {"its description", [](auto* m) { m->description = "other"; }, true},
    {"its axis names", [](auto* m) { m->axisAbbreviation[0] = "Q"; }, true},
    {"its code", [](auto* m) { m->geoTiffCode = 1; }, true},
    {"the datum's name", [](auto* m) { m->datum->name = "other"; }, true},
    {"the ellipsoid's name", [](auto* m) { m->datum->ellipsoid.name = "other"; }, true},
    {"the shift's name", [](auto* m) { m->datum->shift.name = "other"; }, true},
    {"the projection's name", [](auto* m) { m->projection->name = "other"; }, true},
    {"a unit's name and code",
     [](auto* m) {
       m->linearUnit.name = "other";
       m->linearUnit.code = 9001;
     },
     true},
    {"heights over a geoid", [](auto* m) { m->geoidCode = 5773; }, true},
    {"how a number is written", [](auto* m) { m->projection->parameters[3].value = "5e5"; }, true},
    {"the unit in which a number is written",
     [](auto* m) {
       m->projection->linearUnit = Unit(1000);
       m->projection->parameters[3].value = "500";
     },
     true},
    {"the sense of its rotations with their signs",
     [](auto* m) {
       auto& shift = m->datum->shift;
       shift.type = 3;
       shift.rx = "-0.5";
       shift.ry = "0.25";
       shift.rz = "-0.125";
     },
     true},
    {"the sense of its rotations", [](auto* m) { m->datum->shift.type = 3; }, false},
    {"a translation", [](auto* m) { m->datum->shift.tx = "84.001"; }, false},
    {"a rotation", [](auto* m) { m->datum->shift.rz = "0.1251"; }, false},
    {"a scale", [](auto* m) { m->datum->shift.s = "1.501"; }, false},
    {"the ellipsoid's axis", [](auto* m) { m->datum->ellipsoid.a = "6378137.001"; }, false},
    {"the flattening", [](auto* m) { m->datum->ellipsoid.f = 1 / 298.257222101; }, false},
    {"the prime meridian", [](auto* m) { m->primeMeridian.longitude = "0.001"; }, false},
    {"the method", [](auto* m) { m->projection->method = 1111; }, false},
    {"a parameter", [](auto* m) { m->projection->parameters[2].value = "0.99961"; }, false},
    {"the order of its axes", [](auto* m) { m->projection->swap = true; }, false},
    {"the sign of an axis", [](auto* m) { m->projection->axisSign[1] = -1; }, false},
    {"its unit", [](auto* m) { m->linearUnit = Unit(0.3048); }, false},
};

const SameRow kGeodeticRows[] = {
    {"its angular unit", [](auto* m) { m->angularUnit = Grad(); }, false},
    {"the range of its longitudes", [](auto* m) { m->positiveLongitude = true; }, false},
    {"the unit of its heights", [](auto* m) { m->linearUnit = Unit(0.3048); }, true},
    {"a datum without a shift", [](auto* m) { SetShift(m, 1, {}); }, true},
};

const SameRow kHorizonRows[] = {
    {"its origin", [](auto* m) { m->origin[0] = "55.0000001"; }, false},
    {"its origin's height", [](auto* m) { m->origin[2] = "200.001"; }, false},
    {"its azimuth", [](auto* m) { m->azimuth = "0.001"; }, false},
    {"an azimuth of nought", [](auto* m) { m->azimuth = "0.0"; }, true},
    {"its handedness", [](auto* m) { m->swap = true; }, false},
};

void ExpectSame(const SystemModel& model, std::span<const SameRow> rows) {
  const auto system = Shell(model);
  EXPECT_FALSE(system.IsSameAs(nullptr));
  EXPECT_TRUE(system.IsSameAs(system.CreateCopy().get()));
  for (const SameRow& row : rows) {
    SystemModel changed = model;
    row.change(&changed);
    const auto other = Shell(changed);
    EXPECT_EQ(system.IsSameAs(&other), row.same) << row.name;
    EXPECT_EQ(other.IsSameAs(&system), row.same) << row.name;
  }
}

TEST(ShellReferenceSystemTest, IsTheSameByWhatChangesAPlaneCoordinate) {
  ExpectSame(ShiftedUtm(), kUtmRows);
  ExpectSame(Wgs84(), kGeodeticRows);
  ExpectSame(Topocentric(Wgs84(), {"55", "5", "200"}), kHorizonRows);
  const auto geocentric = Shell(Geocentric());
  EXPECT_FALSE(Shell(Wgs84()).IsSameAs(&geocentric));
}

TEST(ShellReferenceSystemTest, SharesStoredHeightsInTheSameUnit) {
  const SystemModel feet = InFeet(Wgs84());
  EXPECT_TRUE(Shell(Wgs84()) ^ Shell(Wgs84()));
  EXPECT_FALSE(Shell(Wgs84()) ^ Shell(feet));
}

struct NotationRow {
  double degrees;
  const char* text;
};

TEST(ShellReferenceSystemTest, WritesAnglesWithoutEverSixtySeconds) {
  constexpr NotationRow rows[] = {
      {0, "0\u00B000'00.00000\"N"},
      {-0.0, "0\u00B000'00.00000\"N"},
      {-1e-12, "0\u00B000'00.00000\"N"},
      {53.80939444444444, "53\u00B048'33.82000\"N"},
      {-53.80939444444444, "53\u00B048'33.82000\"S"},
      {59.99999999999, "60\u00B000'00.00000\"N"},
      {-12.9999999999, "13\u00B000'00.00000\"S"},
      {1.0 / 60 - 1e-13, "0\u00B001'00.00000\"N"},
      {359.99999, "359\u00B059'59.96400\"N"},
  };
  for (const NotationRow& row : rows) {
    EXPECT_EQ(QvRefSystem::DegreesMinutesSeconds(row.degrees * std::numbers::pi / 180, "NS"),
              row.text);
  }
}

std::string Notation(const TShellReferenceSystem& system) {
  TShellCoords coords;
  system.GetCoords(&coords);
  std::string x;
  std::string y;
  std::string z;
  coords.Get(&x, &y, &z);
  return x + " " + y + " " + z;
}

// Coordinates come in by the plane's own X and Y and go out in the order of the axes.
TEST(ShellReferenceSystemTest, WritesCoordinatesInTheOrderOfItsAxes) {
  auto geodetic = Shell(InGrads(Wgs84()));
  geodetic.set_core_coords(-50, 25, 12.34567);
  EXPECT_EQ(Notation(geodetic), "22\u00B030'00.00000\"N 45\u00B000'00.00000\"W 12.3457");
  auto plane = Shell(ShiftedUtm());
  plane.set_core_coords(500000.00004, -0.00001, -3);
  EXPECT_EQ(Notation(plane), "500000.0000 0.0000 -3.0000");
  SystemModel swapped = NorthFirst(ShiftedUtm());
  swapped.linearUnit = Unit(1000);
  auto northFirst = Shell(swapped);
  northFirst.set_core_coords(1, 2, 3);
  EXPECT_EQ(Notation(northFirst), "2.0000000 1.0000000 3.0000000");
  EXPECT_TRUE(northFirst.IsFirstAxisNorth());
  EXPECT_FALSE(plane.IsFirstAxisNorth());
}

struct RefusedRow {
  const char* name;
  std::function<void(SystemModel*)> change;
  const char* reason;
};

TEST(ShellReferenceSystemTest, RefusesWhatMakesNoSystem) {
  const RefusedRow rows[] = {
      {"no ellipsoid", [](auto* m) { m->datum.reset(); }, "neither a datum"},
      {"a flat ellipsoid", [](auto* m) { m->datum->ellipsoid.f = 1; }, "no ellipsoid"},
      {"an axis that is no number", [](auto* m) { m->datum->ellipsoid.a = "6378 km"; },
       "semi-major axis"},
      {"a unit of nothing", [](auto* m) { m->linearUnit.factorB = 0; }, "factors"},
      {"a rotation that is no number", [](auto* m) { m->datum->shift.rx = ""; }, "rotation"},
      {"a missing parameter", [](auto* m) { m->projection->parameters.pop_back(); }, "8807"},
      {"a method without computation", [](auto* m) { m->projection->method = 9824; }, ""},
      {"an unknown method", [](auto* m) { m->projection->method = 1; }, "not known"},
      {"no projection", [](auto* m) { m->projection.reset(); }, "no map projection"},
  };
  for (const RefusedRow& row : rows) {
    SystemModel model = ShiftedUtm();
    row.change(&model);
    try {
      (void)Shell(model);
      ADD_FAILURE() << row.name;
    } catch (const QvRefSystem::GeodesyError& error) {
      EXPECT_THAT(error.what(), testing::HasSubstr(row.reason)) << row.name;
    }
  }
}

TEST(ShellReferenceSystemTest, MakesNothingOfATreeThatIsNoSystem) {
  QvCommonUtils::TStringTree tree;
  std::string error;
  EXPECT_EQ(QvRefSystem::CreateShellReferenceSystem(&tree, nullptr, &error), nullptr);
  EXPECT_THAT(error, testing::HasSubstr("missing field"));
  EXPECT_EQ(QvRefSystem::CreateShellReferenceSystem(nullptr, nullptr), nullptr);
}

}  // namespace
}  // namespace refframe_tests
