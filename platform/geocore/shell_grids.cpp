#include "platform/geocore/shell_grids.h"

#include <cmath>
#include <numbers>
#include <stdexcept>

#include "platform/geocore/definition_from_model.h"
#include "platform/geocore/geodesy_error.h"
#include "platform/geocore/geoids.h"
#include "platform/geocore/ground_cover.h"
#include "platform/geocore/proj_handles.h"
#include "platform/geocore/shell_transform.h"
#include "platform/geocore/wgs84.h"

namespace QvRefSystem {
namespace {

// Eight gibibytes of values, four times the finest geoids of the whole Earth in use.
constexpr std::uint64_t kMostNodes = 1 << 30;

GroundMap::Move MoveBetween(const ShellDefinition& from, const ShellDefinition& to) {
  return [&from, &to](Points<TablePlane> places) {
    for (TShellPoint& place : places)
      place = from.FromPlane(place.First, place.Second, 0);
    MovePoints({from, Third::kEllipsoidal}, {to, Third::kEllipsoidal}, places.As<Axes>());
    for (TShellPoint& place : places) {
      if (!IsFailed(place)) place = to.ToPlane(place);
    }
  };
}

GridPlane PlaneOf(const ShellDefinition& system) {
  return {system.FullTurn(), system.model.positiveLongitude};
}

std::optional<TShell2DTableExtents> CoverBetween(const ShellDefinition& from,
                                                 const GridExtents& extents,
                                                 const ShellDefinition& to) {
  if (!from.HasLatitude() || !to.HasLatitude()) return std::nullopt;
  try {
    const auto cover = CoverGround(
        extents, {PlaneOf(from), PlaneOf(to), MoveBetween(from, to), MoveBetween(to, from)});
    return cover ? std::optional(FormatExtents(*cover)) : std::nullopt;
  } catch (const GeodesyError&) {
    return std::nullopt;
  }
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

}  // namespace

void SizeTable(const TShell2DTableExtents& extents, THeightTable* table) {
  table->Clear();
  const auto grid = ParseExtents(extents);
  const auto counts = grid ? CountNodes(*grid) : std::nullopt;
  if (!counts || std::uint64_t{counts->x} * counts->y > kMostNodes) return;
  try {
    table->Resize(counts->x, counts->y, grid->CellEastWest, grid->CellNorthSouth, grid->West,
                  grid->South);
  } catch (const std::bad_alloc&) {
    table->Clear();
  }
}

std::optional<TShell2DTableExtents> CoverTable(const ShellDefinition& from,
                                               const TShell2DTableExtents& extents,
                                               const ShellDefinition& to) {
  const auto grid = ParseExtents(extents);
  if (!grid) return std::nullopt;
  // The ground is the same: no number changes, only its spelling may.
  return from.HasSamePlane(to) ? FormatExtents(*grid) : CoverBetween(from, *grid, to);
}

std::optional<TShell2DTableExtents> CoverTable(const ShellDefinition& from,
                                               const THeightTable& table,
                                               const ShellDefinition& to) {
  return CoverTable(from, FormatExtents(ExtentsOf(table)), to);
}

std::optional<TShell2DTableExtents> CoverOwnHeights(const ShellDefinition& from,
                                                    const ShellDefinition& to) {
  if (from.table != nullptr) return CoverTable(from, *from.table, to);
  if (from.geoid == nullptr) return std::nullopt;
  const auto extents = ExtentsOf(*from.geoid);
  if (!extents) return std::nullopt;
  return CoverBetween(*DefinitionFromModel(Wgs84::Geographic()), *extents, to);
}

}  // namespace QvRefSystem
