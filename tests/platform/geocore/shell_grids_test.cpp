#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sstream>

#include "platform/data/grid_extents.h"
#include "platform/geocore/geoids.h"
#include "platform/geocore/readable_step.h"
#include "platform/text/text.h"
#include "tests/platform/geocore/shell_systems.h"

namespace refframe_tests {
namespace {

using QvRefSystem::GridExtents;
using QvRefSystem::ParseExtents;
using QvRefSystem::ReadableStep;
using QvRefSystem::THeightTable;
using QvRefSystem::TShell2DTableExtents;

// European Datum 1950 to WGS 84 as a surveyor knows it, a hundred metres each way.
SystemModel Ed50() {
  SystemModel system = Wgs84();
  system.ellipsoid->a = "6378388";
  system.ellipsoid->f = 1 / 297.0;
  SetShift(&system, 1, {"-87", "-98", "-121"});
  return system;
}

SystemModel SouthPolar() {
  return Projected(Wgs84(), 9829, {{8832, "-71"}, {8833, "0"}, {8806, "0"}, {8807, "0"}});
}

SystemModel NorthPolar() {
  return Projected(
      Wgs84(), 9810,
      {{8801, "90"}, {8802, "0"}, {8805, "0.994"}, {8806, "2000000"}, {8807, "2000000"}});
}

SystemModel EqualArea() {
  return Projected(Wgs84(), 9820,
                   {{8801, "52"}, {8802, "10"}, {8806, "4321000"}, {8807, "3210000"}});
}

constexpr std::string TShell2DTableExtents::*kMembers[] = {
    &TShell2DTableExtents::West,         &TShell2DTableExtents::East,
    &TShell2DTableExtents::South,        &TShell2DTableExtents::North,
    &TShell2DTableExtents::CellEastWest, &TShell2DTableExtents::CellNorthSouth};

// Six texts with blanks between them: west, east, south, north, cell east-west, cell north-south.
TShell2DTableExtents Extents(const char* texts) {
  TShell2DTableExtents extents;
  std::istringstream stream(texts);
  for (const auto member : kMembers)
    stream >> extents.*member;
  return extents;
}

// "?" is what is not expected of a result.
constexpr const char* kAnything = "? ? ? ? ? ?";

struct Cover {
  const char* name;
  SystemModel source;
  const char* ground;
  SystemModel target;
  const char* expected = kAnything;
  /// The ground reaches so near to a pole that cells may be coarser there.
  bool polar = false;
};

std::vector<Cover> Covers() {
  return {
      {"degrees to UTM", Wgs84(), "5 13.5 44 48.5 0.02 0.02", Utm(Wgs84(), "9"),
       "? ? ? ? 1250 2000"},
      {"degrees to UTM of another datum", Ed50(), "5 13.5 44 48.5 0.02 0.02", Utm(Wgs84(), "9")},
      {"a datum shift", Ed50(), "-4.5 10 36 44 0.25 0.25", Wgs84(), "-4.75 10 35.75 44 0.25 0.25"},
      {"degrees to grads", Wgs84(), "0 9 45 54 0.09 0.09", InGrads(Wgs84()), "0 10 50 60 0.1 0.1"},
      {"grads to degrees", InGrads(Wgs84()), "-10 10 50 60 0.1 0.1", Wgs84(),
       "-9.04 9.04 44.96 54 0.08 0.08"},
      {"wide curved edges", Wgs84(), "-25 45 34 72 0.5 0.5", EqualArea()},
      {"one coarse cell", Wgs84(), "0 30 40 60 30 20", EqualArea()},
      {"UTM to degrees", Utm(Wgs84(), "9"), "200000 800000 4900000 5400000 1000 1000", Wgs84()},
      {"UTM across the antimeridian", Utm(Wgs84(), "177"), "400000 800000 -500000 500000 5000 5000",
       Wgs84()},
      {"UTM to positive longitudes", Utm(Wgs84(), "-75"), "400000 600000 0 500000 5000 5000",
       Positive(Wgs84())},
      {"degrees across the antimeridian", Ed50(), "170 190 -30 -10 1 1", Wgs84(),
       "170 191 -30 -10 1 1"},
      {"the whole Earth", Ed50(), "-180 180 -90 90 0.25 0.25", Wgs84(), "-180 180 -90 90 0.25 0.25",
       true},
      {"the whole Earth from 0, the seam open", Ed50(), "0 359.75 -90 90 0.25 0.25", Wgs84(),
       "0 360 -90 90 0.25 0.25", true},
      {"the whole Earth to positive longitudes", Wgs84(), "-180 180 -90 90 1 1", Positive(Wgs84()),
       "0 360 -90 90 1 1", true},
      {"a polar cap to its plane", Wgs84(), "-180 180 60 90 0.25 0.25", NorthPolar(), kAnything,
       true},
      {"a square around the north pole", NorthPolar(), "0 4000000 0 4000000 25000 25000", Wgs84(),
       "-180 180 ? 90 ? ?"},
      {"a square around the south pole", SouthPolar(),
       "-1000000 3000000 -500000 2500000 10000 10000", Positive(Wgs84()), "0 360 -90 ? ? ?"},
      {"a polar square beside the pole, on the antimeridian", NorthPolar(),
       "1500000 2500000 2500000 4000000 25000 25000", Wgs84()},
      {"axes to the south and west", Wgs84(), "26 28 -27 -25 0.05 0.05",
       SouthWest(NorthFirst(Utm(Wgs84(), "27")))},
      {"out of axes to the south and west", SouthWest(NorthFirst(Utm(Wgs84(), "27"))),
       "-600000 -400000 2700000 2900000 5000 5000", Ed50()},
      {"three quarters of a cap, which hold the shifted pole", Ed50(), "0 270 60 90 1 1", Wgs84(),
       "-180 180 ? 90 1 1", true},
      {"a single row", Wgs84(), "5 10 45 45 0.1 0.1", Utm(Wgs84(), "9")},
  };
}

class Ground {
 public:
  explicit Ground(const Cover& row) : source_(Shell(row.source)), target_(Shell(row.target)) {
    const TShell2DTableExtents ground = Extents(row.ground);
    ground_ = *ParseExtents(ground);
    covered_ = source_.RecalculateTableGrid(&ground, &target_, &texts_);
    if (covered_) grid_ = *ParseExtents(texts_);
  }

