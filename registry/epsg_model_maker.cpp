#include "registry/epsg_model_maker.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "platform/geocore/projection_methods.h"
#include "platform/geocore/projjson.h"
#include "registry/exchange_codes.h"
#include "registry/model_values.h"
#include "registry/registry_units.h"

namespace QvRefSystem {
namespace {

constexpr int kMetre = 9001;
constexpr int kDegree = 9102;
constexpr int kSexagesimalDms = 9110;
constexpr std::size_t kDescriptionLength = 255;

[[noreturn]] void Refuse(const std::string& reason) {
  throw std::runtime_error(reason);
}

template <typename Objects>
const auto& Find(const Objects& objects, int code, std::string_view what) {
  const auto found = objects.find(code);
  if (found == objects.end())
    Refuse(std::string(what) + " " + std::to_string(code) + " is not live");
  return found->second;
}

const UnitModel& UnitOf(int code) {
  const UnitModel* unit = FindRegistryUnit(code);
  if (!unit) Refuse("unit " + std::to_string(code) + " has no fixed factor");
  return *unit;
}

// A value and the unit that it is given in once sexagesimal notation is gone.
struct PlainValue {
  std::string text;
  const UnitModel* unit;
};

PlainValue PlainValueOf(double value, int unit) {
  if (unit != kSexagesimalDms) return {FormatNumber(value), &UnitOf(unit)};
  double degrees = 0;
  if (!SexagesimalDmsToDegrees(value, &degrees)) {
    Refuse(FormatNumber(value) + " is no angle in degrees, minutes and seconds");
  }
  return {FormatNumber(degrees), &UnitOf(kDegree)};
}

std::string EpsgCode(int code) {
  return "EPSG:" + std::to_string(code);
}

// "EPSG:32637; World - N hemisphere - 36°E to 42°E; Engineering survey", as far as it fits.
std::string Describe(const std::string& code, const std::vector<EpsgUsage>& usages) {
  std::string text = code;
  if (usages.empty()) return text;
  for (std::string part : {usages.front().area, usages.front().scope}) {
    while (part.ends_with('.'))
      part.pop_back();
    if (!part.empty() && text.size() + part.size() + 2 <= kDescriptionLength) text += "; " + part;
  }
  return text;
}

struct AxisTraits {
  std::string_view name;
  std::string_view direction;
  std::string_view orientation;
  int sign;
  bool northSouth;
};

constexpr AxisTraits kAxes[] = {
    {"Northing", "North", "north", 1, true},
    {"Southing", "South", "south", -1, true},
    {"Easting", "East", "east", 1, false},
    {"Westing", "West", "west", -1, false},
};

// Polar systems point "North along 90°E"; there the name alone tells the axis.
const AxisTraits& TraitsOf(const EpsgAxis& axis) {
  const auto found = std::ranges::find(kAxes, axis.name, &AxisTraits::name);
  const bool polar = axis.orientation.find(" along ") != std::string::npos;
  if (found == std::end(kAxes) || (!polar && axis.orientation != found->orientation)) {
    Refuse("axis " + axis.name + " to the " + axis.orientation + " is not known");
  }
  return *found;
}

// The registry has one system whose axes bear no abbreviations.
std::string AbbreviationOf(const EpsgAxis& axis) {
  return axis.abbreviation == "none" ? axis.name.substr(0, 1) : axis.abbreviation;
}

void SetUnit(std::optional<UnitModel>* unit, const UnitModel& found) {
  if (*unit && (*unit)->code != found.code) Refuse("the projection mixes units of one kind");
  *unit = found;
}

}  // namespace

EpsgModelMaker::EpsgModelMaker(const EpsgDataset& dataset)
    : dataset_(dataset), shifts_(ChooseDatumShifts(dataset)) {
  std::map<std::pair<int, std::string>, int> flat;
  for (const auto& [code, system] : dataset.geodeticSystems) {
    if (system.kind == EpsgGeodeticKind::kGeographic2D) flat[{system.datum, system.name}] = code;
  }
  for (const auto& [code, system] : dataset.geodeticSystems) {
    if (system.kind != EpsgGeodeticKind::kGeographic3D) continue;
    const auto sibling = flat.find({system.datum, system.name});
    if (sibling == flat.end()) continue;
    siblings_[code] = sibling->second;
    merged_[sibling->second] = code;
  }
}

const EpsgModelMaker* EpsgModelMaker::Installed(std::string* error) {
  const EpsgDataset* dataset = InstalledEpsgDataset(error);
  if (!dataset) return nullptr;
  static const EpsgModelMaker maker(*dataset);
  return &maker;
}

int EpsgModelMaker::RecordCode(int systemCode) const {
  const auto sibling = siblings_.find(systemCode);
  return sibling == siblings_.end() ? systemCode : sibling->second;
}

std::vector<int> EpsgModelMaker::SystemCodes() const {
  std::vector<int> codes;
  for (const auto kind : {EpsgGeodeticKind::kGeographic2D, EpsgGeodeticKind::kGeographic3D,
                          EpsgGeodeticKind::kGeocentric}) {
    for (const auto& [code, system] : dataset_.geodeticSystems) {
      if (system.kind == kind && !siblings_.contains(code)) codes.push_back(code);
    }
  }
  for (const auto& [code, system] : dataset_.projectedSystems)
    codes.push_back(code);
  return codes;
}

bool EpsgModelMaker::System(int code, SystemModel* model, std::string* error) const {
  const int record = RecordCode(code);
  try {
    const auto projected = dataset_.projectedSystems.find(record);
    *model = projected != dataset_.projectedSystems.end()
                 ? Projected(projected->second)
                 : Geodetic(Find(dataset_.geodeticSystems, record, "system"));
    return true;
  } catch (const std::runtime_error& refusal) {
    *error = EpsgCode(code) + ": " + refusal.what();
    return false;
  }
}

EllipsoidModel EpsgModelMaker::Ellipsoid(const EpsgEllipsoid& ellipsoid) const {
  EllipsoidModel model =
      MakeEllipsoid(ellipsoid.a, ellipsoid.inverseFlattening, ellipsoid.b, UnitOf(ellipsoid.unit));
  model.name = ellipsoid.name;
  model.description = EpsgCode(ellipsoid.code);
  if (model.useF) {
    model.description += "; inverse flattening " + FormatNumber(*ellipsoid.inverseFlattening);
  }
  model.geoTiffCode = ellipsoid.code;
  model.mifCode = MifEllipsoidCode(ellipsoid.code);
  return model;
}

PrimeMeridianModel EpsgModelMaker::PrimeMeridian(const EpsgPrimeMeridian& meridian) const {
  const PlainValue longitude = PlainValueOf(meridian.longitude, meridian.unit);
  PrimeMeridianModel model;
  model.name = meridian.name;
  model.description = EpsgCode(meridian.code);
  model.longitude = longitude.text;
  model.unit = *longitude.unit;
  model.geoTiffCode = meridian.code;
  return model;
}

// The name by which surveyors know a datum is that of its geographic system.
std::string EpsgModelMaker::ShortDatumName(int datum) const {
  for (const auto& [code, system] : dataset_.geodeticSystems) {
    if (system.datum == datum && system.kind == EpsgGeodeticKind::kGeographic2D) return system.name;
  }
  return "";
}

DatumModel EpsgModelMaker::Datum(const EpsgDatum& datum) const {
  DatumModel model;
  model.name = datum.ensemble ? DatumNameWithoutEnsemble(datum.name) : datum.name;
  model.description = Describe(EpsgCode(datum.code), datum.usages);
  model.abbreviation = ShortDatumName(datum.code);
  model.shift = shifts_.at(datum.code).shift;
  model.ellipsoid = Ellipsoid(Find(dataset_.ellipsoids, datum.ellipsoid, "ellipsoid"));
  model.geoTiffCode = datum.code;
  model.mifCode = MifDatumCode(datum.code);
  return model;
}

SystemModel EpsgModelMaker::Geodetic(const EpsgGeodeticSystem& system) const {
  const EpsgDatum& datum = Find(dataset_.datums, system.datum, "datum");
  SystemModel model;
  model.name = system.name;
  model.abbreviation = EpsgCode(system.code);
  model.geoTiffCode = system.code;
  model.datum = Datum(datum);
  model.primeMeridian =
      PrimeMeridian(Find(dataset_.primeMeridians, datum.primeMeridian, "prime meridian"));

  const auto& axes = Find(dataset_.coordinateSystems, system.coordinateSystem, "coordinate system");
  std::string codes = EpsgCode(system.code);
  const bool geocentric = system.kind == EpsgGeodeticKind::kGeocentric;
  model.kind = geocentric ? SystemKind::kGeocentric : SystemKind::kGeodetic;
  if (geocentric) {
    for (std::size_t i = 0; i < 3; ++i)
      model.axisAbbreviation[i] = axes.at(i).abbreviation;
    model.linearUnit = UnitOf(axes.front().unit);
  } else {
    model.axisAbbreviation[0] = "Lat";
    model.axisAbbreviation[1] = "Lon";
    model.axisAbbreviation[2] = "h";
    model.angularUnit = UnitOf(axes.front().unit);
    // A 2D system takes heights in metres, as all 3D systems of the registry do.
    model.linearUnit = UnitOf(axes.size() > 2 ? axes[2].unit : kMetre);
    const auto solid = merged_.find(system.code);
    if (solid != merged_.end()) codes += " (2D), " + EpsgCode(solid->second) + " (3D)";
    if (axes.front().abbreviation == "Lon") codes += "; held here with the latitude first";
  }
  model.description = Describe(codes, system.usages);
  return model;
}

ProjectionModel EpsgModelMaker::Projection(const EpsgConversion& conversion,
                                           const std::vector<EpsgAxis>& axes) const {
  const ProjectionMethod* method = FindProjectionMethod(conversion.method);
  if (!method) Refuse("projection method " + std::to_string(conversion.method) + " is not known");
  ProjectionModel model;
  model.name = conversion.name;
  model.description =
      Describe(EpsgCode(conversion.code) + "; " + std::string(method->name), conversion.usages);
  model.method = conversion.method;
  model.geoTiffCode = conversion.code;
  for (const EpsgConversionParameter& parameter : conversion.parameters) {
    const ProjectionParameter* known = FindProjectionParameter(parameter.code);
    if (!known) Refuse("parameter " + std::to_string(parameter.code) + " is not known");
    const PlainValue value = PlainValueOf(parameter.value, parameter.unit);
    model.parameters.push_back({parameter.code, std::string(known->name), value.text});
    switch (known->unit) {
      case UnitKind::kLinear:
        SetUnit(&model.linearUnit, *value.unit);
        break;
      case UnitKind::kAngular:
        SetUnit(&model.angularUnit, *value.unit);
        break;
      case UnitKind::kScale:
        SetUnit(&model.scaleUnit, *value.unit);
        break;
    }
  }
  for (std::size_t i = 0; i < 2; ++i) {
    const AxisTraits& traits = TraitsOf(axes.at(i));
    model.axisAbbreviation[i] = AbbreviationOf(axes[i]);
    model.axisDirection[i] = traits.direction;
    model.axisSign[i] = traits.sign;
  }
  model.swap = TraitsOf(axes[0]).northSouth;
  if (TraitsOf(axes[1]).northSouth == model.swap) Refuse("both axes run the same way");
  return model;
}

SystemModel EpsgModelMaker::Projected(const EpsgProjectedSystem& system) const {
  const EpsgGeodeticSystem& base =
      Find(dataset_.geodeticSystems, RecordCode(system.base), "base system");
  const auto& axes = Find(dataset_.coordinateSystems, system.coordinateSystem, "coordinate system");
  SystemModel model;
  model.kind = SystemKind::kProjected;
  model.name = system.name;
  model.abbreviation = EpsgCode(system.code);
  model.description = Describe(EpsgCode(system.code), system.usages);
  model.geoTiffCode = system.code;
  model.primary = std::make_shared<SystemModel>(Geodetic(base));
  model.datum = model.primary->datum;
  model.primeMeridian = model.primary->primeMeridian;
  model.projection = Projection(Find(dataset_.conversions, system.conversion, "conversion"), axes);
  model.linearUnit = UnitOf(axes.front().unit);
  for (std::size_t i = 0; i < 2; ++i) {
    model.axisAbbreviation[i] = model.projection->axisAbbreviation[i];
  }
  model.axisAbbreviation[2] = "h";
  return model;
}

}  // namespace QvRefSystem
