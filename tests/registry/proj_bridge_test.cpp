#include "registry/proj_bridge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/geocore/proj_handles.h"
#include "platform/geocore/projjson.h"
#include "platform/geocore/wkt2.h"
#include "registry/model_tree.h"
#include "registry/registry_units.h"
#include "tests/registry/installed.h"
#include "tests/support/helmert_text.h"

namespace QvRefSystem {
namespace {

using QvCommonUtils::TStringTree;
using ::testing::HasSubstr;
using ::testing::Not;

SystemModel FromText(const std::string& text) {
  SystemModel model;
  std::string error;
  EXPECT_TRUE(ModelFromProjText(text, &model, &error)) << text << ": " << error;
  return model;
}

std::string Refusal(const std::string& text) {
  SystemModel model;
  model.name = "untouched";
  std::string error;
  EXPECT_FALSE(ModelFromProjText(text, &model, &error)) << text;
  EXPECT_EQ(model.name, "untouched");
  return error;
}

std::string TreeText(const SystemModel& model) {
  TStringTree tree;
  ModelToTree(model, &tree);
  return WriteTreeText(&tree);
}

constexpr const char* kEsriNad27 =
    R"(PROJCS["NAD_1927_UTM_Zone_12N",GEOGCS["GCS_North_American_1927",
       DATUM["D_North_American_1927",SPHEROID["Clarke_1866",6378206.4,294.9786982]],
       PRIMEM["Greenwich",0.0],UNIT["Degree",0.0174532925199433]],
       PROJECTION["Transverse_Mercator"],PARAMETER["False_Easting",500000.0],
       PARAMETER["False_Northing",0.0],PARAMETER["Central_Meridian",-111.0],
       PARAMETER["Scale_Factor",0.9996],PARAMETER["Latitude_Of_Origin",0.0],UNIT["Meter",1.0]])";

// What came from elsewhere must become the same record as the registry's, word for word.
TEST(ProjBridgeTest, FindsTheRegistrysSystemByCodeAndByDefinition) {
  const SystemModel known = Epsg(26712);
  EXPECT_EQ(TreeText(FromText("EPSG:26712")), TreeText(known));
  EXPECT_EQ(TreeText(FromText(kEsriNad27)), TreeText(known));
}

TEST(ProjBridgeTest, TakesNoCodeFromADefinitionThatIsAnother) {
  std::string json = proj_as_projjson(ThreadProjContext(), CreateEpsgSystem(26712).get(), nullptr);
  json.replace(json.find("0.9996"), 6, "0.9997");
  const SystemModel model = FromText(json);
  EXPECT_EQ(model.geoTiffCode, 0);
  EXPECT_EQ(model.projection->parameters[2].value, "0.9997");
  // The base is still the registry's, with its shift.
  EXPECT_EQ(model.primary->geoTiffCode, 4267);
  EXPECT_EQ(model.datum->shift.name, model.primary->datum->shift.name);
}

TEST(ProjBridgeTest, GivesADatumOfTheRegistryItsShiftAndAnUnknownOneNone) {
  const SystemModel known = FromText("+proj=tmerc +lon_0=9 +datum=NAD27");
  EXPECT_EQ(known.datum->name, "North American Datum 1927");
  EXPECT_NE(known.datum->shift.tx, "0");
  const SystemModel unknown = FromText(
      R"(GEOGCS["Mine",DATUM["My datum",SPHEROID["My ellipsoid",6378000,299]],
         PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]])");
  EXPECT_EQ(unknown.datum->shift.type, 1);
  EXPECT_THAT(unknown.datum->shift.name, HasSubstr("no shift to WGS 84 known"));
}

// A name alone is no datum: another ellipsoid under it must not get the registry's shift.
TEST(ProjBridgeTest, DoesNotTakeADatumByItsNameAlone) {
  const SystemModel model = FromText(
      R"(GEOGCS["NAD27",DATUM["North_American_Datum_1927",SPHEROID["Clarke 1866",6378999,294]],
         PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]])");
  EXPECT_EQ(model.datum->ellipsoid.a, "6378999");
  EXPECT_THAT(model.datum->shift.name, HasSubstr("no shift"));
}

TEST(ProjBridgeTest, TakesTheShiftOfABoundSystem) {
  const SystemModel seven = FromText(
      "+proj=tmerc +lon_0=9 +k=1 +x_0=3500000 +ellps=bessel "
      "+towgs84=598.1,73.7,418.2,0.202,0.045,-2.455,6.7");
  EXPECT_EQ(seven.datum->shift.type, 2);
  EXPECT_EQ(seven.datum->shift.rz, "-2.455");
  EXPECT_EQ(seven.datum->shift.angularUnit.code, 9104);
  EXPECT_EQ(seven.datum->shift.scaleUnit.code, 9202);
  EXPECT_EQ(seven.primary->datum->shift.tx, "598.1");
  const SystemModel three = FromText("+proj=longlat +ellps=intl +towgs84=-87,-98,-121");
  EXPECT_EQ(three.datum->shift.type, 1);
  EXPECT_EQ(three.datum->shift.tz, "-121");
}

TEST(ProjBridgeTest, KeepsEveryDigit) {
  const SystemModel model =
      FromText("+proj=tmerc +lat_0=47.12345678901234 +x_0=609601.2192024384 +ellps=GRS80 +units=m");
  EXPECT_EQ(model.projection->parameters[0].value, "47.12345678901234");
  EXPECT_EQ(model.projection->parameters[3].value, "609601.2192024384");
}

