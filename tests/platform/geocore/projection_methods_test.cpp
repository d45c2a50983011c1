#include "platform/geocore/projection_methods.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/geocore/proj_handles.h"

namespace QvRefSystem {
namespace {

const char* CategoryOf(UnitKind kind) {
  return kind == UnitKind::kLinear ? "linear" : kind == UnitKind::kAngular ? "angular" : "scale";
}

// "9807: 8801 angular, ..." as the registry has it in a conversion.
std::string DescribeConversion(PJ_CONTEXT* context, const PJ* conversion) {
  const char* method = nullptr;
  proj_coordoperation_get_method_info(context, conversion, nullptr, nullptr, &method);
  std::string text = std::string(method) + ":";
  const int count = proj_coordoperation_get_param_count(context, conversion);
  for (int i = 0; i < count; ++i) {
    const char* code = nullptr;
    const char* category = nullptr;
    proj_coordoperation_get_param(context, conversion, i, nullptr, nullptr, &code, nullptr, nullptr,
                                  nullptr, nullptr, nullptr, nullptr, &category);
    text += std::string(" ") + code + " " + category;
  }
  return text;
}

std::string DescribeRow(const ProjectionMethod& method) {
  std::string text = std::to_string(method.code) + ":";
  for (const int code : method.parameters) {
    text += " " + std::to_string(code) + " " + CategoryOf(FindProjectionParameter(code)->unit);
  }
  return text;
}

TEST(ProjectionMethodsTest, AreThoseOfTheLiveSystemsWithTheSameParametersAndUnits) {
  PJ_CONTEXT* context = ThreadProjContext();
  const ProjStrings codes(proj_get_codes_from_database(context, "EPSG", PJ_TYPE_PROJECTED_CRS, 0));
  std::set<std::string> registered;
  for (char** code = codes.get(); *code; ++code) {
    const ProjObject system = CreateEpsgSystem(std::stoi(*code));
    const ProjObject conversion(proj_crs_get_coordoperation(context, system.get()));
    registered.insert(DescribeConversion(context, conversion.get()));
  }
  std::set<std::string> rows;
  for (const ProjectionMethod& method : ProjectionMethods())
    rows.insert(DescribeRow(method));
  EXPECT_EQ(rows, registered);
  EXPECT_EQ(rows.size(), 39u);
}

TEST(ProjectionMethodsTest, AreFoundByTheirCodesAlone) {
  EXPECT_EQ(FindProjectionMethod(9807)->name, "Transverse Mercator");
  EXPECT_EQ(FindProjectionMethod(9835), &ProjectionMethods().back());
  for (const int code : {0, 1023, 9800, 9836})
    EXPECT_EQ(FindProjectionMethod(code), nullptr);
  EXPECT_EQ(FindProjectionParameter(8806)->name, "False easting");
  EXPECT_EQ(FindProjectionParameter(8808), nullptr);
}

// A number that a host would take for another projection puts maps kilometres off.
TEST(ProjectionMethodsTest, GiveNoExchangeNumberToMethodsThatTheFormatsDoNotHave) {
  const std::map<int, std::pair<int, int>> numbers = {
      {1024, {kNoExchangeCode, kNoExchangeCode}},  // Pseudo Mercator is no Mercator.
      {9808, {27, kNoExchangeCode}},
      {9826, {kNoExchangeCode, kNoExchangeCode}},
      {9820, {10, 29}},
      {9807, {1, 8}},
  };
  for (const auto& [code, expected] : numbers) {
    const ProjectionMethod& method = *FindProjectionMethod(code);
    EXPECT_EQ(std::pair(method.geoTiffCode, method.mifCode), expected) << method.name;
  }
}

}  // namespace
}  // namespace QvRefSystem
