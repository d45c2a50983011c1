#include "registry/registry_units.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>
#include <vector>

namespace QvRefSystem {
namespace {

struct UnitRow {
  int code;
  std::string_view name;
  std::string_view abbreviation;
  UnitKind kind;
  double factorB;
  double factorC;
  std::string_view mifName;
};

constexpr double kPi = std::numbers::pi;

// Codes, names and defining ratios: EPSG Dataset v10.076, table Unit of Measure (factors B and C);
// B base units (metre, radian, unity) are C of the unit. Names of the MIF/MID units: MapInfo
// Interchange File, CoordSys clause, unit names. The rows stand by code.
constexpr UnitRow kUnits[] = {
    {1025, "millimetre", "mm", UnitKind::kLinear, 0.001, 1, "mm"},
    {1028, "parts per billion", "ppb", UnitKind::kScale, 1, 1000000000, ""},
    {1031, "milliarc-second", "mas", UnitKind::kAngular, kPi, 648000000, ""},
    {1033, "centimetre", "cm", UnitKind::kLinear, 0.01, 1, "cm"},
    {9001, "metre", "m", UnitKind::kLinear, 1, 1, "m"},
    {9002, "foot", "ft", UnitKind::kLinear, 0.3048, 1, "ft"},
    {9003, "US survey foot", "ftUS", UnitKind::kLinear, 12, 39.37, "survey ft"},
    {9005, "Clarke's foot", "ftCla", UnitKind::kLinear, 0.3047972654, 1, ""},
    {9014, "fathom", "f", UnitKind::kLinear, 1.8288, 1, ""},
    {9030, "nautical mile", "NM", UnitKind::kLinear, 1852, 1, "nmi"},
    {9031, "German legal metre", "GLM", UnitKind::kLinear, 1.0000135965, 1, ""},
    {9033, "US survey chain", "chUS", UnitKind::kLinear, 792, 39.37, "ch"},
    {9034, "US survey link", "lkUS", UnitKind::kLinear, 7.92, 39.37, "li"},
    {9035, "US survey mile", "miUS", UnitKind::kLinear, 63360, 39.37, ""},
    {9036, "kilometre", "km", UnitKind::kLinear, 1000, 1, "km"},
    {9037, "Clarke's yard", "ydCla", UnitKind::kLinear, 0.9143917962, 1, ""},
    {9038, "Clarke's chain", "chCla", UnitKind::kLinear, 20.1166195164, 1, ""},
    {9039, "Clarke's link", "lkCla", UnitKind::kLinear, 0.201166195164, 1, ""},
    {9040, "British yard (Sears 1922)", "ydSe", UnitKind::kLinear, 36, 39.370147, ""},
    {9041, "British foot (Sears 1922)", "ftSe", UnitKind::kLinear, 12, 39.370147, ""},
    {9042, "British chain (Sears 1922)", "chSe", UnitKind::kLinear, 792, 39.370147, ""},
    {9043, "British link (Sears 1922)", "lkSe", UnitKind::kLinear, 7.92, 39.370147, ""},
    {9050, "British yard (Benoit 1895 A)", "ydBnA", UnitKind::kLinear, 0.9143992, 1, ""},
    {9051, "British foot (Benoit 1895 A)", "ftBnA", UnitKind::kLinear, 0.9143992, 3, ""},
    {9052, "British chain (Benoit 1895 A)", "chBnA", UnitKind::kLinear, 20.1167824, 1, ""},
    {9053, "British link (Benoit 1895 A)", "lkBnA", UnitKind::kLinear, 0.201167824, 1, ""},
    {9060, "British yard (Benoit 1895 B)", "ydBnB", UnitKind::kLinear, 36, 39.370113, ""},
    {9061, "British foot (Benoit 1895 B)", "ftBnB", UnitKind::kLinear, 12, 39.370113, ""},
    {9062, "British chain (Benoit 1895 B)", "chBnB", UnitKind::kLinear, 792, 39.370113, ""},
    {9063, "British link (Benoit 1895 B)", "lkBnB", UnitKind::kLinear, 7.92, 39.370113, ""},
    {9070, "British foot (1865)", "ftBr(65)", UnitKind::kLinear, 0.9144025, 3, ""},
    {9080, "Indian foot", "ftInd", UnitKind::kLinear, 12, 39.370142, ""},
    {9081, "Indian foot (1937)", "ftInd(37)", UnitKind::kLinear, 0.30479841, 1, ""},
    {9082, "Indian foot (1962)", "ftInd(62)", UnitKind::kLinear, 0.3047996, 1, ""},
    {9083, "Indian foot (1975)", "ftInd(75)", UnitKind::kLinear, 0.3047995, 1, ""},
    {9084, "Indian yard", "ydInd", UnitKind::kLinear, 36, 39.370142, ""},
    {9085, "Indian yard (1937)", "ydInd(37)", UnitKind::kLinear, 0.91439523, 1, ""},
    {9086, "Indian yard (1962)", "ydInd(62)", UnitKind::kLinear, 0.9143988, 1, ""},
    {9087, "Indian yard (1975)", "ydInd(75)", UnitKind::kLinear, 0.9143985, 1, ""},
    {9093, "Statute mile", "mi", UnitKind::kLinear, 1609.344, 1, "mi"},
    {9094, "Gold Coast foot", "ftGC", UnitKind::kLinear, 6378300, 20926201, ""},
    {9095, "British foot (1936)", "ftBr(36)", UnitKind::kLinear, 0.3048007491, 1, ""},
    {9096, "yard", "yd", UnitKind::kLinear, 0.9144, 1, "yd"},
    {9097, "chain", "ch", UnitKind::kLinear, 20.1168, 1, ""},
    {9098, "link", "lk", UnitKind::kLinear, 0.201168, 1, ""},
    {9099, "British yard (Sears 1922 truncated)", "ydSeTr", UnitKind::kLinear, 0.914398, 1, ""},
    {9101, "radian", "rad", UnitKind::kAngular, 1, 1, ""},
    {9102, "degree", "deg", UnitKind::kAngular, kPi, 180, ""},
    {9103, "arc-minute", "min", UnitKind::kAngular, kPi, 10800, ""},
    {9104, "arc-second", "sec", UnitKind::kAngular, kPi, 648000, ""},
    {9105, "grad", "gon", UnitKind::kAngular, kPi, 200, ""},
    {9109, "microradian", "urad", UnitKind::kAngular, 1, 1000000, ""},
    {9112, "centesimal minute", "c", UnitKind::kAngular, kPi, 20000, ""},
    {9113, "centesimal second", "cc", UnitKind::kAngular, kPi, 2000000, ""},
    {9114, "mil_6400", "mil", UnitKind::kAngular, kPi, 3200, ""},
    {9201, "unity", "1", UnitKind::kScale, 1, 1, ""},
    {9202, "parts per million", "ppm", UnitKind::kScale, 1, 1000000, ""},
    {9203, "coefficient", "coef", UnitKind::kScale, 1, 1, ""},
    {9300, "British foot (Sears 1922 truncated)", "ftSeTr", UnitKind::kLinear, 0.914398, 3, ""},
    {9301, "British chain (Sears 1922 truncated)", "chSeTr", UnitKind::kLinear, 20.116756, 1, ""},
    {9302, "British link (Sears 1922 truncated)", "lkSeTr", UnitKind::kLinear, 0.20116756, 1, ""},
};

// "degree (supplier to define representation)" is the degree for every computation; how a value
// is written is no property of a unit with a factor.
constexpr int kDegree = 9102;
constexpr int kDegreeAnyRepresentation = 9122;

// What is left of a factor that was written with 15 digits.
constexpr double kFactorTolerance = 1e-12;

UnitModel MakeUnit(const UnitRow& row) {
  UnitModel unit;
  unit.code = row.code;
  unit.name = row.name;
  unit.abbreviation = row.abbreviation;
  unit.factorB = row.factorB;
  unit.factorC = row.factorC;
  // GeoTIFF takes its unit codes from the EPSG dataset; scale units have no key there.
  unit.geoTiffCode = row.kind == UnitKind::kScale ? 0 : row.code;
  unit.mifName = row.mifName;
  return unit;
}

const UnitRow* FindRow(int code) {
  const int wanted = code == kDegreeAnyRepresentation ? kDegree : code;
  const auto found = std::ranges::lower_bound(kUnits, wanted, {}, &UnitRow::code);
  return found == std::end(kUnits) || found->code != wanted ? nullptr : found;
}

static_assert(std::ranges::is_sorted(kUnits, {}, &UnitRow::code));

}  // namespace

std::span<const UnitModel> RegistryUnits() {
  static const std::vector<UnitModel> units = [] {
    std::vector<UnitModel> made;
    std::ranges::transform(kUnits, std::back_inserter(made), MakeUnit);
    return made;
  }();
  return units;
}

const UnitModel* FindRegistryUnit(int epsgCode) {
  const UnitRow* row = FindRow(epsgCode);
  return row ? &RegistryUnits()[static_cast<std::size_t>(row - kUnits)] : nullptr;
}

UnitKind RegistryUnitKind(int epsgCode) {
  const UnitRow* row = FindRow(epsgCode);
  return row ? row->kind : UnitKind::kLinear;
}

const UnitModel* FindRegistryUnitByFactor(UnitKind kind, double factor) {
  const auto found = std::ranges::find_if(kUnits, [&](const UnitRow& row) {
    return row.kind == kind &&
           std::abs(row.factorB / row.factorC - factor) <= kFactorTolerance * std::abs(factor);
  });
  return found == std::end(kUnits) ? nullptr : FindRegistryUnit(found->code);
}

UnitModel MakeUserUnit(const std::string& name, double factor) {
  UnitModel unit;
  unit.name = name;
  unit.abbreviation = name;
  unit.factorB = factor;
  return unit;
}

}  // namespace QvRefSystem
