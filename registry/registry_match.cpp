#include "registry/registry_match.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "platform/geocore/projjson.h"
#include "platform/text/text.h"
#include "registry/epsg_model_maker.h"

namespace QvRefSystem {
namespace {

// Definitions of one object differ by how their numbers were rounded on the way, 15 digits at
// worst; two objects of the registry differ by far more.
constexpr double kTolerance = 1e-11;

bool Agree(double a, double b) {
  return std::abs(a - b) <= kTolerance * std::max({1.0, std::abs(a), std::abs(b)});
}

// Null if there is no registry on this machine: nothing matches then.
const EpsgModelMaker* Maker() {
  std::string ignored;
  return EpsgModelMaker::Installed(&ignored);
}

using Names = std::unordered_multimap<std::string, int>;

template <typename Rows>
void AddNames(const Rows& rows, Names* names) {
  for (const auto& [code, row] : rows)
    names->emplace(DatumNameWithoutEnsemble(row.name), code);
}

const Names& DatumNames(const EpsgDataset& dataset) {
  static const Names names = [&] {
    Names made;
    AddNames(dataset.datums, &made);
    return made;
  }();
  return names;
}

const Names& SystemNames(const EpsgDataset& dataset) {
  static const Names names = [&] {
    Names made;
    AddNames(dataset.geodeticSystems, &made);
    AddNames(dataset.projectedSystems, &made);
    return made;
  }();
  return names;
}

std::vector<int> CodesNamed(const Names& names, const std::string& name) {
  std::vector<int> codes;
  const auto [first, last] = names.equal_range(name);
  for (auto found = first; found != last; ++found)
    codes.push_back(found->second);
  std::ranges::sort(codes);
  return codes;
}

double InBaseUnit(const std::string& text, const UnitModel& unit) {
  double value = 0;
  return QvPlatform::TextToDouble(text, &value) ? value * (unit.factorB / unit.factorC)
                                                : std::nan("");
}

bool SameShape(const EllipsoidModel& a, const EllipsoidModel& b) {
  const double aMajor = InBaseUnit(a.a, a.unit);
  const double bMajor = InBaseUnit(b.a, b.unit);
  return Agree(aMajor, bMajor) && Agree(InBaseUnit(a.b, a.unit), InBaseUnit(b.b, b.unit));
}

bool SameLongitude(const PrimeMeridianModel& a, const PrimeMeridianModel& b) {
  return Agree(InBaseUnit(a.longitude, a.unit), InBaseUnit(b.longitude, b.unit));
}

bool CountsFrom(const EpsgModelMaker& maker, const EpsgDatum& datum,
                const PrimeMeridianModel& meridian) {
  const auto& meridians = maker.Dataset().primeMeridians;
  const auto own = meridians.find(datum.primeMeridian);
  return own != meridians.end() && SameLongitude(maker.PrimeMeridian(own->second), meridian);
}

}  // namespace

std::optional<EllipsoidModel> MatchEllipsoid(const EllipsoidModel& ellipsoid) {
  const EpsgModelMaker* maker = Maker();
  if (!maker) return std::nullopt;
  for (const auto& [code, row] : maker->Dataset().ellipsoids) {
    if (row.name != ellipsoid.name) continue;
    EllipsoidModel known = maker->Ellipsoid(row);
    if (SameShape(known, ellipsoid)) return known;
  }
  return std::nullopt;
}

std::optional<PrimeMeridianModel> MatchPrimeMeridian(const PrimeMeridianModel& meridian) {
  const EpsgModelMaker* maker = Maker();
  if (!maker) return std::nullopt;
  for (const auto& [code, row] : maker->Dataset().primeMeridians) {
    if (row.name != meridian.name) continue;
    PrimeMeridianModel known = maker->PrimeMeridian(row);
    if (SameLongitude(known, meridian)) return known;
  }
  return std::nullopt;
}

std::optional<DatumModel> MatchDatum(const std::string& name, const EllipsoidModel& ellipsoid,
                                     const PrimeMeridianModel& meridian) {
  const EpsgModelMaker* maker = Maker();
  if (!maker) return std::nullopt;
  const EpsgDataset& dataset = maker->Dataset();
  for (const int code : CodesNamed(DatumNames(dataset), name)) {
    const EpsgDatum& row = dataset.datums.at(code);
    if (!CountsFrom(*maker, row, meridian)) continue;
    DatumModel known = maker->Datum(row);
    if (SameShape(known.ellipsoid, ellipsoid)) return known;
  }
  return std::nullopt;
}

std::vector<int> SystemsNamed(const std::string& name) {
  const EpsgModelMaker* maker = Maker();
  return maker ? CodesNamed(SystemNames(maker->Dataset()), name) : std::vector<int>();
}

}  // namespace QvRefSystem
