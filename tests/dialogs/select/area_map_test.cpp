#include "dialogs/select/area_map.h"

#include "dialogs/select/world_land.h"
#include "tests/dialogs/dialog_fixture.h"

namespace refframe_tests {
namespace {

using QvRefSystem::EpsgBox;
using QvRefSystem::FitMap;
using QvRefSystem::MapView;

const std::pair<const char*, EpsgBox> kAreas[] = {
    {"a city", {.south = 53.4, .north = 53.8, .west = 9.7, .east = 10.4}},
    {"a zone of a projection", {.south = 0, .north = 84, .west = 6, .east = 12}},
    {"the world", {.south = -90, .north = 90, .west = -180, .east = 180}},
    {"across the antimeridian", {.south = -21, .north = -12, .west = 176, .east = -178}},
    {"half the earth across the antimeridian",
     {.south = -60, .north = 67, .west = 98, .east = -68}},
    {"up to the antimeridian", {.south = -80, .north = 0, .west = 174, .east = 180}},
    {"round the north pole", {.south = 60, .north = 90, .west = -180, .east = 180}},
    {"at the south pole", {.south = -90, .north = -75, .west = 165, .east = -150}},
    {"a single point", {.south = 0, .north = 0, .west = 0, .east = 0}},
};

TEST(AreaMap, ShowsTheWholeAreaOnThisEarth) {
  for (const auto& [name, box] : kAreas) {
    for (const QSizeF size : {QSizeF(280, 140), QSizeF(120, 300), QSizeF(700, 90), QSizeF(0, 0)}) {
      SCOPED_TRACE(std::string(name) + ", width " + std::to_string(size.width()));
      const MapView view = FitMap(box, size);
      EXPECT_GE(view.area.left(), view.degrees.left() - 1e-9);
      EXPECT_LE(view.area.right(), view.degrees.right() + 1e-9);
      EXPECT_GE(view.area.top(), view.degrees.top() - 1e-9);
      EXPECT_LE(view.area.bottom(), view.degrees.bottom() + 1e-9);
      EXPECT_GE(view.degrees.top(), -90 - 1e-9);
      EXPECT_LE(view.degrees.bottom(), 90 + 1e-9);
      EXPECT_LE(view.degrees.width(), 360 + 1e-9);
      EXPECT_GE(view.degrees.width(), std::min(89.0, view.pixels.width()));
      EXPECT_NEAR(view.pixels.width() / view.degrees.width(),
                  view.pixels.height() / view.degrees.height(), 1e-6)
          << "a degree has one size";
    }
  }
}

TEST(AreaMap, NorthIsUpAndEastIsRight) {
  const MapView view = FitMap(kAreas[2].second, QSizeF(360, 180));
  EXPECT_EQ(view.Transform().map(QPointF(-180, 90)), QPointF(0, 0));
  EXPECT_EQ(view.Transform().map(QPointF(10, 50)), QPointF(190, 40));
}

// Places on land and at sea, some degrees from any coast.
TEST(AreaMap, KnowsLandFromSea) {
  const struct {
    const char* name;
    QPointF place;
    bool land;
  } rows[] = {{"Berlin", {13.4, 52.5}, true},          {"Brasilia", {-47.9, -15.8}, true},
              {"Alice Springs", {133.9, -23.7}, true}, {"Chukotka", {-177, 67}, true},
              {"South Pole", {0, -89}, true},          {"Caspian Sea", {50.5, 41}, false},
              {"Atlantic", {-30, 30}, false},          {"Null Island", {0, 0}, false},
              {"Pacific", {-179, 10}, false},          {"North Pole", {0, 90}, false}};
  const auto isLand = [](QPointF place) {
    const QPainterPath& land = QvRefSystem::WorldLand();
    return land.contains(place) || land.contains(place + QPointF(360, 0)) ||
           land.contains(place - QPointF(360, 0));
  };
  for (const auto& row : rows)
    EXPECT_EQ(isLand(row.place), row.land) << row.name;
}

double Luma(const QColor& c) {
  return 0.299 * c.red() + 0.587 * c.green() + 0.114 * c.blue();
}

// In either palette the area stands out from the sea and from the land, and both from each other.
TEST(AreaMap, IsReadableInLightAndInDark) {
  const struct {
    const char* name;
    QColor base, text, highlight;
  } rows[] = {{"light", "#ffffff", "#000000", "#308cc6"},
              {"dark", "#232629", "#fcfcfc", "#3daee9"}};
  for (const auto& row : rows) {
    QvRefSystem::AreaMap map(nullptr);
    QPalette palette;
    palette.setColor(QPalette::Base, row.base);
    palette.setColor(QPalette::Text, row.text);
    palette.setColor(QPalette::Highlight, row.highlight);
    map.setPalette(palette);
    map.resize(720, 360);
    // A box in the Atlantic whose view reaches into Africa.
    map.SetArea({.name = "", .box = {.south = 5, .north = 35, .west = -40, .east = -20}});
    const QImage image = map.grab().toImage();
    const QTransform at = FitMap({5, 35, -40, -20}, QSizeF(720, 360)).Transform();
    const auto colour = [&](double lon, double lat) {
      return image.pixelColor(at.map(QPointF(lon, lat)).toPoint());
    };
    const QColor area = colour(-33, 20);
    const QColor sea = colour(-48, 20);
    const QColor land = colour(5, 25);
    EXPECT_GT(std::abs(Luma(sea) - Luma(land)), 40) << row.name;
    EXPECT_GT(std::abs(Luma(sea) - Luma(area)) + std::abs(sea.hue() - area.hue()), 40) << row.name;
    EXPECT_GT(area.saturation(), land.saturation() + 50) << row.name;
  }
}

}  // namespace
}  // namespace refframe_tests