TEST(ProjBridgeTest, KeepsAUnitOfItsOwn) {
  const SystemModel model = FromText(
      R"(PROJCS["Mine",GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],
         PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]],
         PROJECTION["Transverse_Mercator"],PARAMETER["latitude_of_origin",0],
         PARAMETER["central_meridian",9],PARAMETER["scale_factor",1],
         PARAMETER["false_easting",1000],PARAMETER["false_northing",0],UNIT["vara",0.8359]])");
  EXPECT_EQ(model.linearUnit.name, "vara");
  EXPECT_EQ(model.linearUnit.factorB, 0.8359);
  EXPECT_EQ(model.linearUnit.code, 0);
}

// PROJ gives systems from its strings the meridians of another origin.
TEST(ProjBridgeTest, TakesPolarAxesByTheirNames) {
  const SystemModel model = FromText("+proj=stere +lat_0=90 +lat_ts=70 +lon_0=-45 +datum=WGS84");
  EXPECT_FALSE(model.projection->swap);
  EXPECT_EQ(model.projection->axisSign[0], 1);
  EXPECT_EQ(model.projection->axisSign[1], 1);
}

TEST(ProjBridgeTest, HoldsHeightsOverABuiltInGeoid) {
  EXPECT_EQ(FromText("EPSG:4326+5773").geoidCode, 5773);
  EXPECT_THAT(Refusal("EPSG:4326+5703"), HasSubstr("geoid"));
  EXPECT_THAT(Refusal("EPSG:2263+5773"), HasSubstr("US survey foot"));
}

TEST(ProjBridgeTest, SaysWhyItCannotHoldASystem) {
  const std::pair<const char*, const char*> rows[] = {
      {"EPSG:5773", "VerticalCRS"},
      {"+proj=robin +datum=WGS84", "Robinson"},
      {"+proj=tmerc +ellps=intl +nadgrids=none.gsb", "NTv2"},
      {"EPSG:99999", "not found"},
      {"EPSG:9807", ""},
      {"", ""},
      {"no system at all", "unrecognized"},
      {R"({"type":"ProjectedCRS"})", "base_crs"}};
  for (const auto& [text, reason] : rows)
    EXPECT_THAT(Refusal(text), HasSubstr(reason));
  SystemModel model;
  std::string error;
  EXPECT_FALSE(ModelFromProjJson("EPSG:4326", &model, &error));
  EXPECT_THAT(error, HasSubstr("not JSON"));
}

TEST(ProjBridgeTest, WritesTheCodeIntoWktOnlyWhileItIsTrue) {
  TStringTree tree;
  std::string wkt;
  std::string error;
  ASSERT_TRUE(TreeFromProjText("EPSG:2154", &tree, &error)) << error;
  ASSERT_TRUE(TreeToWkt2(&tree, Dimension::kTwo, &wkt, &error)) << error;
  EXPECT_THAT(wkt, HasSubstr("ID[\"EPSG\",2154]"));
  EXPECT_THAT(wkt, HasSubstr("\n"));
  auto* projection = FindSubtree(&tree, 1300, 0);
  FindField(projection, 8826, 0)->SetValueText("700001", 0);
  ASSERT_TRUE(TreeToWkt2(&tree, Dimension::kTwo, &wkt, &error)) << error;
  EXPECT_THAT(wkt, Not(HasSubstr("ID[\"EPSG\",2154]")));
}

// The bound form must compute what the record says: 50 m up, DHDN with seven parameters.
TEST(ProjBridgeTest, BindsASystemByItsOwnShiftInThreeDimensions) {
  const SystemModel model = Epsg(4314);
  std::string json;
  std::string error;
  ASSERT_TRUE(ModelToBoundProjJson(model, Dimension::kThree, "own", &json, &error)) << error;
  const ProjObject bound = CreateProjObject(json, &error);
  ASSERT_TRUE(bound) << error;
  constexpr const char* kOptions[] = {"ALLOW_BALLPARK=NO", nullptr};
  const ProjObject road(proj_create_crs_to_crs_from_pj(
      ThreadProjContext(), bound.get(), CreateEpsgSystem(4979).get(), nullptr, kOptions));
  ASSERT_TRUE(road);
  ASSERT_EQ(model.datum->shift.type, 2);
  const std::string direct =
      "+proj=pipeline +step +proj=axisswap +order=2,1 +step +proj=unitconvert +xy_in=deg "
      "+xy_out=rad +step +proj=cart +ellps=bessel +step " +
      refframe_tests::HelmertText(model.datum->shift) +
      " +step +inv +proj=cart +ellps=WGS84 +step +proj=unitconvert +xy_in=rad +xy_out=deg "
      "+step +proj=axisswap +order=2,1";
  const PJ_COORD point = proj_coord(50, 9, 50, 0);
  const PJ_COORD ours = proj_trans(road.get(), PJ_FWD, point);
  const PJ_COORD expected = proj_trans(CreateProjObject(direct, nullptr).get(), PJ_FWD, point);
  EXPECT_NEAR(ours.xyz.x, expected.xyz.x, 1e-11);
  EXPECT_NEAR(ours.xyz.y, expected.xyz.y, 1e-11);
  EXPECT_NEAR(ours.xyz.z, expected.xyz.z, 1e-6);
  EXPECT_GT(ours.xyz.z, 90);
}

}  // namespace
}  // namespace QvRefSystem
