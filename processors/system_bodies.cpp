#include "processors/system_bodies.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace QvRefSystem {
namespace {

using enum Reading;

// The turns of reading. All kinds store what a system refers to in this order.
enum : int { kUnits = 1, kPrimary, kProjection, kPrimeMeridian, kDatum, kHeights };

constexpr TreeItem kSwap = IntegerItem(TreeIds::kSwap, "SWAP_COORDS");
constexpr std::array kAxes{TextItem(TreeIds::kAxis, "COORD1_ABBR", 0),
                           TextItem(TreeIds::kAxis, "COORD2_ABBR", 1),
                           TextItem(TreeIds::kAxis, "COORD3_ABBR", 2)};
constexpr TreeItem kLinearUnit = InTurn(
    kUnits, SubobjectItem(TreeIds::kLinearUnit, TObjectType::kLinearUnit, "LINEAR_UNIT_AUTOKEY"));
constexpr TreeItem kAngularUnit =
    InTurn(kUnits,
           SubobjectItem(TreeIds::kAngularUnit, TObjectType::kAngularUnit, "ANGULAR_UNIT_AUTOKEY"));
// The unit of heights stands in a subtree that holds nothing else.
constexpr TreeItem kHeightLevel = SubtreeItem(TreeIds::kVertical);
constexpr TreeItem kHeightUnit = Within(TreeIds::kVertical, kLinearUnit);
constexpr TreeItem kMeridian = InTurn(
    kPrimeMeridian,
    SubobjectItem(TreeIds::kPrimeMeridian, TObjectType::kPrimeMeridian, "PRIME_MERIDIAN_AUTOKEY"));
constexpr TreeItem kEllipsoid = InTurn(
    kDatum, SubobjectItem(TreeIds::kEllipsoid, TObjectType::kEllipsoid, "ELLIPSOID_AUTOKEY"));
constexpr TreeItem kDatumIfAny =
    InTurn(kDatum, SubobjectItem(TreeIds::kDatum, TObjectType::kDatum, "DATUM_AUTOKEY", true));
// A system with a datum keeps the key of its ellipsoid as well, so that there always is one.
constexpr TreeItem kDatumOrEllipsoid =
    InTurn(kDatum, AsOwn(SubobjectItem(TreeIds::kDatum, TObjectType::kDatum, "ELLIPSOID_AUTOKEY")));
constexpr TreeItem kMapProjection =
    InTurn(kProjection,
           SubobjectItem(TreeIds::kProjection, TObjectType::kMapProjection, "MAP_PROJ_AUTOKEY"));
constexpr TreeItem PrimaryItem(bool optional) {
  return InTurn(kPrimary, AsOwn(SubobjectItem(TreeIds::kPrimary, TObjectType::kReferenceSystem,
                                              "PRIMARY_REFSYSTEM_AUTOKEY", optional)));
}
constexpr TreeItem kHeightSystem = InTurn(
    kHeights, AsOwn(SubobjectItem(TreeIds::kHeightSystem, TObjectType::kVerticalReferenceSystem,
                                  "VERT_SYSTEM_AUTOKEY", true)));
constexpr TreeItem kCode = CodeItem(TreeIds::kGeoTiffSystem, ParamTag::kGeoTiff);
constexpr std::array kSpaceOrigin{TextItem(TreeIds::kOrigin, "ORIGIN_COORD1", 0),
                                  TextItem(TreeIds::kOrigin, "ORIGIN_COORD2", 1),
                                  TextItem(TreeIds::kOrigin, "ORIGIN_COORD3", 2)};

// What is written behind all others. Heights and a code are read back for some kinds alone.
constexpr auto Tail(Reading heights, Reading code) {
  return std::array{OwnItem(TreeIds::kMifExport), With(kHeightSystem, heights),
                    OwnItem(TreeIds::kGeoTiffSystemType), With(kCode, code)};
}
constexpr std::array kWrittenTail = Tail(kWriteOnly, kWriteOnly);

constexpr auto kCartesianBody =
    Items(std::array{kSwap}, kAxes, std::array{kLinearUnit}, kWrittenTail);
constexpr auto kLocalBody =
    Items(std::array{kSwap}, kAxes,
          std::array{kLinearUnit, kEllipsoid, AsOwn(kSpaceOrigin[0]), AsOwn(kSpaceOrigin[1])},
          kWrittenTail);
constexpr auto kGeocentricBody =
    Items(kAxes, std::array{kMeridian, kLinearUnit, kDatumIfAny}, Tail(kWriteOnly, kRequired));
constexpr auto kGeodeticBody =
    Items(kAxes,
          std::array{kAngularUnit, kMeridian, kHeightLevel, kHeightUnit, kDatumOrEllipsoid,
                     OwnItem(TreeIds::kPositiveLongitude)},
          Tail(kRequired, kRequired));
constexpr auto kProjectedBody = Items(
    kAxes,
    std::array{kMeridian, kHeightLevel, kLinearUnit, With(kHeightUnit, kWriteOnly), kMapProjection,
               OwnItem(TreeIds::kMifSystemType), PrimaryItem(true), kDatumOrEllipsoid},
    Tail(kRequired, kRequired));
constexpr auto kTopocentricBody =
    Items(std::array{kSwap}, kAxes, std::array{kLinearUnit, PrimaryItem(false)}, kSpaceOrigin,
          std::array{AsOwn(TextItem(TreeIds::kAzimuth, "AZIMUTH"))}, kWrittenTail);

constexpr std::span<const TreeItem> RowsOf(SystemKind kind) {
  switch (kind) {
    case SystemKind::kLocalCartesian:
      return kCartesianBody;
    case SystemKind::kLocal:
      return kLocalBody;
    case SystemKind::kGeocentric:
      return kGeocentricBody;
    case SystemKind::kGeodetic:
      return kGeodeticBody;
    case SystemKind::kProjected:
      return kProjectedBody;
    case SystemKind::kTopocentric:
      return kTopocentricBody;
  }
  return {};
}

// All that a system can refer to and some kind cannot do without, in the order in which the check
// tells it.
constexpr std::array<std::string_view, 6> kReferences{
    "LINEAR_UNIT_AUTOKEY", "ANGULAR_UNIT_AUTOKEY", "PRIME_MERIDIAN_AUTOKEY",
    "ELLIPSOID_AUTOKEY",   "MAP_PROJ_AUTOKEY",     "PRIMARY_REFSYSTEM_AUTOKEY"};

struct Needs {
  std::array<std::string_view, kReferences.size()> columns;
  std::size_t count = 0;
};

consteval Needs NeedsOf(SystemKind kind) {
  Needs needs;
  for (const std::string_view column : kReferences) {
    const bool needed = std::ranges::any_of(RowsOf(kind), [=](const TreeItem& item) {
      return item.object != TObjectType::kNone && !item.optional && item.column == column;
    });
    if (needed) needs.columns[needs.count++] = column;
  }
  return needs;
}

consteval auto NeedsOfAll() {
  std::array<Needs, kSystemKinds.size()> all;
  for (std::size_t i = 0; i < all.size(); ++i)
    all[i] = NeedsOf(kSystemKinds[i]);
  return all;
}

}  // namespace

std::span<const TreeItem> BodyOf(SystemKind kind) {
  return RowsOf(kind);
}

std::span<const std::string_view> RequiredReferences(SystemKind kind) {
  static constexpr std::array kNeeds = NeedsOfAll();
  const auto at = std::ranges::find(kSystemKinds, kind) - kSystemKinds.begin();
  const Needs& needs = kNeeds[static_cast<std::size_t>(at)];
  return std::span(needs.columns).first(needs.count);
}

}  // namespace QvRefSystem
