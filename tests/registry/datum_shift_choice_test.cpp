// One shift for each datum: which operation is chosen, and that its row does what the registry's
// operation does.

#include "registry/datum_shift_choice.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <set>
#include <sstream>

#include "platform/geocore/proj_handles.h"
#include "registry/model_values.h"
#include "registry/registry_units.h"
#include "tests/registry/installed.h"
#include "tests/support/helmert_text.h"

namespace QvRefSystem {
namespace {

const std::map<int, DatumShiftChoice>& Choices() {
  static const std::map<int, DatumShiftChoice> choices = ChooseDatumShifts(Dataset());
  return choices;
}

// What is not empty, as texts with blanks between.
template <typename Numbers>
std::string Joined(const Numbers& numbers) {
  std::string text;
  for (const auto& number : numbers) {
    std::ostringstream one;
    one << number;
    if (!one.str().empty()) text += (text.empty() ? "" : " ") + one.str();
  }
  return text;
}

// Values: EPSG Dataset v10.076, coordinate operations of the codes given.
TEST(ChosenShift, IsTheRegistrysOperationInItsOwnDigits) {
  using enum ShiftRoad;
  const struct {
    int datum;
    ShiftRoad road;
    const char* operations;
    int type;
    const char* texts;
  } rows[] = {
      {6326, kIdentical, "", 1, "0 0 0"},                                              // Wgs84
      {1309, kIdentical, "", 1, "0 0 0"},                                              // Wgs84G2139
      {6277, kDirect, "1314", 2, "446.448 -125.157 542.06 0.15 0.247 0.842 -20.489"},  // Osgb36
      {6230, kDirect, "1133", 1, "-87 -98 -121"},                                      // Ed50
      {6267, kDirect, "1173", 1, "-8 160 176"},  // Nad27OfTheConterminousStates
      {6314, kDirect, "1777", 2, "598.1 73.7 418.2 0.202 0.045 -2.455 6.7"},  // Dhdn
      {6284, kDirect, "15865", 3, "25 -141 -78.5 0 -0.35 -0.736 0"},          // Pulkovo1942
      {6289, kDirect, "15934", 3,
       "565.2369 50.0087 465.658 1.9725 -1.7004 9.0677 4.0812"},  // Amersfoort
      {6123, kDirect, "10099", 3, "-96.062 -82.428 -121.753 -4.801 -0.345 1.376 1.496"},  // Kkj
      // Superseded by a grid alone, which no row can hold.
      {6149, kDirect, "1766", 1, "674.374 15.056 405.346"},  // Ch1903
      // The two Australian datums differ by what the registry says they differ by.
      {6283, kDirect, "9688", 3, "61.55 -10.87 -40.19 -39.4924 -32.7221 -32.8979 -9.994"},  // Gda94
      {1168, kDirect, "8450", 1, "0 0 0"},  // Gda2020
      // Differs from its twin by the meridian alone, and shares its shift.
      {6807, kRotation, "1763 1193", 1, "-168 -60 320"},  // NtfParis
      // Both count from Greenwich, so the turn by 10.405" is in the shift.
      {1048, kRotation, "5133 15484", 2, "-146.414 507.337 680.507 0 0 10.405 0"},  // Tokyo1892
      {6677, kTwoSteps, "1064 1065", 1, "43.933 -129.593 -39.331"},                 // Lao1993
      {1322, kTimeDependent, "-9991 -9757", 2,
       "-0.0014 -0.0009 0.0014 0 0 0 -0.00042"},  // Itrf2020
      {6120, kNeedsOffsets, "", 1, "0 0 0"},      // Greek
      {1074, kNeedsGrid, "", 1, "0 0 0"},         // CorregoAlegre1961
      {6738, kNone, "", 1, "0 0 0"},              // HongKong1963
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.datum);
    const DatumShiftChoice& choice = Choices().at(row.datum);
    const DatumShiftModel& shift = choice.shift;
    EXPECT_EQ(choice.road, row.road);
    EXPECT_EQ(Joined(choice.operations), row.operations);
    EXPECT_EQ(shift.type, row.type);
    const std::string texts[] = {shift.tx, shift.ty, shift.tz, shift.rx,
                                 shift.ry, shift.rz, shift.s};
    EXPECT_EQ(Joined(texts), row.texts);
  }
}

TEST(ShiftTexts, TellOperationEpochAccuracyAndArea) {
  EXPECT_EQ(Choices().at(6277).shift.name, "OSGB36 to WGS 84 (6)");
  EXPECT_EQ(Choices().at(6277).shift.description,
            "EPSG:1314; accuracy 2 m; UK - Great Britain onshore and nearshore; Isle of Man");
  EXPECT_EQ(Choices().at(1322).shift.name, "ITRF2020 to WGS 84 (EPSG:9991, 9757)");
  EXPECT_EQ(Choices().at(1322).shift.description,
            "EPSG:9991 reversed at epoch 2015, then EPSG:9757 reversed; accuracy 0.011 m; World");
  EXPECT_NE(Choices().at(6811).shift.description.find("accuracy unknown"), std::string::npos);
  EXPECT_NE(Choices().at(1074).shift.description.find("grid"), std::string::npos);
  EXPECT_NE(Choices().at(6738).shift.name.find("no shift to WGS 84"), std::string::npos);
}

TEST(ShiftRoads, ReachAsManyDatumsAsTheRegistryHasParametersFor) {
  std::set<int> live;
  for (const auto& [code, system] : Dataset().geodeticSystems)
    live.insert(system.datum);
  std::map<ShiftRoad, int> counts;
  for (const int datum : live)
    ++counts[Choices().at(datum).road];
  EXPECT_EQ(live.size(), 535U);
  const auto upTo = [&counts](ShiftRoad last) {
    int sum = 0;
    for (const auto& [road, count] : counts)
      sum += road <= last ? count : 0;
    return sum;
  };
  EXPECT_EQ(upTo(ShiftRoad::kRealization), 367);
  EXPECT_EQ(upTo(ShiftRoad::kRotation), 384);
  EXPECT_EQ(upTo(ShiftRoad::kTimeDependent), 462);
  EXPECT_EQ(counts[ShiftRoad::kNeedsGrid], 22);
}

// The rows against PROJ's own reading of the registry.

// A geocentric pipeline between latitudes and longitudes in degrees, made from the row's texts.
std::string PipelineOf(const DatumShiftModel& shift, const EpsgEllipsoid& from) {
  const UnitModel& metre = *FindRegistryUnit(from.unit);
  const double a = from.a * metre.factorB / metre.factorC;
  const double b = from.b ? *from.b * metre.factorB / metre.factorC
                          : a - a * FlatteningFromInverse(*from.inverseFlattening);
  return "+proj=pipeline +step +proj=axisswap +order=2,1 +step +proj=unitconvert "
         "+xy_in=deg +xy_out=rad +step +proj=push +v_3 +step +proj=cart +a=" +
         FormatNumber(a) + " +b=" + FormatNumber(b) + " +step " +
         refframe_tests::HelmertText(shift) +
         " +step +inv +proj=cart +ellps=WGS84 +step +proj=pop +v_3 +step +proj=unitconvert "
         "+xy_in=rad +xy_out=deg +step +proj=axisswap +order=2,1";
}

TEST(ShiftRows, MovePointsAsTheRegistrysOperationsDo) {
  int compared = 0;
  for (const auto& [code, operation] : Dataset().shiftOperations) {
    const ShiftMethodTraits traits = TraitsOfShiftMethod(operation.method);
    const auto source = Dataset().datums.find(operation.sourceDatum);
    const bool flat = operation.method > 9600 || operation.method == 1063;
    if (traits.method == ShiftMethod::kLongitudeRotation || !flat ||
        operation.targetDatum != 6326 || source == Dataset().datums.end() ||
        operation.usages.empty() || !operation.usages.front().box) {
      continue;
    }
    const EpsgBox& box = *operation.usages.front().box;
    const PJ_COORD point = proj_coord((box.south + box.north) / 2, box.west, 0, 0);
    const ProjObject known(proj_create_from_database(ThreadProjContext(), "EPSG",
                                                     std::to_string(code).c_str(),
                                                     PJ_CATEGORY_COORDINATE_OPERATION, 0, nullptr));
    const EpsgEllipsoid& from = Dataset().ellipsoids.at(source->second.ellipsoid);
    const ProjObject ours = CreateProjObject(PipelineOf(ShiftModelOf(operation), from), nullptr);
    ASSERT_TRUE(known && ours) << code;
    const PJ_COORD expected = proj_trans(known.get(), PJ_FWD, point);
    const PJ_COORD moved = proj_trans(ours.get(), PJ_FWD, point);
    constexpr double kTenthOfMillimetre = 1e-9;  // degrees
    EXPECT_NEAR(moved.xy.x, expected.xy.x, kTenthOfMillimetre) << code;
    EXPECT_NEAR(std::remainder(moved.xy.y - expected.xy.y, 360), 0, kTenthOfMillimetre) << code;
    ++compared;
  }
  EXPECT_GT(compared, 700);
}

// Helmert algebra.

std::array<double, 3> Apply(const HelmertParameters& shift, const std::array<double, 3>& x) {
  const auto& r = shift.rotation;
  const std::array<double, 3> turned = {x[0] + r[1] * x[2] - r[2] * x[1],
                                        x[1] + r[2] * x[0] - r[0] * x[2],
                                        x[2] + r[0] * x[1] - r[1] * x[0]};
  std::array<double, 3> result{};
  for (std::size_t i = 0; i < 3; ++i) {
    result[i] = shift.translation[i] + (1 + shift.scale) * turned[i];
  }
  return result;
}

constexpr std::array<double, 3> kPoint = {3771793.968, 140253.342, 5124304.349};
const HelmertParameters kFirst{{446.448, -125.157, 542.06}, {7.3e-7, 1.2e-6, 4.1e-6}, -20.489e-6};
const HelmertParameters kSecond{{-87, -98, -121}, {-2e-6, 5e-7, 1e-6}, 3e-6};

void ExpectNear(const std::array<double, 3>& a, const std::array<double, 3>& b, double metres) {
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_NEAR(a[i], b[i], metres);
}

TEST(Helmert, InverseComesBackWithinTheSquareOfItsRotations) {
  ExpectNear(Apply(Inverse(kFirst), Apply(kFirst, kPoint)), kPoint, 2e-4);
}

TEST(Helmert, CompositionIsOneAfterTheOtherWithinTheProductOfTheirRotations) {
  ExpectNear(Apply(Compose(kFirst, kSecond), kPoint), Apply(kSecond, Apply(kFirst, kPoint)), 1e-4);
}

TEST(Helmert, CompositionOfTranslationsIsTheirSumAndStaysATranslation) {
  const HelmertParameters both = Compose({{0.1, 0.2, 0.3}, {}, 0}, {{0.2, 0.1, -0.3}, {}, 0});
  const DatumShiftModel model = ShiftModelOf(both);
  EXPECT_EQ(model.type, 1);
  EXPECT_EQ(model.tx, "0.3");
  EXPECT_EQ(model.tz, "0");
}

}  // namespace
}  // namespace QvRefSystem
