#include "tests/platform/geocore/epsg_examples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "platform/geocore/projection_methods.h"
#include "platform/geocore/shell_reference_system.h"
#include "registry/model_tree.h"
#include "registry/model_values.h"

namespace QvRefSystem {
namespace {

using Examples::Example;
using Examples::kExamples;
using Examples::kMethodsWithoutExample;

UnitModel UnitOf(const Examples::Unit& unit) {
  UnitModel model;
  model.name = model.abbreviation = unit.name;
  model.factorB = unit.factorB;
  model.factorC = unit.factorC;
  return model;
}

EllipsoidModel EllipsoidOf(const Examples::Ellipsoid& shape) {
  const bool byB = shape.b != 0;
  EllipsoidModel model =
      MakeEllipsoid(shape.a, byB ? std::nullopt : std::optional(shape.inverseFlattening),
                    byB ? std::optional(shape.b) : std::nullopt, UnitOf(Examples::kMetre));
  model.name = shape.name;
  return model;
}

SystemModel GeographicOf(const Example& example) {
  SystemModel model;
  model.kind = SystemKind::kGeodetic;
  model.name = "geographic";
  model.linearUnit = UnitOf(example.linear);
  model.angularUnit = UnitOf(example.angular);
  model.primeMeridian.name = "meridian";
  model.primeMeridian.longitude = FormatNumber(example.primeMeridian);
  model.primeMeridian.unit = model.angularUnit;
  model.ellipsoid = EllipsoidOf(example.ellipsoid);
  return model;
}

ProjectionModel ProjectionOf(const Example& example) {
  ProjectionModel model;
  model.name = example.source;
  model.method = example.method;
  model.linearUnit = UnitOf(example.linear);
  model.angularUnit = UnitOf(example.angular);
  model.scaleUnit = UnitOf({"unity", 1, 1});
  model.axisAbbreviation[0] = model.axisDirection[0] = example.eastSign > 0 ? "East" : "West";
  model.axisAbbreviation[1] = model.axisDirection[1] = example.northSign > 0 ? "North" : "South";
  model.axisSign[0] = example.eastSign;
  model.axisSign[1] = example.northSign;
  for (const Examples::Parameter& parameter : example.parameters) {
    if (parameter.code == 0) break;
    model.parameters.push_back({parameter.code,
                                std::string(FindProjectionParameter(parameter.code)->name),
                                FormatNumber(parameter.value)});
  }
  return model;
}

SystemModel ProjectedOf(const Example& example) {
  SystemModel model = GeographicOf(example);
  model.kind = SystemKind::kProjected;
  model.name = "projected";
  model.projection = ProjectionOf(example);
  return model;
}

std::unique_ptr<TShellReferenceSystem> SystemOf(const SystemModel& model) {
  TStringTree tree;
  ModelToTree(model, &tree);
  std::string error;
  auto system = CreateShellReferenceSystem(&tree, nullptr, &error);
  EXPECT_EQ(error, "");
  return system;
}

class EpsgExampleTest : public testing::TestWithParam<Example> {
 protected:
  void SetUp() override {
    geographic_ = SystemOf(GeographicOf(GetParam()));
    projected_ = SystemOf(ProjectedOf(GetParam()));
    ASSERT_TRUE(geographic_ && projected_);
  }
  // Moves a point there and fails the test if it cannot be.
  static TShellPoint Moved(const TShellReferenceSystem& from, const TShellReferenceSystem& to,
                           const TShellPoint& origin) {
    TShellPoint point = origin;
    EXPECT_EQ(from.Transform(to, {&point, 1}), 0U) << from.ExplainFailure(to, origin);
    return point;
  }
  [[nodiscard]] TShellPoint InPlane() const {
    return Moved(*geographic_, *projected_, {GetParam().latitude, GetParam().longitude});
  }

  std::unique_ptr<TShellReferenceSystem> geographic_;
  std::unique_ptr<TShellReferenceSystem> projected_;
};

TEST_P(EpsgExampleTest, GivesThePublishedPlaneCoordinates) {
  const TShellPoint point = InPlane();
  EXPECT_NEAR(point.First, GetParam().east, GetParam().tolerance);
  EXPECT_NEAR(point.Second, GetParam().north, GetParam().tolerance);
}

TEST_P(EpsgExampleTest, GivesThePublishedLatitudeAndLongitudeBack) {
  const TShellPoint point =
      Moved(*projected_, *geographic_, {GetParam().east, GetParam().north, 0});
  // The tolerance of the plane as an angle, doubled for the scale and the convergence of meridians.
  const Examples::Unit& angular = GetParam().angular;
  const double radius = GetParam().ellipsoid.a * GetParam().linear.factorC /
                        GetParam().linear.factorB * angular.factorB / angular.factorC;
  const double latitude =
      GetParam().latitude * GetParam().angular.factorB / GetParam().angular.factorC;
  const double tolerance = 2 * GetParam().tolerance / radius;
  EXPECT_NEAR(point.First, GetParam().latitude, tolerance);
  EXPECT_NEAR(point.Second, GetParam().longitude, tolerance / std::cos(latitude));
}

TEST_P(EpsgExampleTest, ComesBackToWhereItStarted) {
  const TShellPoint point = Moved(*projected_, *geographic_, InPlane());
  // Twenty nanodegrees are 2 mm; the series of the Guam and the Laborde projection reach no more.
  EXPECT_NEAR(point.First, GetParam().latitude, 2e-8);
  EXPECT_NEAR(point.Second, GetParam().longitude, 2e-8);
}

INSTANTIATE_TEST_SUITE_P(AllMethods, EpsgExampleTest, testing::ValuesIn(kExamples),
                         [](const testing::TestParamInfo<Example>& row) {
                           return "Method" + std::to_string(row.param.method);
                         });

TEST(EpsgExamplesTest, StandForEveryMethodOrSayWhyNot) {
  std::vector<int> told;
  for (const Example& example : kExamples)
    told.push_back(example.method);
  for (const Examples::WithoutExample& missing : kMethodsWithoutExample)
    told.push_back(missing.method);
  std::ranges::sort(told);
  std::vector<int> known;
  for (const ProjectionMethod& method : ProjectionMethods())
    known.push_back(method.code);
  EXPECT_EQ(told, known);
}

}  // namespace
}  // namespace QvRefSystem
