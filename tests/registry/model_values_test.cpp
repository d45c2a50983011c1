#include "registry/model_values.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "platform/geocore/proj_handles.h"
#include "registry/registry_units.h"

namespace QvRefSystem {
namespace {

TEST(ModelValuesTest, WriteTheShortestTextOfANumber) {
  const std::map<std::string, double> rows = {{"0.9996", 0.9996},
                                              {"500000", 500000.0},
                                              {"-34.5", -34.5},
                                              {"0", -0.0},
                                              {"6377397.155", 6377397.155}};
  for (const auto& [text, value] : rows)
    EXPECT_EQ(FormatNumber(value), text);
}

// Values in sexagesimal notation as the registry has them, and the decimal degrees nearest to
// degrees + minutes / 60 + seconds / 3600.
TEST(ModelValuesTest, TurnSexagesimalNotationIntoTheNearestDecimalDegrees) {
  const struct {
    double dms;
    const char* degrees;
  } kRows[] = {{2.201395, "2.3372083333333333"},
               {-9.0754862, "-9.13190611111111"},
               {-17.4, "-17.666666666666668"},
               {106.482779, "106.80771944444444"},
               {7.26225, "7.439583333333333"},
               {33.0, "33"},
               {0.3, "0.5"},
               {49.5, "49.833333333333336"},
               {-0.0001, "-0.0002777777777777778"},
               {0, "0"},
               {180, "180"}};
  for (const auto& row : kRows) {
    double degrees = 0;
    ASSERT_TRUE(SexagesimalDmsToDegrees(row.dms, &degrees)) << row.dms;
    EXPECT_EQ(std::stod(FormatNumber(degrees)), std::stod(row.degrees)) << row.dms;
  }
}

TEST(ModelValuesTest, RefuseSexagesimalDigitsThatAreNone) {
  for (const double dms : {10.6, 10.0099, 10.596, 361.0, -400.0}) {
    double degrees = 7;
    EXPECT_FALSE(SexagesimalDmsToDegrees(dms, &degrees)) << dms;
    EXPECT_EQ(degrees, 7);
  }
}

TEST(ModelValuesTest, GiveAnEllipsoidTheShapeThatWasDefined) {
  const UnitModel& metre = *FindRegistryUnit(9001);
  const EllipsoidModel wgs84 = MakeEllipsoid(6378137, 298.257223563, std::nullopt, metre);
  EXPECT_TRUE(wgs84.useF);
  EXPECT_EQ(wgs84.b, "6356752.314245179");
  EXPECT_EQ(InverseFlatteningText(wgs84.f), "298.257223563");
  const EllipsoidModel clarke = MakeEllipsoid(6378206.4, std::nullopt, 6356583.8, metre);
  EXPECT_FALSE(clarke.useF || clarke.sphere);
  EXPECT_EQ(clarke.b, "6356583.8");
  EXPECT_EQ(clarke.f, 0);
  for (const auto& sphere : {MakeEllipsoid(6371007, 0.0, std::nullopt, metre),
                             MakeEllipsoid(6371007, std::nullopt, 6371007, metre)}) {
    EXPECT_TRUE(sphere.sphere && !sphere.useF);
    EXPECT_EQ(sphere.b, "6371007");
  }
}

// PROJ's factors are cut to 15 digits.
TEST(RegistryUnitsTest, AgreeWithTheFactorsOfProj) {
  int count = 0;
  PROJ_UNIT_INFO** units =
      proj_get_units_from_database(ThreadProjContext(), "EPSG", nullptr, 0, &count);
  int compared = 0;
  for (int i = 0; i < count; ++i) {
    const UnitModel* unit = FindRegistryUnit(std::stoi(units[i]->code));
    if (!unit || unit->code != std::stoi(units[i]->code)) continue;
    ++compared;
    EXPECT_EQ(unit->name, units[i]->name);
    EXPECT_NEAR(unit->factorB / unit->factorC / units[i]->conv_factor, 1, 1e-13) << unit->name;
    const UnitKind kind = RegistryUnitKind(unit->code);
    EXPECT_EQ(std::string(units[i]->category), kind == UnitKind::kLinear    ? "linear"
                                               : kind == UnitKind::kAngular ? "angular"
                                                                            : "scale");
    const UnitModel* byFactor = FindRegistryUnitByFactor(kind, units[i]->conv_factor);
    ASSERT_TRUE(byFactor);
    EXPECT_EQ(byFactor->factorB / byFactor->factorC, unit->factorB / unit->factorC);
  }
  proj_unit_list_destroy(units);
  EXPECT_EQ(compared, static_cast<int>(RegistryUnits().size()));
}

TEST(RegistryUnitsTest, HoldTheSameAngleInOneUnit) {
  EXPECT_EQ(FindRegistryUnit(9122), FindRegistryUnit(9102));
  EXPECT_EQ(FindRegistryUnit(9110), nullptr);
  EXPECT_EQ(FindRegistryUnitByFactor(UnitKind::kLinear, 0.3048006096012192)->code, 9003);
  EXPECT_EQ(FindRegistryUnitByFactor(UnitKind::kLinear, 0.30480061), nullptr);
}

}  // namespace
}  // namespace QvRefSystem
