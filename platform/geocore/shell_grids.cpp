#include "platform/geocore/shell_grids.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

#include "platform/geocore/geoids.h"
#include "platform/geocore/proj_handles.h"
#include "platform/geocore/shell_definition.h"
#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

using Definition = TShellReferenceSystem::Definition;

// Eight gibibytes of values, four times the finest geoids of the whole Earth in use.
constexpr std::uint64_t kMostNodes = 1 << 30;

GroundMap::Move MoveBetween(const Definition& from, const Definition& to) {
  return [&from, &to](std::span<TShellPoint> places) {
    for (TShellPoint& place : places)
      place = from.FromPlane(place.First, place.Second, 0);
    Definition::Move(from, Definition::Third::kEllipsoidal, to, Definition::Third::kEllipsoidal,
                     places);
    for (TShellPoint& place : places) {
      if (std::isfinite(place.First)) place = to.ToPlane(place);
    }
  };
}

GridPlane PlaneOf(const Definition& system) {
  return {system.FullTurn(), system.Model().positiveLongitude};
}

std::optional<GridExtents> CoverBetween(const Definition& from, const GridExtents& extents,
                                        const Definition& to) {
  if (!from.HasLatitude() || !to.HasLatitude()) return std::nullopt;
  try {
    return CoverGround(extents,
                       {PlaneOf(from), PlaneOf(to), MoveBetween(from, to), MoveBetween(to, from)});
  } catch (const GeodesyError&) {
    return std::nullopt;
  }
}

// Latitude and longitude in degrees in the common frame of all systems.
std::shared_ptr<const Definition> CommonGeographic() {
  SystemModel model;
  model.kind = SystemKind::kGeodetic;
  model.name = "WGS 84";
  model.angularUnit.factorB = std::numbers::pi;
  model.angularUnit.factorC = 180;
  model.primeMeridian.longitude = "0";
  model.primeMeridian.unit = model.angularUnit;
  model.ellipsoid.emplace();
  model.ellipsoid->name = "WGS 84";
  model.ellipsoid->a = "6378137";
  model.ellipsoid->useF = true;
  model.ellipsoid->f = 1 / 298.257223563;
  return Definition::Make(model);
}

// Limits and cells in degrees; nothing if PROJ cannot tell them.
std::optional<GridExtents> ExtentsOf(const SystemGeoid& geoid) {
  const PJ_GRID_INFO info = proj_grid_info(geoid.grid.c_str());
  if (info.n_lon < 2 || info.n_lat < 2) return std::nullopt;
  constexpr double kDegree = 180 / std::numbers::pi;
  const auto degrees = [](double radians) {
    // Single precision stands behind some grids: a billionth of a degree is 0.1 mm.
    return std::round(radians * kDegree * 1e9) / 1e9;
  };
  return GridExtents{degrees(info.lowerleft.lam), degrees(info.upperright.lam),
                     degrees(info.lowerleft.phi), degrees(info.upperright.phi),
                     degrees(info.cs_lon),        degrees(info.cs_lat)};
}

struct GridTexts {
  std::string* north;
  std::string* south;
  std::string* east;
  std::string* west;
  std::string* cellNS;
  std::string* cellEW;

  void Put(TShell2DTableExtents texts) const {
    *north = std::move(texts.North);
    *south = std::move(texts.South);
    *east = std::move(texts.East);
    *west = std::move(texts.West);
    *cellNS = std::move(texts.CellNorthSouth);
    *cellEW = std::move(texts.CellEastWest);
  }
};

}  // namespace

void TShellReferenceSystem::InitializeHeightTableGrid(
    const std::string& north, const std::string& south, const std::string& east,
    const std::string& west, const std::string& cellNS, const std::string& cellEW,
    THeightTable* table) const {
  table->Clear();
  const auto extents = ParseExtents({west, east, south, north, cellEW, cellNS});
  if (!extents) return;
  const auto counts = CountNodes(*extents);
  if (!counts || std::uint64_t{counts->x} * counts->y > kMostNodes) return;
  try {
    table->Resize(counts->x, counts->y, extents->CellEastWest, extents->CellNorthSouth,
                  extents->West, extents->South);
  } catch (const std::bad_alloc&) {
    table->Clear();
  }
}

bool TShellReferenceSystem::RecalculateTableGrid(const TShell2DTableExtents* source,
                                                 const TShellReferenceSystem* target,
                                                 TShell2DTableExtents* result) const {
  if (source == nullptr || target == nullptr) return false;
  const auto extents = ParseExtents(*source);
  if (!extents) return false;
  // The ground is the same: no number changes, only its spelling may.
  if (Core().HasSamePlane(target->Core())) {
    *result = FormatExtents(*extents);
    return true;
  }
  const auto cover = CoverBetween(Core(), *extents, target->Core());
  if (cover) *result = FormatExtents(*cover);
  return cover.has_value();
}

bool TShellReferenceSystem::RecalculateHeightTableGrid(const THeightTable* heights,
                                                       const TShellReferenceSystem* target,
                                                       std::string* north, std::string* south,
                                                       std::string* east, std::string* west,
                                                       std::string* cellNS,
                                                       std::string* cellEW) const {
  if (heights == nullptr || heights->Data == nullptr) return false;
  const TShell2DTableExtents source = FormatExtents(ExtentsOf(*heights));
  TShell2DTableExtents result;
  if (!RecalculateTableGrid(&source, target, &result)) return false;
  GridTexts{north, south, east, west, cellNS, cellEW}.Put(std::move(result));
  return true;
}

bool TShellReferenceSystem::RecalculateHeightTableGrid(const TShellReferenceSystem* target,
                                                       std::string* north, std::string* south,
                                                       std::string* east, std::string* west,
                                                       std::string* cellNS,
                                                       std::string* cellEW) const {
  if (Core().Table() != nullptr) {
    return RecalculateHeightTableGrid(Core().Table(), target, north, south, east, west, cellNS,
                                      cellEW);
  }
  if (Core().Geoid() == nullptr || target == nullptr) return false;
  const auto extents = ExtentsOf(*Core().Geoid());
  if (!extents) return false;
  const auto cover = CoverBetween(*CommonGeographic(), *extents, target->Core());
  if (!cover) return false;
  GridTexts{north, south, east, west, cellNS, cellEW}.Put(FormatExtents(*cover));
  return true;
}

}  // namespace QvRefSystem
