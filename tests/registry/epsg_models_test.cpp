// Systems of the registry as models: values by the EPSG Dataset v10.076.

#include "registry/epsg_models.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "registry/epsg_model_maker.h"
#include "tests/registry/installed.h"

namespace QvRefSystem {
namespace {

const EpsgModelMaker& Maker() {
  std::string error;
  const EpsgModelMaker* maker = EpsgModelMaker::Installed(&error);
  if (!maker) throw std::runtime_error(error);
  return *maker;
}

// Texts of a projection's parameters by code, in the order of their codes.
std::string Values(const ProjectionModel& projection) {
  std::set<std::string> values;
  for (const auto& parameter : projection.parameters)
    values.insert(std::to_string(parameter.code) + "=" + parameter.value);
  std::string text;
  for (const std::string& value : values)
    text += (text.empty() ? "" : " ") + value;
  return text;
}

TEST(Projections, HaveTheRegistrysParametersInPlainUnits) {
  const struct {
    int code;
    const char* conversion;
    int method;
    const char* values;
    const char* linearUnit;
    const char* angularUnit;
  } rows[] = {
      {32637, "UTM zone 37N", 9807, "8801=0 8802=39 8805=0.9996 8806=500000 8807=0", "metre",
       "degree"},
      {27700, "British National Grid", 9807,
       "8801=49 8802=-2 8805=0.9996012717 8806=400000 8807=-100000", "metre", "degree"},
      // 30 degrees 17' 17.30311" and 42.5 degrees east of Ferro.
      {2065, "Krovak", 9819,
       "1036=30.288139752777777 8806=0 8807=0 8811=49.5 8818=78.5 8819=0.9999 8833=42.5", "metre",
       "degree"},
      // 110 degrees 10' west, in international feet.
      {2222, "SPCS83 Arizona East zone (International feet)", 9807,
       "8801=31 8802=-110.16666666666667 8805=0.9999 8806=700000 8807=0", "foot", "degree"},
      {27572, "Lambert zone II", 9801, "8801=52 8802=0 8805=0.99987742 8806=600000 8807=2200000",
       "metre", "grad"},
      {3031, "Antarctic Polar Stereographic", 9829, "8806=0 8807=0 8832=-71 8833=0", "metre",
       "degree"},
      // 43 degrees 19', 44 degrees 11', 45 degrees 42'; the scale factor is the ellipsoid's.
      {6201, "Michigan CS27 Central zone", 1051,
       "1038=1.0000382 8821=43.31666666666667 8822=-84.33333333333333 8823=44.18333333333333 "
       "8824=45.7 8826=2000000 8827=0",
       "US survey foot", "degree"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.code);
    const SystemModel model = Epsg(row.code);
    ASSERT_TRUE(model.projection.has_value());
    EXPECT_EQ(model.projection->name, row.conversion);
    EXPECT_EQ(model.projection->method, row.method);
    EXPECT_EQ(Values(*model.projection), row.values);
    EXPECT_EQ(model.projection->linearUnit->name, row.linearUnit);
    EXPECT_EQ(model.linearUnit.name, row.linearUnit);
    EXPECT_EQ(model.projection->angularUnit->name, row.angularUnit);
  }
}

TEST(Axes, FollowTheRegistrysOrderAndDirections) {
  const struct {
    int code;
    const char* abbreviations[2];
    const char* directions[2];
    int signs[2];
    bool swap;
  } rows[] = {
      {32637, {"E", "N"}, {"East", "North"}, {1, 1}, false},
      {2193, {"N", "E"}, {"North", "East"}, {1, 1}, true},
      {5513, {"X", "Y"}, {"South", "West"}, {-1, -1}, true},
      {5514, {"X", "Y"}, {"East", "North"}, {1, 1}, false},
      {29371, {"Y", "X"}, {"West", "South"}, {-1, -1}, false},
      {2218, {"Y", "X"}, {"North", "West"}, {1, -1}, true},
      {3052, {"W", "N"}, {"West", "North"}, {-1, 1}, false},
      // Polar axes go by their names: both point north along a meridian.
      {3031, {"E", "N"}, {"East", "North"}, {1, 1}, false},
      {32661, {"N", "E"}, {"North", "East"}, {1, 1}, true},
      // The registry gives this one no abbreviations.
      {3388, {"N", "E"}, {"North", "East"}, {1, 1}, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.code);
    const SystemModel model = Epsg(row.code);
    ASSERT_TRUE(model.projection.has_value());
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(model.axisAbbreviation[i], row.abbreviations[i]);
      EXPECT_EQ(model.projection->axisAbbreviation[i], row.abbreviations[i]);
      EXPECT_EQ(model.projection->axisDirection[i], row.directions[i]);
      EXPECT_EQ(model.projection->axisSign[i], row.signs[i]);
    }
    EXPECT_EQ(model.projection->swap, row.swap);
  }
}

TEST(PrimeMeridians, AreInDegreesOrGrads) {
  const struct {
    int code;
    const char* longitude;
    const char* unit;
  } rows[] = {
      {8901, "0", "degree"},
      {8903, "2.5969213", "grad"},
      // -74 degrees 4' 51.3", -17 degrees 40', 2 degrees 20' 13.95".
      {8904, "-74.08091666666667", "degree"},
      {8909, "-17.666666666666668", "degree"},
      {8914, "2.3372083333333333", "degree"},
  };
  for (const auto& row : rows) {
    const PrimeMeridianModel model = Maker().PrimeMeridian(Dataset().primeMeridians.at(row.code));
    EXPECT_EQ(model.longitude, row.longitude) << row.code;
    EXPECT_EQ(model.unit.name, row.unit) << row.code;
    EXPECT_EQ(model.geoTiffCode, row.code);
  }
}

TEST(Ellipsoids, KeepTheUnitThatDefinesThem) {
  const EllipsoidModel clarke1880 = Maker().Ellipsoid(Dataset().ellipsoids.at(7034));
  EXPECT_EQ(clarke1880.a, "20926202");
  EXPECT_EQ(clarke1880.unit.name, "Clarke's foot");
}

TEST(GeodeticSystems, OfTwoAndThreeDimensionsAreOneSystem) {
  const SystemModel flat = Epsg(4326);
  const SystemModel solid = Epsg(4979);
  EXPECT_EQ(flat.name, solid.name);
  EXPECT_EQ(solid.geoTiffCode, 4326);
  EXPECT_EQ(Maker().RecordCode(4979), 4326);
  EXPECT_EQ(Maker().MergedSystems().at(4326), 4979);
  // Same datum, other name.
  EXPECT_EQ(Maker().RecordCode(7084), 7084);
  EXPECT_EQ(Maker().RecordCode(7042), 7084);
  // A geocentric system of the same name is another kind.
  EXPECT_EQ(Epsg(4978).kind, SystemKind::kGeocentric);
  EXPECT_EQ(Epsg(4978).geoTiffCode, 4978);
}

TEST(GeodeticSystems, GivenLongitudeFirstAreHeldLatitudeFirstAndSaySo) {
  const SystemModel model = Epsg(7084);
  EXPECT_EQ(model.axisAbbreviation[0], "Lat");
  EXPECT_NE(model.description.find("latitude first"), std::string::npos);
}

TEST(ProjectedSystems, StandOnTheRecordOfTheirBaseSystem) {
  const SystemModel overFlat = Epsg(27700);
  ASSERT_TRUE(overFlat.primary);
  EXPECT_EQ(overFlat.primary->geoTiffCode, 4277);
  EXPECT_EQ(overFlat.datum->name, overFlat.primary->datum->name);
  // The base of this one is the 3D system, 9893.
  EXPECT_EQ(Epsg(9895).primary->geoTiffCode, 4181);
  EXPECT_EQ(Epsg(2065).primeMeridian.name, "Ferro");
}

TEST(Datums, OfEnsemblesGoByTheirPlainNames) {
  EXPECT_EQ(Epsg(4326).datum->name, "World Geodetic System 1984");
  EXPECT_EQ(Epsg(4258).datum->name, "European Terrestrial Reference System 1989");
  EXPECT_EQ(Epsg(4277).datum->name, "Ordnance Survey of Great Britain 1936");
  EXPECT_EQ(Epsg(4277).datum->abbreviation, "OSGB36");
}

TEST(Codes, ThatAreNotLiveSystemsAreRefusedAndChangeNothing) {
  SystemModel model;
  model.name = "before";
  // None at all, a vertical system, a deprecated one, a datum.
  for (const int code : {0, 5773, 4326001, 2192, 6326}) {
    std::string error;
    EXPECT_FALSE(ModelFromEpsg(code, &model, &error)) << code;
    EXPECT_NE(error.find(std::to_string(code)), std::string::npos) << error;
  }
  EXPECT_EQ(model.name, "before");
}

TEST(AllSystems, FitTheFieldsThatDescribeThemAndBearNoNameTwiceInAKind) {
  std::set<std::pair<SystemKind, std::string>> names;
  for (const int code : Maker().SystemCodes()) {
    const SystemModel model = Epsg(code);
    EXPECT_LE(model.description.size(), 255U) << code;
    EXPECT_LE(model.datum->shift.description.size(), 255U)
        << code << model.datum->shift.description;
    EXPECT_TRUE(names.emplace(model.kind, model.name).second) << model.name;
    EXPECT_EQ(model.geoTiffCode, code);
  }
  EXPECT_EQ(names.size(), 5874U);
}

}  // namespace
}  // namespace QvRefSystem
