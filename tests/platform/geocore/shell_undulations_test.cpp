#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <proj.h>

#include <cmath>
#include <random>

#include "platform/geocore/geoids.h"
#include "platform/geocore/shell_reference_system.h"
#include "platform/geocore/table_sampler.h"
#include "platform/text/text.h"
#include "tests/platform/geocore/shell_systems.h"

namespace refframe_tests {
namespace {

using QvRefSystem::GeodesyError;
using QvRefSystem::TableSampler;
using QvRefSystem::THeightTable;
using QvRefSystem::TProgressInterface;
using testing::HasSubstr;

// Deutsches Hauptdreiecksnetz to WGS 84, EPSG 1777.
SystemModel Dhdn() {
  SystemModel system = Wgs84();
  system.ellipsoid->a = "6377397.155";
  system.ellipsoid->f = 1 / 299.1528128;
  SetShift(&system, 2, {"598.1", "73.7", "418.2", "0.202", "0.045", "-2.455", "6.7"});
  return system;
}

std::shared_ptr<THeightTable> Table(std::uint32_t countX, std::uint32_t countY, double cell,
                                    double west, double south) {
  auto table = std::make_shared<THeightTable>();
  table->Resize(countX, countY, cell, cell, west, south);
  std::mt19937 random(5);
  std::uniform_real_distribution<double> height(40, 50);
  for (std::uint32_t i = 0; i < countX; ++i) {
    for (std::uint32_t j = 0; j < countY; ++j)
      table->Set(i, j, height(random));
  }
  return table;
}

std::shared_ptr<THeightTable> EmptyGridOf(const THeightTable& table) {
  auto grid = std::make_shared<THeightTable>();
  grid->Resize(table.CountX, table.CountY, table.CellX, table.CellY, table.OriginX, table.OriginY);
  return grid;
}

double FurthestApart(const THeightTable& a, const THeightTable& b, double factor = 1) {
  double furthest = 0;
  for (std::uint32_t i = 0; i < a.CountX; ++i) {
    for (std::uint32_t j = 0; j < a.CountY; ++j)
      furthest = std::max(furthest, std::abs(a.Get(i, j) * factor - b.Get(i, j)));
  }
  return furthest;
}

int steps = 0;
int stepsUntilCancel = 0;
int announced = 0;

int Next() {
  return ++steps == stepsUntilCancel ? 1 : 0;
}

void SetMax(int count) {
  announced = count;
}

void StartCounting(int untilCancel) {
  steps = announced = 0;
  stepsUntilCancel = untilCancel;
}

TEST(TableSamplerTest, ClosesTheCircleOfATableAroundTheEarth) {
  THeightTable table;
  table.Resize(4, 2, 90, 10, 0, 0);
  for (std::uint32_t i = 0; i < 4; ++i) {
    table.Set(i, 0, 10 * i);
    table.Set(i, 1, 10 * i);
  }
  const TableSampler open(table, 360);
  EXPECT_EQ(open.At(270, 0), 30);
  EXPECT_EQ(open.At(-90, 0), 30);
  EXPECT_DOUBLE_EQ(open.At(315, 5), 15);
  EXPECT_DOUBLE_EQ(open.At(-45, 5), 15);
  EXPECT_EQ(open.At(360, 0), 0);
  EXPECT_EQ(open.At(-360, 0), 0);
  EXPECT_EQ(open.At(810, 0), 10);
  // In a plane there is no circle.
  EXPECT_EQ(TableSampler(table, 0).At(315, 5), 30);
  EXPECT_EQ(TableSampler(table, 0).At(-45, 5), 0);
}

TEST(TableSamplerTest, TakesTheEdgeThatIsNearerAroundTheEarth) {
  THeightTable table;
  table.Resize(3, 1, 10, 10, 170, 0);
  for (std::uint32_t i = 0; i < 3; ++i)
    table.Set(i, 0, i);
  const TableSampler sampler(table, 360);
  EXPECT_DOUBLE_EQ(sampler.At(-175, 0), 1.5);
  EXPECT_EQ(sampler.At(-160, 0), 2);
  EXPECT_EQ(sampler.At(-1, 99), 2);
  EXPECT_EQ(sampler.At(1, -99), 0);
  EXPECT_EQ(sampler.At(160, 0), 0);
  EXPECT_EQ(sampler.At(1e300, 1e300), sampler.At(1e300, -1e300));
}

TEST(TableSamplerTest, AgreesWithTheTable) {
  const auto table = Table(13, 9, 0.1, 5.1, 44.3);
  const TableSampler sampler(*table, 0);
  std::mt19937 random(1);
  std::uniform_real_distribution<double> across(5, 6.6);
  std::uniform_real_distribution<double> along(44.2, 45.3);
  for (int i = 0; i < 1000; ++i) {
    const double x = across(random);
    const double y = along(random);
    ASSERT_NEAR(sampler.At(x, y), table->Interpolate(x, y), 1e-7);
  }
}

TEST(TableSamplerTest, ServesTheHeightsOfPointsAlike) {
  const auto table = Table(36, 19, 10, 0, -90);
  const TShellReferenceSystem heights = Shell(WithHeights(Wgs84(), 1), table);
  const TShellReferenceSystem ellipsoid = Shell(Wgs84());
  const double undulation = (table->Get(35, 9) + table->Get(0, 9)) / 2;
  EXPECT_NEAR(Move(heights, ellipsoid, {0, -5, 100}).Third, 100 + undulation, 1e-9);
  EXPECT_NEAR(Move(ellipsoid, heights, {0, 355, 100}).Third, 100 - undulation, 1e-9);
}

TEST(InterpolateHeightsTest, GivesATableOnItsOwnGridBack) {
  const auto table = Table(151, 97, 0.1, 5.1, 44.3);
  const auto result = EmptyGridOf(*table);
  const TShellReferenceSystem system = Shell(Wgs84());
  system.InterpolateHeights(table.get(), &system, result.get(), nullptr);
  EXPECT_EQ(FurthestApart(*table, *result), 0);
  EXPECT_EQ(result->MinValue, table->MinValue);

  const auto plane = Table(200, 100, 1000, 300000, 4900000);
  const auto moved = EmptyGridOf(*plane);
  const TShellReferenceSystem utm = Shell(Utm(Wgs84(), "9"));
  const TShellReferenceSystem swapped = Shell(NorthFirst(Utm(Wgs84(), "9")));
  utm.InterpolateHeights(plane.get(), &swapped, moved.get(), nullptr);
  EXPECT_LT(FurthestApart(*plane, *moved), 1e-9);
}

TEST(InterpolateHeightsTest, CountsInTheUnitsOfBothSystems) {
  const auto table = Table(20, 20, 0.1, 5, 44);
  const auto result = EmptyGridOf(*table);
  const TShellReferenceSystem metres = Shell(Wgs84());
  const TShellReferenceSystem feet = Shell(InFeet(Wgs84()));
  metres.InterpolateHeights(table.get(), &feet, result.get(), nullptr);
  EXPECT_LT(FurthestApart(*table, *result, 1 / 0.3048), 1e-12);
  feet.InterpolateHeights(table.get(), &metres, result.get(), nullptr);
  EXPECT_LT(FurthestApart(*table, *result, 0.3048), 1e-12);
}

// The independent way: PROJ takes a node and its new undulation from the plane of one datum to the
// other in three dimensions; it must end on the surface that the table describes.
TEST(InterpolateHeightsTest, MovesPointsOfTheGeoidInSpaceToAnotherDatum) {
  const auto table = Table(41, 41, 0.1, 7, 46);
  THeightTable result;
  result.Resize(12, 15, 20000, 20000, 400000, 5130000);
  const TShellReferenceSystem source = Shell(Wgs84());
  const TShellReferenceSystem target = Shell(InFeet(Utm(Dhdn(), "9")));
  source.InterpolateHeights(table.get(), &target, &result, nullptr);

  PJ* way = proj_create(
      nullptr,
      "+proj=pipeline +step +inv +proj=utm +zone=32 +ellps=bessel +step +proj=cart +ellps=bessel "
      "+step +proj=helmert +convention=position_vector +x=598.1 +y=73.7 +z=418.2 +rx=0.202 "
      "+ry=0.045 +rz=-2.455 +s=6.7 +step +inv +proj=cart +ellps=WGS84 "
      "+step +proj=unitconvert +xy_in=rad +xy_out=deg");
  ASSERT_NE(way, nullptr);
  for (std::uint32_t i = 0; i < result.CountX; ++i) {
    for (std::uint32_t j = 0; j < result.CountY; ++j) {
      const double x = result.OriginX + i * result.CellX;
      const double y = result.OriginY + j * result.CellY;
      const double undulation = result.Get(i, j) * 0.3048;
      const PJ_COORD place =
          proj_trans(way, PJ_FWD, proj_coord(x * 0.3048, y * 0.3048, undulation, 0));
      ASSERT_NEAR(place.v[2], table->Interpolate(place.v[0], place.v[1]), 1e-6);
      // The ellipsoids lie apart by more than any error.
      ASSERT_GT(std::abs(undulation - place.v[2]), 1);
    }
  }
  proj_destroy(way);
}

TEST(InterpolateHeightsTest, TakesEveryKindOfHeightSystem) {
  const auto table = Table(41, 41, 0.1, 7, 46);
  const auto result = EmptyGridOf(*table);
  const TShellReferenceSystem target = Shell(InFeet(Wgs84()));
  Shell(WithHeights(Wgs84(), 1), table).InterpolateHeights(&target, result.get(), nullptr);
  EXPECT_LT(FurthestApart(*table, *result, 1 / 0.3048), 1e-12);

  const auto constant = EmptyGridOf(*table);
  Shell(WithHeights(Wgs84(), 2, "47.5")).InterpolateHeights(&target, constant.get(), nullptr);
  EXPECT_DOUBLE_EQ(constant->MinValue, 47.5 / 0.3048);
  EXPECT_DOUBLE_EQ(constant->MaxValue, 47.5 / 0.3048);

  SystemModel geoid = Wgs84();
  geoid.geoidCode = 5773;
  std::string name;
  if (!QvRefSystem::GetSystemGeoidName(5773, &name)) GTEST_SKIP() << "no EGM96 here";
  THeightTable origin;
  origin.Resize(1, 1, 1, 1, 0, 0);
  const TShellReferenceSystem metres = Shell(Wgs84());
  Shell(geoid).InterpolateHeights(&metres, &origin, nullptr);
  // The grid of 15 minutes at its node.
  EXPECT_NEAR(origin.Get(0, 0), 17.1616, 1e-4);
}

TEST(InterpolateHeightsTest, SaysWhatCannotBeComputed) {
  const auto table = Table(5, 5, 0.1, 7, 46);
  const TShellReferenceSystem system = Shell(Wgs84());
  const TShellReferenceSystem geocentric = Shell(Geocentric());
  THeightTable grid;
  const auto reason = [&](const auto& interpolate) -> std::string {
    try {
      interpolate();
    } catch (const GeodesyError& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_THAT(reason([&] { system.InterpolateHeights(table.get(), &system, &grid, nullptr); }),
              HasSubstr("no nodes"));
  grid.Resize(2, 2, 1, 1, 7, 46);
  EXPECT_THAT(reason([&] { system.InterpolateHeights(&system, &grid, nullptr); }),
              HasSubstr("no height system"));
  EXPECT_THAT(reason([&] { system.InterpolateHeights(table.get(), &geocentric, &grid, nullptr); }),
              HasSubstr("cannot move"));
  const THeightTable empty;
  EXPECT_THAT(reason([&] { system.InterpolateHeights(&empty, &system, &grid, nullptr); }),
              HasSubstr("empty"));
  grid.Resize(2, 2, 1, 1, 7, 95);
  const TShellReferenceSystem other = Shell(Dhdn());
  EXPECT_THAT(reason([&] { system.InterpolateHeights(table.get(), &other, &grid, nullptr); }),
              HasSubstr("the node 95, 7 of the grid has no place in WGS 84"));
}

TEST(InterpolateHeightsTest, StopsWhenItIsCancelled) {
  const auto table = Table(200, 200, 0.1, 7, 46);
  const auto grid = EmptyGridOf(*table);
  const TShellReferenceSystem system = Shell(Wgs84());
  StartCounting(3);
  EXPECT_THROW(system.InterpolateHeights(table.get(), &system, grid.get(), Next), GeodesyError);
  EXPECT_EQ(steps, 3);
  StartCounting(0);
  system.InterpolateHeights(table.get(), &system, grid.get(), Next);
  EXPECT_GE(steps, 10);
}

struct Approximation {
  std::string offset = "unchanged";
  std::string rms = "unchanged";
  std::string max = "unchanged";
};

double NumberIn(const std::string& text) {
  double number = 0;
  EXPECT_TRUE(QvPlatform::TextToDouble(text, &number)) << text;
  return number;
}

TEST(ApproximateHeightsTest, FindsTheConstantUnderKnownNoise) {
  constexpr unsigned kNodes = 120 * 80;
  auto table = Table(120, 80, 0.1, 5, 44);
  std::mt19937 random(7);
  std::normal_distribution<double> noise(47.123, 0.4);
  long double sum = 0;
  for (unsigned k = 0; k < kNodes; ++k) {
    table->Set(k / 80, k % 80, noise(random));
    sum += table->Get(k / 80, k % 80);
  }
  const double mean = static_cast<double>(sum / kNodes);
  double squares = 0;
  for (unsigned k = 0; k < kNodes; ++k)
    squares += std::pow(table->Get(k / 80, k % 80) - mean, 2);
  const auto errors = EmptyGridOf(*table);
  // What stood in the grid before must not widen the range of the errors.
  errors->Set(0, 0, 1e6);
  TProgressInterface progress;
  progress.Next = Next;
  progress.SetMax = SetMax;
  StartCounting(0);
  Approximation found;
  const TShellReferenceSystem system = Shell(Wgs84());
  ASSERT_TRUE(system.ApproximateHeights(table.get(), &system, &found.offset, &found.rms, &found.max,
                                        errors.get(), &progress));
  const double max = NumberIn(found.max);
  EXPECT_NEAR(NumberIn(found.offset), mean, 0.0005);
  EXPECT_NEAR(NumberIn(found.rms), std::sqrt(squares / kNodes), 0.0006);
  double furthest = 0;
  for (unsigned k = 0; k < kNodes; ++k)
    furthest = std::max(furthest, std::abs(table->Get(k / 80, k % 80) - mean));
  EXPECT_NEAR(max, furthest, 0.0011);
  EXPECT_EQ(errors->Get(3, 4), table->Get(3, 4) - NumberIn(found.offset));
  EXPECT_NEAR(std::max(errors->MaxValue, -errors->MinValue), max, 0.0005);
  EXPECT_EQ(steps, announced);
  EXPECT_GT(announced, 1);
}

TEST(ApproximateHeightsTest, CountsInTheTargetsUnitToAMillimetre) {
  const TShellReferenceSystem source = Shell(WithHeights(Wgs84(), 2, "47.5"));
  const TShellReferenceSystem feet = Shell(InFeet(Wgs84()));
  SystemModel kilometres = Wgs84();
  kilometres.linearUnit = Unit(1000);
  const TShellReferenceSystem far = Shell(kilometres);
  for (const auto& [target, offset] : {std::pair(&feet, "155.84"), {&far, "0.0475"}}) {
    THeightTable errors;
    errors.Resize(3, 3, 1, 1, 5, 44);
    Approximation found;
    ASSERT_TRUE(
        source.ApproximateHeights(target, &found.offset, &found.rms, &found.max, &errors, nullptr));
    EXPECT_EQ(found.offset, offset);
    EXPECT_EQ(found.rms, "0");
    EXPECT_EQ(found.max, "0");
  }
}

TEST(ApproximateHeightsTest, FailsWithoutAResultWhenItIsCancelledOrImpossible) {
  const auto table = Table(200, 200, 0.1, 7, 46);
  const auto errors = EmptyGridOf(*table);
  const TShellReferenceSystem system = Shell(Wgs84());
  TProgressInterface progress;
  progress.Next = Next;
  StartCounting(2);
  Approximation found;
  THeightTable none;
  const auto approximate = [&](const THeightTable* source, THeightTable* grid) {
    return source ? system.ApproximateHeights(source, &system, &found.offset, &found.rms,
                                              &found.max, grid, &progress)
                  : system.ApproximateHeights(&system, &found.offset, &found.rms, &found.max, grid,
                                              &progress);
  };
  EXPECT_FALSE(approximate(table.get(), errors.get()));
  EXPECT_EQ(steps, 2);
  EXPECT_FALSE(approximate(table.get(), &none));
  EXPECT_FALSE(approximate(nullptr, errors.get()));
  EXPECT_EQ(found.offset + found.rms + found.max, "unchangedunchangedunchanged");
}

}  // namespace
}  // namespace refframe_tests