  [[nodiscard]] bool IsCovered() const { return covered_; }
  [[nodiscard]] const TShell2DTableExtents& Texts() const { return texts_; }
  [[nodiscard]] const GridExtents& Grid() const { return grid_; }

  // X and Y of a random place of the ground, its edges among them.
  TShellPoint Place() {
    const auto part = [this] { return std::clamp(uniform_(random_), 0.0, 1.0); };
    return {ground_.West + part() * (ground_.East - ground_.West),
            ground_.South + part() * (ground_.North - ground_.South), 0};
  }

  [[nodiscard]] TShellPoint Image(const TShellPoint& place) const {
    const auto& to = target_.Core();
    return to.ToPlane(
        Move(source_, target_, source_.Core().FromPlane(place.First, place.Second, 0)));
  }

  [[nodiscard]] bool Holds(TShellPoint image) const {
    const double turn = target_.Core().FullTurn();
    if (turn != 0) {
      const double middle = (grid_.West + grid_.East) / 2;
      image.First = middle + std::remainder(image.First - middle, turn);
    }
    // What the rounding of a coordinate may be.
    const double slack = 1e-9 * grid_.CellEastWest;
    return image.First >= grid_.West - slack && image.First <= grid_.East + slack &&
           image.Second >= grid_.South - slack && image.Second <= grid_.North + slack;
  }

  // How many source cells a target cell is long from an image on, along X or Y.
  [[nodiscard]] double CellLength(const TShellPoint& image, bool alongX) const {
    // A hundredth of a cell, since cells far from the poles may be large.
    const double part = 0.01;
    TShellPoint end = image;
    (alongX ? end.First : end.Second) +=
        part * (alongX ? grid_.CellEastWest : grid_.CellNorthSouth);
    const TShellPoint from = Back(image);
    const TShellPoint to = Back(end);
    const double turn = source_.Core().FullTurn();
    const double dx =
        turn != 0 ? std::remainder(to.First - from.First, turn) : to.First - from.First;
    return std::hypot(dx / ground_.CellEastWest,
                      (to.Second - from.Second) / ground_.CellNorthSouth) /
           part;
  }

 private:
  [[nodiscard]] TShellPoint Back(const TShellPoint& image) const {
    const auto& from = target_.Core();
    return source_.Core().ToPlane(
        Move(target_, source_, from.FromPlane(image.First, image.Second, 0)));
  }

