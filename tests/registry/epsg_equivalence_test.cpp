// Every live system of the registry, as a model, is for PROJ the system of its code.

#include <gtest/gtest.h>

#include <utility>

#include "platform/geocore/projjson.h"
#include "registry/equivalence.h"
#include "tests/registry/installed.h"

namespace QvRefSystem {
namespace {

bool IsEquivalent(int code, Dimension dimension, std::string* why) {
  SystemModel model;
  std::string json;
  return ModelFromEpsg(code, &model, why) && ModelToProjJson(model, dimension, &json, why) &&
         EquivalentToEpsg(json, code, why);
}

// How many of the systems that are chosen are the same; each that is not fails the test.
template <typename Systems, typename Chosen>
int CountEquivalent(const Systems& systems, Dimension dimension, Chosen chosen) {
  int equivalent = 0;
  for (const auto& [code, system] : systems) {
    if (!chosen(system)) continue;
    std::string why;
    const bool same = IsEquivalent(code, dimension, &why);
    EXPECT_TRUE(same) << code << ": " << why;
    equivalent += same ? 1 : 0;
  }
  return equivalent;
}

TEST(EverySystem, IsTheSystemOfItsCode) {
  using enum EpsgGeodeticKind;
  for (const auto& [kind, count] :
       {std::pair{kGeographic2D, 545}, {kGeographic3D, 204}, {kGeocentric, 194}}) {
    const Dimension dimension = kind == kGeographic3D ? Dimension::kThree : Dimension::kTwo;
    EXPECT_EQ(CountEquivalent(Dataset().geodeticSystems, dimension,
                              [kind](const auto& system) { return system.kind == kind; }),
              count);
  }
  EXPECT_EQ(CountEquivalent(Dataset().projectedSystems, Dimension::kTwo,
                            [](const auto&) { return true; }),
            5135);
}

// The comparison sees what would shift coordinates.
TEST(SpoiledSystem, IsNoLongerTheSystemOfItsCode) {
  const struct {
    int code;
    void (*spoil)(SystemModel*);
  } rows[] = {
      {32637, [](SystemModel* m) { m->projection->parameters[1].value = "39.00001"; }},
      {27700,
       [](SystemModel* m) {
         m->projection->axisSign[0] = -1;
         m->projection->axisDirection[0] = "West";
       }},
      {2193,
       [](SystemModel* m) {
         m->projection->swap = false;
         std::swap(m->projection->axisDirection[0], m->projection->axisDirection[1]);
       }},
      {4807, [](SystemModel* m) { m->primeMeridian.longitude = "2.5"; }},
      {4277, [](SystemModel* m) { m->datum->ellipsoid.a = "6377563.4"; }},
  };
  for (const auto& row : rows) {
    SystemModel model = Epsg(row.code);
    std::string why;
    std::string json;
    row.spoil(&model);
    ASSERT_TRUE(ModelToProjJson(model, Dimension::kTwo, &json, &why)) << why;
    EXPECT_FALSE(EquivalentToEpsg(json, row.code, &why)) << row.code;
  }
}

}  // namespace
}  // namespace QvRefSystem
