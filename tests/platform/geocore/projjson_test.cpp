#include "platform/geocore/projjson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <nlohmann/json.hpp>

#include "tests/platform/geocore/shell_systems.h"

namespace QvRefSystem {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;

SystemModel Geodetic() {
  SystemModel system = refframe_tests::Wgs84();
  refframe_tests::SetShift(&system, 1, {"1", "1", "1"});
  return system;
}

SystemModel Projected() {
  return refframe_tests::Utm(Geodetic(), "9");
}

json Json(const SystemModel& system, Dimension dimension = Dimension::kTwo) {
  std::string text;
  std::string error;
  EXPECT_TRUE(ModelToProjJson(system, dimension, &text, &error)) << error;
  return json::parse(text);
}

TEST(ProjJsonTest, HoldsTheInverseFlatteningThatWasEntered) {
  for (const double entered : {298.257223563, 299.1528128, 300.8017255, 293.465, 297.0, 308.64}) {
    EXPECT_EQ(InverseFlattening(1 / entered), entered);
  }
  EXPECT_EQ(InverseFlattening(0), 0);
  EXPECT_EQ(Json(Geodetic())["datum"]["ellipsoid"]["inverse_flattening"], 298.257223563);
}

TEST(ProjJsonTest, GivesTheShapeByItsDefiningNumbers) {
  SystemModel system = Geodetic();
  EllipsoidModel& ellipsoid = system.datum->ellipsoid;
  ellipsoid.useF = false;
  ellipsoid.b = "6356752";
  EXPECT_EQ(Json(system)["datum"]["ellipsoid"]["semi_minor_axis"], 6356752);
  ellipsoid.sphere = true;
  const json sphere = Json(system)["datum"]["ellipsoid"];
  EXPECT_EQ(sphere["radius"], 6378137);
  EXPECT_FALSE(sphere.contains("semi_minor_axis"));
}

// A unit that was edited keeps its code; only the factors say how long it is.
TEST(ProjJsonTest, GoesByTheFactorsOfAUnitAndNotByItsCode) {
  SystemModel system = Geodetic();
  system.kind = SystemKind::kGeocentric;
  system.linearUnit.code = 9001;
  system.linearUnit.name = "two metres";
  system.linearUnit.factorB = 2;
  const json unit = Json(system)["coordinate_system"]["axis"][0]["unit"];
  EXPECT_EQ(unit["conversion_factor"], 2);
}

TEST(ProjJsonTest, CountsHeightsOnlyInThreeDimensions) {
  EXPECT_EQ(Json(Geodetic())["coordinate_system"]["axis"].size(), 2u);
  const json axes = Json(Geodetic(), Dimension::kThree)["coordinate_system"]["axis"];
  ASSERT_EQ(axes.size(), 3u);
  EXPECT_EQ(axes[2]["direction"], "up");
}

TEST(ProjJsonTest, TurnsSignsAndSwapIntoDirections) {
  struct Row {
    int first, second;
    bool swap;
    const char* firstDirection;
    const char* secondDirection;
  };
  constexpr Row kRows[] = {{1, 1, true, "north", "east"},
                           {-1, -1, true, "south", "west"},
                           {1, 1, false, "east", "north"},
                           {-1, -1, false, "west", "south"},
                           {1, -1, true, "north", "west"}};
  for (const Row& row : kRows) {
    SystemModel system = Projected();
    system.projection->axisSign[0] = row.first;
    system.projection->axisSign[1] = row.second;
    system.projection->swap = row.swap;
    const json axes = Json(system)["coordinate_system"]["axis"];
    EXPECT_EQ(axes[0]["direction"], row.firstDirection);
    EXPECT_EQ(axes[1]["direction"], row.secondDirection);
  }
}

TEST(ProjJsonTest, NamesAnEnsembleByItsDatum) {
  SystemModel system = Geodetic();
  system.datum->name = "World Geodetic System 1984 ensemble";
  EXPECT_EQ(Json(system)["datum"]["name"], "World Geodetic System 1984");
}

TEST(ProjJsonTest, BindsByTheShiftUnderANameOfItsOwn) {
  std::string text;
  std::string error;
  ASSERT_TRUE(ModelToBoundProjJson(Projected(), Dimension::kTwo, "Datum 17", &text, &error));
  const json bound = json::parse(text);
  EXPECT_EQ(bound["source_crs"]["base_crs"]["datum"]["name"], "Datum 17");
  EXPECT_EQ(bound["transformation"]["method"]["id"]["code"], 9603);
  SystemModel bare = Geodetic();
  bare.ellipsoid = bare.datum->ellipsoid;
  bare.datum.reset();
  EXPECT_FALSE(ModelToBoundProjJson(bare, Dimension::kTwo, "", &text, &error));
  EXPECT_THAT(error, HasSubstr("no datum"));
}

struct RefusalRow {
  const char* name;
  std::function<void(SystemModel*)> spoil;
  const char* reason;
};

TEST(ProjJsonTest, RefusesWhatItCannotTellAndSaysWhy) {
  const RefusalRow rows[] = {
      {"a comma for a point", [](auto* m) { m->projection->parameters[2].value = "0,9996"; },
       "not a number"},
      {"no parameter", [](auto* m) { m->projection->parameters.pop_back(); }, "False northing"},
      {"no unit", [](auto* m) { m->projection->angularUnit.reset(); }, "no angular unit"},
      {"an unknown method", [](auto* m) { m->projection->method = 77; }, "77"},
      {"no projection", [](auto* m) { m->projection.reset(); }, "no map projection"},
      {"neither datum nor ellipsoid", [](auto* m) { m->datum.reset(); }, "neither"},
      {"a negative axis", [](auto* m) { m->datum->ellipsoid.a = "-1"; }, "not positive"},
      {"a flattening above 1", [](auto* m) { m->datum->ellipsoid.f = 298; }, "flattening"},
      {"a unit of nothing", [](auto* m) { m->linearUnit.factorC = 0; }, "not positive"},
      {"a local system", [](auto* m) { m->kind = SystemKind::kLocal; }, "neither geocentric"},
      {"a geocentric base",
       [](auto* m) {
         m->primary = std::make_shared<SystemModel>(Geodetic());
         m->primary->kind = SystemKind::kGeocentric;
       },
       "not geodetic"},
  };
  for (const RefusalRow& row : rows) {
    SCOPED_TRACE(row.name);
    SystemModel system = Projected();
    row.spoil(&system);
    std::string text = "untouched";
    std::string error;
    EXPECT_FALSE(ModelToProjJson(system, Dimension::kTwo, &text, &error));
    EXPECT_EQ(text, "untouched");
    EXPECT_THAT(error, HasSubstr(row.reason));
  }
}

}  // namespace
}  // namespace QvRefSystem