  TShellReferenceSystem source_;
  TShellReferenceSystem target_;
  GridExtents ground_;
  TShell2DTableExtents texts_;
  GridExtents grid_;
  bool covered_ = false;
  std::mt19937 random_{20260101};
  // Beyond 0 and 1, so that a tenth of the places lies on each edge.
  std::uniform_real_distribution<double> uniform_{-0.1, 1.1};
};

TEST(GridCoverTest, HoldsEveryPlaceOfTheGround) {
  for (const Cover& row : Covers()) {
    SCOPED_TRACE(row.name);
    Ground ground(row);
    ASSERT_TRUE(ground.IsCovered());
    int outside = 0;
    for (int i = 0; i < 4000; ++i) {
      const TShellPoint image = ground.Image(ground.Place());
      outside += std::isfinite(image.First) && !ground.Holds(image);
    }
    EXPECT_EQ(outside, 0);
  }
}

TEST(GridCoverTest, IsNoCoarserThanTheSource) {
  for (const Cover& row : Covers()) {
    if (row.polar) continue;
    SCOPED_TRACE(row.name);
    Ground ground(row);
    for (int i = 0; i < 300; ++i) {
      const TShellPoint image = ground.Image(ground.Place());
      const bool nearPole = row.target.kind == SystemKind::kGeodetic && std::abs(image.Second) > 89;
      if (nearPole) continue;
      EXPECT_LT(ground.CellLength(image, true), 1.002);
      EXPECT_LT(ground.CellLength(image, false), 1.002);
    }
  }
}

TEST(GridCoverTest, HasReadableLimitsThatItsCellsDivide) {
  for (const Cover& row : Covers()) {
    SCOPED_TRACE(row.name);
    const Ground ground(row);
    const TShell2DTableExtents& texts = ground.Texts();
    const GridExtents& grid = ground.Grid();
    const double across = (grid.East - grid.West) / grid.CellEastWest;
    const double along = (grid.North - grid.South) / grid.CellNorthSouth;
    EXPECT_NEAR(across, std::round(across), 1e-9);
    EXPECT_NEAR(along, std::round(along), 1e-9);
    const TShell2DTableExtents expected = Extents(row.expected);
    for (const auto member : kMembers) {
      EXPECT_LE((texts.*member).size(), 8U) << texts.*member;
      if (expected.*member == "?") continue;
      EXPECT_EQ(texts.*member, expected.*member);
    }
  }
}

// Nothing is gained by another cell, and much is lost: the resampling is exact only on the nodes.
TEST(GridCoverTest, LeavesAGridOfTheSamePlaneAsItIs) {
  const TShellReferenceSystem system = Shell(Wgs84());
  const TShell2DTableExtents odd{"5.123", "9.4563", "44.1", "45.35", "0.0833333333333", "0.05"};
  TShell2DTableExtents result;
  ASSERT_TRUE(system.RecalculateTableGrid(&odd, &system, &result));
  for (const auto member : kMembers)
    EXPECT_EQ(result.*member, odd.*member);
}

TEST(GridCoverTest, IsTakenFromTablesAndHeightSystems) {
  auto table = std::make_shared<THeightTable>();
  table->Resize(101, 51, 0.1, 0.1, 5, 44);
  const SystemModel withTable = WithHeights(Wgs84(), 1);
  const TShellReferenceSystem target = Shell(InGrads(Wgs84()));
  std::string texts[6];
  const auto recalculate = [&](const TShellReferenceSystem& system, const THeightTable* heights) {
    for (std::string& text : texts)
      text = "unchanged";
    return heights ? system.RecalculateHeightTableGrid(heights, &target, &texts[0], &texts[1],
                                                       &texts[2], &texts[3], &texts[4], &texts[5])
                   : system.RecalculateHeightTableGrid(&target, &texts[0], &texts[1], &texts[2],
                                                       &texts[3], &texts[4], &texts[5]);
  };
  const auto covered = testing::ElementsAre("54.5", "48.8", "16.7", "5.5", "0.1", "0.1");
  ASSERT_TRUE(recalculate(Shell(Wgs84()), table.get()));
  EXPECT_THAT(texts, covered);
  ASSERT_TRUE(recalculate(Shell(withTable, table), nullptr));
  EXPECT_THAT(texts, covered);

  SystemModel withGeoid = Wgs84();
  withGeoid.geoidCode = 5773;
  std::string name;
  if (QvRefSystem::GetSystemGeoidName(5773, &name)) {
    ASSERT_TRUE(recalculate(Shell(withGeoid), nullptr));
    EXPECT_THAT(texts, testing::ElementsAre("100", "-100", "200", "-200", "0.25", "0.25"));
  }
  const SystemModel withOffset = WithHeights(Wgs84(), 2, "40");
  for (const SystemModel& model : {withOffset, Wgs84()}) {
    EXPECT_FALSE(recalculate(Shell(model), nullptr));
    EXPECT_THAT(texts, testing::Each("unchanged"));
  }
}

TEST(GridCoverTest, RefusesWhatIsNoGridAndSystemsWithoutAPlaneOfTheEarth) {
  const TShellReferenceSystem system = Shell(Wgs84());
  const TShellReferenceSystem other = Shell(Ed50());
  const TShell2DTableExtents good{"5", "9", "44", "45", "0.1", "0.1"};
  TShell2DTableExtents result;
  result.West = "unchanged";
  for (const auto& [member, bad] : {std::pair(&TShell2DTableExtents::West, "west"),
                                    {&TShell2DTableExtents::West, "10"},
                                    {&TShell2DTableExtents::North, ""},
                                    {&TShell2DTableExtents::North, "1e999"},
                                    {&TShell2DTableExtents::CellEastWest, "0"},
                                    {&TShell2DTableExtents::CellNorthSouth, "-1"}}) {
    TShell2DTableExtents extents = good;
    extents.*member = bad;
    EXPECT_FALSE(system.RecalculateTableGrid(&extents, &other, &result)) << bad;
  }
  const TShellReferenceSystem geocentric = Shell(Geocentric());
  EXPECT_FALSE(system.RecalculateTableGrid(&good, &geocentric, &result));
  EXPECT_FALSE(geocentric.RecalculateTableGrid(&good, &system, &result));
  // Beyond the pole there is no ground.
  const TShell2DTableExtents beyond{"5", "9", "95", "99", "0.1", "0.1"};
  EXPECT_FALSE(system.RecalculateTableGrid(&beyond, &other, &result));
  EXPECT_EQ(result.West, "unchanged");
}

TEST(ReadableStepTest, IsTheGreatestThatIsAllowed) {
  const struct {
    double limit, divides, step;
  } rows[] = {{1, 0, 1},       {0.9995, 0, 1},       {0.998, 0, 0.8},
              {1234, 0, 1200}, {0.0833333, 0, 0.08}, {7.9, 0, 7.5},
              {40, 90, 30},    {0.7, 90, 0.6},       {0.01, 1.5707963267948966, 0.01},
              {1e-9, 0, 1e-9}, {27.5e3, 0, 25e3}};
  for (const auto& row : rows)
    EXPECT_EQ(ReadableStep::AtMost(row.limit, row.divides).Value(), row.step) << row.limit;
  EXPECT_EQ(QvPlatform::DoubleToText(ReadableStep::AtMost(0.1).Multiple(453)), "45.3");
}

struct InitialGrid {
  const char* texts[6];
  unsigned countX;
  unsigned countY;
};

TEST(HeightTableGridTest, TakesItsCountsFromSpansAndCells) {
  // North, south, east, west, cell north-south, cell east-west.
  const InitialGrid rows[] = {
      {{"55", "54", "38", "36", "1", "1"}, 3, 2},
      {{"1.4", "0", "1.6", "0", "1", "1"}, 3, 2},
      {{"45", "45", "7", "7", "0.5", "0.5"}, 1, 1},
      {{" 45.5 ", "45", "7", "6", "0.1", "0.25"}, 5, 6},
      {{"45", "46", "7", "6", "0.5", "0.5"}, 0, 0},
      {{"46", "45", "6", "7", "0.5", "0.5"}, 0, 0},
      {{"46", "45", "7", "6", "0", "0.5"}, 0, 0},
      {{"46", "45", "7", "6", "0.5", "-0.5"}, 0, 0},
      {{"46", "45", "7", "6", "0.5", "inf"}, 0, 0},
      {{"46", "45", "7", "six", "0.5", "0.5"}, 0, 0},
      {{"", "", "", "", "", ""}, 0, 0},
      {{"90", "-90", "180", "-180", "1e-6", "1e-6"}, 0, 0},
      {{"1e300", "-1e300", "1e300", "-1e300", "1e-300", "1e-300"}, 0, 0},
  };
  const TShellReferenceSystem system = Shell(Wgs84());
  for (const InitialGrid& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.texts));
    THeightTable table;
    table.Resize(2, 2, 1, 1, 0, 0);
    const auto& texts = row.texts;
    system.InitializeHeightTableGrid(texts[0], texts[1], texts[2], texts[3], texts[4], texts[5],
                                     &table);
    EXPECT_EQ(table.CountX, row.countX);
    EXPECT_EQ(table.CountY, row.countY);
    EXPECT_EQ(table.Data != nullptr, row.countX != 0);
  }
}

}  // namespace
}  // namespace refframe_tests
