// Every live system of the registry, as a model, is for PROJ the system of its code.

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/geocore/projjson.h"
#include "registry/epsg_model_maker.h"
#include "registry/epsg_models.h"
#include "registry/equivalence.h"

namespace QvRefSystem {
namespace {

const EpsgDataset& Dataset() {
  std::string error;
  const EpsgDataset* dataset = InstalledEpsgDataset(&error);
  if (!dataset) throw std::runtime_error(error);
  return *dataset;
}

bool IsEquivalent(int code, Dimension dimension, std::string* why) {
  SystemModel model;
  std::string json;
  return ModelFromEpsg(code, &model, why) && ModelToProjJson(model, dimension, &json, why) &&
         EquivalentToEpsg(json, code, why);
}

int CountGeodetic(EpsgGeodeticKind kind) {
  const Dimension dimension =
      kind == EpsgGeodeticKind::kGeographic3D ? Dimension::kThree : Dimension::kTwo;
  int equivalent = 0;
  for (const auto& [code, system] : Dataset().geodeticSystems) {
    if (system.kind != kind) continue;
    std::string why;
    const bool same = IsEquivalent(code, dimension, &why);
    EXPECT_TRUE(same) << code << ": " << why;
    equivalent += same ? 1 : 0;
  }
  return equivalent;
}

TEST(EverySystem, OfGeographic2DIsTheSystemOfItsCode) {
  EXPECT_EQ(CountGeodetic(EpsgGeodeticKind::kGeographic2D), 545);
}

TEST(EverySystem, OfGeographic3DIsTheSystemOfItsCode) {
  EXPECT_EQ(CountGeodetic(EpsgGeodeticKind::kGeographic3D), 204);
}

TEST(EverySystem, GeocentricIsTheSystemOfItsCode) {
  EXPECT_EQ(CountGeodetic(EpsgGeodeticKind::kGeocentric), 194);
}

TEST(EverySystem, ProjectedIsTheSystemOfItsCode) {
  int equivalent = 0;
  for (const auto& [code, system] : Dataset().projectedSystems) {
    std::string why;
    const bool same = IsEquivalent(code, Dimension::kTwo, &why);
    EXPECT_TRUE(same) << code << ": " << why;
    equivalent += same ? 1 : 0;
  }
  EXPECT_EQ(equivalent, 5135);
}

// The comparison sees what would shift coordinates.
struct Fault {
  const char* name;
  int code;
  void (*spoil)(SystemModel*);
};

class SpoiledSystem : public testing::TestWithParam<Fault> {};

TEST_P(SpoiledSystem, IsNoLongerTheSystemOfItsCode) {
  SystemModel model;
  std::string why;
  std::string json;
  ASSERT_TRUE(ModelFromEpsg(GetParam().code, &model, &why)) << why;
  GetParam().spoil(&model);
  ASSERT_TRUE(ModelToProjJson(model, Dimension::kTwo, &json, &why)) << why;
  EXPECT_FALSE(EquivalentToEpsg(json, GetParam().code, &why));
}

INSTANTIATE_TEST_SUITE_P(
    Faults, SpoiledSystem,
    testing::Values(Fault{"InAParameter", 32637,
                          [](SystemModel* model) {
                            model->projection->parameters[1].value = "39.00001";
                          }},
                    Fault{"InAnAxis", 27700,
                          [](SystemModel* model) {
                            model->projection->axisSign[0] = -1;
                            model->projection->axisDirection[0] = "West";
                          }},
                    Fault{"InTheAxisOrder", 2193,
                          [](SystemModel* model) {
                            model->projection->swap = false;
                            std::swap(model->projection->axisDirection[0],
                                      model->projection->axisDirection[1]);
                          }},
                    Fault{"InTheMeridian", 4807,
                          [](SystemModel* model) { model->primeMeridian.longitude = "2.5"; }},
                    Fault{"InTheEllipsoid", 4277,
                          [](SystemModel* model) { model->datum->ellipsoid.a = "6377563.4"; }}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace QvRefSystem
