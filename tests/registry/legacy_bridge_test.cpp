#include "registry/legacy_bridge.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "platform/geocore/model_from_tree.h"
#include "platform/geocore/projjson.h"
#include "registry/epsg_models.h"
#include "tests/support/legacy_samples.h"

namespace QvRefSystem {
namespace {

using QvCommonUtils::TStringTree;
using QvPlatform::SQvCTUI_ProjectionInfo1;

SQvCTUI_ProjectionInfo1 Record(int zone = 4) {
  auto record =
      MakeProjectionInfo1(refframe_tests::GaussKrueger(), refframe_tests::kGaussKruegerFlags);
  record.Zone = zone;
  return record;
}

SystemModel ModelOf(const SQvCTUI_ProjectionInfo1& record) {
  TStringTree tree;
  EXPECT_TRUE(FillReferenceSystemTree(&record, &tree, 5800000, 4500000, 0)) << record.SystemName;
  SystemModel model;
  std::string error;
  EXPECT_TRUE(ModelFromTree(&tree, &model, &error)) << error;
  return model;
}

std::string ParameterOf(const SystemModel& model, int code) {
  for (const auto& parameter : model.projection->parameters) {
    if (parameter.code == code) return parameter.value;
  }
  return "(none)";
}

// Zone 4 of 3 degrees is EPSG:31468: its datum with the registry's shift, its ellipsoid, its units.
TEST(LegacyBridge, AZoneStandsOnTheRegistrysDatum) {
  const SystemModel model = ModelOf(Record());
  SystemModel known;
  std::string error;
  ASSERT_TRUE(ModelFromEpsg(31468, &known, &error)) << error;
  EXPECT_EQ(model.kind, SystemKind::kProjected);
  EXPECT_EQ(model.name, "Old Gauss-Krueger of the survey");
  ASSERT_TRUE(model.datum && known.datum);
  EXPECT_EQ(model.datum->name, known.datum->name);
  EXPECT_EQ(model.datum->shift.name, known.datum->shift.name);
  EXPECT_EQ(model.datum->ellipsoid.geoTiffCode, known.datum->ellipsoid.geoTiffCode);
  EXPECT_EQ(model.linearUnit.code, known.linearUnit.code);
  EXPECT_TRUE(model.projection->swap);
  for (const int code : {8801, 8802, 8805, 8806, 8807})
    EXPECT_EQ(ParameterOf(model, code), ParameterOf(known, code)) << code;
}

TEST(LegacyBridge, ZonesGoRoundTheEarth) {
  const struct {
    int zone;
    const char* meridian;
    const char* easting;
  } rows[] = {{1, "3", "1500000"},
              {60, "180", "60500000"},
              {61, "-177", "61500000"},
              {120, "0", "120500000"}};
  for (const auto& row : rows) {
    const SystemModel model = ModelOf(Record(row.zone));
    EXPECT_EQ(ParameterOf(model, 8802), row.meridian) << row.zone;
    EXPECT_EQ(ParameterOf(model, 8806), row.easting) << row.zone;
  }
}

TEST(LegacyBridge, TellsTheOtherKinds) {
  auto record = Record();
  record.Projected = record.HasZones = false;
  record.Geodetic = true;
  record.MeridianName = "Ferro";
  record.MeridianLongitude = -17.66666666666667;
  record.DatumName = "Datum of the survey";
  const SystemModel geodetic = ModelOf(record);
  EXPECT_EQ(geodetic.kind, SystemKind::kGeodetic);
  EXPECT_EQ(geodetic.primeMeridian.geoTiffCode, 8909) << "the registry's own Ferro";
  EXPECT_NE(geodetic.datum->shift.name.find("no shift"), std::string::npos);
  record.DatumName.clear();
  const SystemModel bare = ModelOf(record);
  EXPECT_FALSE(bare.datum);
  EXPECT_EQ(bare.ellipsoid->geoTiffCode, 7004);
  record.Geodetic = false;
  record.Geocentric = true;
  record.DatumName = "Datum of the survey";
  record.MeridianLongitude = 0;
  EXPECT_EQ(ModelOf(record).kind, SystemKind::kGeocentric);
}

TEST(LegacyBridge, AShiftOfItsOwnComesOver) {
  for (const int type : {1, 2, 3}) {
    auto record = Record();
    record.HasShift = true;
    record.ShiftType = type;
    const double shift[] = {598.1, 73.7, 418.2, 0.202, 0.045, -2.455, 6.7};
    std::copy(std::begin(shift), std::end(shift), record.Shift);
    const SystemModel model = ModelOf(record);
    const DatumShiftModel& read = model.datum->shift;
    EXPECT_EQ(read.type, type);
    EXPECT_EQ(read.tx, "598.1");
    EXPECT_EQ(read.tz, "418.2");
    if (type == 1) continue;
    EXPECT_EQ(read.rx, "0.202");
    EXPECT_EQ(read.rz, "-2.455");
    EXPECT_EQ(read.s, "6.7");
    EXPECT_EQ(read.angularUnit.geoTiffCode, 9104) << "the registry's arc-second";
  }
}

TEST(LegacyBridge, LengthsAreInUnitsOfTheSystem) {
  auto record = Record();
  record.HasZones = false;
  record.UnitName = "US survey foot";
  record.UnitFactor = 1200.0 / 3937.0;
  const SystemModel model = ModelOf(record);
  EXPECT_EQ(model.linearUnit.geoTiffCode, 9003);
  EXPECT_EQ(ParameterOf(model, 8806), "500000");
  record.HasZones = true;
  EXPECT_EQ(ParameterOf(ModelOf(record), 8806), "13623333.333333334")
      << "four million metres and 500000 feet";
}

TEST(LegacyBridge, WhatTellsNoWholeSystemIsRefusedAndTheTreeStays) {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  using Spoil = std::function<void(SQvCTUI_ProjectionInfo1&)>;
  const std::pair<const char*, Spoil> rows[] = {
      {"nothing", [](auto& r) { r = {}; }},
      {"no kind", [](auto& r) { r.Projected = false; }},
      {"two kinds", [](auto& r) { r.Geodetic = true; }},
      {"no name", [](auto& r) { r.SystemName.clear(); }},
      {"a unit without a size", [](auto& r) { r.UnitFactor = 0; }},
      {"an ellipsoid without a size", [](auto& r) { r.SemiMajorAxis = -1; }},
      {"an ellipsoid that is none", [](auto& r) { r.InverseFlattening = 0.5; }},
      {"an unknown method", [](auto& r) { r.Method = 4711; }},
      {"a parameter too few", [](auto& r) { r.Parameters.pop_back(); }},
      {"zone 0", [](auto& r) { r.Zone = 0; }},
      {"a zone past the earth", [](auto& r) { r.Zone = 121; }},
      {"zones without a width", [](auto& r) { r.ZoneWidth = 0; }},
      {"an unknown shift", [](auto& r) { r.HasShift = true, r.ShiftType = 9; }},
      {"a meridian past the earth", [](auto& r) { r.MeridianLongitude = 181; }},
      {"a value that is no number", [](auto& r) { r.Parameters[0].Value = kNone; }},
  };
  TStringTree tree;
  tree.InsertString("name", 1020, 0, "as before");
  for (const auto& [name, spoil] : rows) {
    auto record = Record();
    spoil(record);
    EXPECT_FALSE(FillReferenceSystemTree(&record, &tree, 0, 0, 0)) << name;
  }
  const auto record = Record();
  EXPECT_FALSE(FillReferenceSystemTree(nullptr, &tree, 0, 0, 0));
  EXPECT_FALSE(FillReferenceSystemTree(&record, &tree, 0, 0, kNone));
  std::string text;
  ASSERT_TRUE(tree.GetString(1020, 0, &text));
  EXPECT_EQ(text, "as before");
}

}  // namespace
}  // namespace QvRefSystem
