#include "registry/projjson_reader.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <numbers>
#include <span>
#include <string_view>
#include <utility>

#include "platform/geocore/polar_axes.h"
#include "platform/geocore/projection_methods.h"
#include "platform/geocore/projjson.h"
#include "registry/delivered_types.h"
#include "registry/model_values.h"
#include "registry/null_shift.h"
#include "registry/projjson_units.h"
#include "registry/registry_match.h"
#include "registry/registry_units.h"

namespace QvRefSystem {
namespace {

using Json = nlohmann::json;

[[noreturn]] void Refuse(const std::string& reason) {
  throw BridgeRefusal(reason);
}

std::string TextOf(const Json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

std::string NameOf(const Json& object) {
  return TextOf(object, "name");
}

double FactorOf(const UnitModel& unit) {
  return unit.factorB / unit.factorC;
}

// Area, scope and remarks as far as a description takes them.
std::string DescriptionOf(const Json& object) {
  constexpr std::size_t kLength = 255;
  const auto usages = object.find("usages");
  const Json& usage = usages != object.end() && !usages->empty() ? usages->front() : object;
  std::string text;
  for (std::string part :
       {TextOf(usage, "area"), TextOf(usage, "scope"), TextOf(object, "remarks")}) {
    while (part.ends_with('.'))
      part.pop_back();
    if (part.empty() || part == "Not known" || text.size() + part.size() + 2 > kLength) continue;
    text += (text.empty() ? "" : "; ") + part;
  }
  return text;
}

EllipsoidModel EllipsoidFromJson(const Json& json) {
  if (json.contains("radius")) {
    const JsonMeasure radius = MeasureFromJson(json.at("radius"), UnitKind::kLinear);
    EllipsoidModel sphere = MakeEllipsoid(radius.value, 0.0, std::nullopt, radius.unit);
    sphere.name = NameOf(json);
    return MatchEllipsoid(sphere).value_or(sphere);
  }
  const JsonMeasure a = MeasureFromJson(json.at("semi_major_axis"), UnitKind::kLinear);
  std::optional<double> inverseFlattening;
  std::optional<double> b;
  if (json.contains("inverse_flattening")) {
    inverseFlattening = json.at("inverse_flattening").get<double>();
  } else {
    const JsonMeasure minor = MeasureFromJson(json.at("semi_minor_axis"), UnitKind::kLinear);
    b = minor.value * FactorOf(minor.unit) / FactorOf(a.unit);
    if (FactorOf(minor.unit) == FactorOf(a.unit)) b = minor.value;
  }
  EllipsoidModel ellipsoid = MakeEllipsoid(a.value, inverseFlattening, b, a.unit);
  ellipsoid.name = NameOf(json);
  return MatchEllipsoid(ellipsoid).value_or(ellipsoid);
}

PrimeMeridianModel PrimeMeridianFromJson(const Json& datum) {
  PrimeMeridianModel meridian;
  const auto json = datum.find("prime_meridian");
  const JsonMeasure longitude = json == datum.end()
                                    ? MeasureFromJson(0.0, UnitKind::kAngular)
                                    : MeasureFromJson(json->at("longitude"), UnitKind::kAngular);
  meridian.name = json == datum.end() ? "Greenwich" : NameOf(*json);
  meridian.longitude = FormatNumber(longitude.value);
  meridian.unit = longitude.unit;
  return MatchPrimeMeridian(meridian).value_or(meridian);
}

// The names by which PROJ says that only an ellipsoid is known.
bool IsUnknownDatum(std::string_view name) {
  return (name.starts_with("Unknown based on ") && name.ends_with(" ellipsoid")) ||
         name.starts_with("Unknown_based_on_") || name.starts_with("Not specified (based on ");
}

void ReadDatum(const Json& system, SystemModel* model) {
  const bool ensemble = system.contains("datum_ensemble");
  const Json& json = system.at(ensemble ? "datum_ensemble" : "datum");
  model->primeMeridian = PrimeMeridianFromJson(json);
  DatumModel datum;
  datum.name = DatumNameWithoutEnsemble(NameOf(json));
  datum.ellipsoid = EllipsoidFromJson(json.at("ellipsoid"));
  if (IsUnknownDatum(datum.name) && model->kind != SystemKind::kGeocentric) {
    model->ellipsoid = datum.ellipsoid;
    return;
  }
  if (auto known = MatchDatum(datum.name, datum.ellipsoid, model->primeMeridian)) {
    model->datum = std::move(known);
    return;
  }
  datum.geoTiffCode = EpsgIdOf(json);
  datum.shift = MakeNullShift(datum.name);
  model->datum = std::move(datum);
}

void ReadHead(const Json& system, SystemModel* model) {
  model->name = NameOf(system);
  model->description = DescriptionOf(system);
  model->geoTiffCode = EpsgIdOf(system);
  if (model->geoTiffCode > 0) model->abbreviation = "EPSG:" + std::to_string(model->geoTiffCode);
}

const Json& AxesOf(const Json& system, std::size_t least) {
  const Json& axes = system.at("coordinate_system").at("axis");
  if (axes.size() < least) Refuse(NameOf(system) + " has too few axes");
  return axes;
}

void CheckHeightAxis(const Json& axis) {
  if (axis.at("direction") != "up") Refuse("heights that do not count upwards cannot be held");
}

SystemModel GeodeticFromJson(const Json& system) {
  SystemModel model;
  model.kind = SystemKind::kGeodetic;
  ReadHead(system, &model);
  ReadDatum(system, &model);
  const Json& axes = AxesOf(system, 2);
  const auto counts = [&](const char* direction) {
    return axes[0].at("direction") == direction || axes[1].at("direction") == direction;
  };
  if (!counts("north") || !counts("east")) {
    Refuse("only latitudes to the north and longitudes to the east can be held");
  }
  model.angularUnit = UnitFromJson(axes[0], UnitKind::kAngular);
  model.linearUnit = UnitFromJson(Json::object(), UnitKind::kLinear);
  if (axes.size() > 2) {
    CheckHeightAxis(axes[2]);
    model.linearUnit = UnitFromJson(axes[2], UnitKind::kLinear);
  }
  const ReferenceSystemType& type = *FindReferenceSystemType(static_cast<int>(model.kind));
  for (int i = 0; i < 3; ++i)
    model.axisAbbreviation[i] = type.axisAbbreviation[i];
  return model;
}

SystemModel GeocentricFromJson(const Json& system) {
  if (system.at("coordinate_system").at("subtype") != "Cartesian") {
    Refuse("a geocentric system with spherical coordinates cannot be held");
  }
  SystemModel model;
  model.kind = SystemKind::kGeocentric;
  ReadHead(system, &model);
  ReadDatum(system, &model);
  const Json& axes = AxesOf(system, 3);
  for (std::size_t i = 0; i < 3; ++i)
    model.axisAbbreviation[i] = TextOf(axes[i], "abbreviation");
  model.linearUnit = UnitFromJson(axes[0], UnitKind::kLinear);
  return model;
}

std::optional<UnitModel>& UnitOf(ProjectionModel* projection, UnitKind kind) {
  switch (kind) {
    case UnitKind::kAngular:
      return projection->angularUnit;
    case UnitKind::kScale:
      return projection->scaleUnit;
    case UnitKind::kLinear:
      break;
  }
  return projection->linearUnit;
}

const Json* FindParameter(const Json& parameters, const ProjectionParameter& wanted) {
  const auto found = std::ranges::find_if(parameters, [&](const Json& parameter) {
    const int code = EpsgIdOf(parameter);
    return code != 0 ? code == wanted.code : NameOf(parameter) == wanted.name;
  });
  return found == parameters.end() ? nullptr : &*found;
}

// A value in the unit that the first parameter of its kind brought.
std::string ParameterText(const Json& json, UnitKind kind, std::optional<UnitModel>* unit) {
  const JsonMeasure measure = MeasureFromJson(json, kind);
  if (!*unit) *unit = measure.unit;
  const double from = FactorOf(measure.unit);
  const double to = FactorOf(**unit);
  return FormatNumber(from == to ? measure.value : measure.value * from / to);
}

void ReadParameters(const Json& conversion, const ProjectionMethod& method,
                    ProjectionModel* projection) {
  const Json& parameters = conversion.at("parameters");
  for (const int code : method.parameters) {
    const ProjectionParameter& wanted = *FindProjectionParameter(code);
    const Json* json = FindParameter(parameters, wanted);
    if (!json) Refuse("the conversion has no " + std::string(wanted.name));
    projection->parameters.push_back(
        {code, std::string(wanted.name),
         ParameterText(*json, wanted.unit, &UnitOf(projection, wanted.unit))});
  }
  for (const Json& parameter : parameters) {
    const bool taken = std::ranges::any_of(method.parameters, [&](int code) {
      return FindParameter(parameters, *FindProjectionParameter(code)) == &parameter;
    });
    if (!taken && parameter.at("value").get<double>() != 0) {
      Refuse("the method " + std::string(method.name) + " has no parameter " + NameOf(parameter));
    }
  }
}

const ProjectionMethod& MethodFromJson(const Json& conversion) {
  const Json& json = conversion.at("method");
  const int code = EpsgIdOf(json);
  for (const ProjectionMethod& method : ProjectionMethods()) {
    if (code != 0 ? method.code == code : method.name == NameOf(json)) return method;
  }
  Refuse("the projection method " + NameOf(json) + " is not known");
}

struct PlaneAxis {
  bool northing = false;
  int sign = 1;
};

constexpr PlaneAxis kNorth{true, 1}, kSouth{true, -1}, kEast{false, 1}, kWest{false, -1};

std::optional<PlaneAxis> AxisNamed(std::string name) {
  std::ranges::transform(name, name.begin(), [](unsigned char c) { return std::tolower(c); });
  for (const auto& [start, found] : {std::pair{"easting", kEast}, std::pair{"northing", kNorth},
                                     std::pair{"westing", kWest}, std::pair{"southing", kSouth}}) {
    if (name.starts_with(start)) return found;
  }
  return std::nullopt;
}

// The name decides, as it does in PROJ: definitions made from older forms bear meridians that do
// not fit their origin. Without a telling name the meridian must fit.
PlaneAxis PolarAxis(const Json& axis, const PolarAspect& pole) {
  if (const auto named = AxisNamed(NameOf(axis))) return *named;
  const auto meridian = axis.find("meridian");
  if (meridian != axis.end()) {
    const JsonMeasure longitude = MeasureFromJson(meridian->at("longitude"), UnitKind::kAngular);
    const double degrees = longitude.value * FactorOf(longitude.unit) * 180 / std::numbers::pi;
    for (const PlaneAxis candidate : {kEast, kNorth, kWest, kSouth}) {
      const double expected = pole.MeridianOf(candidate.northing, candidate.sign);
      if (std::abs(std::remainder(degrees - expected, 360)) < 1e-6) return candidate;
    }
  }
  Refuse("the polar axis " + NameOf(axis) +
         " tells neither by its name nor by its meridian "
         "whether it is an easting or a northing");
}

PlaneAxis PlaneAxisFromJson(const Json& axis, const std::optional<PolarAspect>& pole) {
  const std::string direction = TextOf(axis, "direction");
  const bool towardsOrFromPole = pole && direction == (pole->northPole ? "south" : "north");
  if (axis.contains("meridian") && !pole) {
    Refuse("the axis " + NameOf(axis) + " runs along a meridian, but the projection is not polar");
  }
  if (towardsOrFromPole) return PolarAxis(axis, *pole);
  if (direction == "north") return kNorth;
  if (direction == "south") return kSouth;
  if (direction == "east") return kEast;
  if (direction == "west") return kWest;
  Refuse("the axis " + NameOf(axis) + " to the " + direction + " cannot be held");
}

void ReadPlaneAxes(const Json& axes, ProjectionModel* projection) {
  constexpr const char* kWords[2][2] = {{"West", "East"}, {"South", "North"}};
  const auto pole = PolarAspectOf(*projection);
  PlaneAxis plane[2];
  for (std::size_t i = 0; i < 2; ++i) {
    plane[i] = PlaneAxisFromJson(axes[i], pole);
    projection->axisAbbreviation[i] = TextOf(axes[i], "abbreviation");
    projection->axisSign[i] = plane[i].sign;
    projection->axisDirection[i] = kWords[plane[i].northing][plane[i].sign > 0];
    if (projection->axisAbbreviation[i].empty()) {
      projection->axisAbbreviation[i] = projection->axisDirection[i].substr(0, 1);
    }
  }
  if (plane[0].northing == plane[1].northing) Refuse("both plane axes run the same way");
  projection->swap = plane[0].northing;
}

ProjectionModel ProjectionFromJson(const Json& system) {
  const Json& conversion = system.at("conversion");
  const ProjectionMethod& method = MethodFromJson(conversion);
  ProjectionModel projection;
  projection.name = NameOf(conversion);
  projection.description = std::string(method.name);
  projection.method = method.code;
  projection.geoTiffCode = EpsgIdOf(conversion);
  ReadParameters(conversion, method, &projection);
  ReadPlaneAxes(AxesOf(system, 2), &projection);
  return projection;
}

SystemModel ProjectedFromJson(const Json& system) {
  SystemModel model;
  model.kind = SystemKind::kProjected;
  ReadHead(system, &model);
  model.primary = std::make_shared<SystemModel>(GeodeticFromJson(system.at("base_crs")));
  model.datum = model.primary->datum;
  model.ellipsoid = model.primary->ellipsoid;
  model.primeMeridian = model.primary->primeMeridian;
  model.projection = ProjectionFromJson(system);
  const Json& axes = AxesOf(system, 2);
  model.linearUnit = UnitFromJson(axes[0], UnitKind::kLinear);
  for (std::size_t i = 1; i < axes.size(); ++i) {
    if (i > 1) CheckHeightAxis(axes[i]);
    if (FactorOf(UnitFromJson(axes[i], UnitKind::kLinear)) != FactorOf(model.linearUnit)) {
      Refuse("axes in different units cannot be held");
    }
  }
  const ReferenceSystemType& type = *FindReferenceSystemType(static_cast<int>(model.kind));
  for (int i = 0; i < 2; ++i)
    model.axisAbbreviation[i] = model.projection->axisAbbreviation[i];
  model.axisAbbreviation[2] = type.axisAbbreviation[2];
  return model;
}

struct ShiftMethod {
  int type;
  int codes[3];
};

// EPSG methods of the geographic 2D, geographic 3D and geocentric domains by type of shift.
constexpr ShiftMethod kShiftMethods[] = {
    {1, {9603, 1035, 1031}}, {2, {9606, 1037, 1033}}, {3, {9607, 1038, 1032}}};

int ShiftTypeOf(const Json& method) {
  const int code = EpsgIdOf(method);
  for (const ShiftMethod& known : kShiftMethods) {
    if (std::ranges::find(known.codes, code) != std::end(known.codes)) return known.type;
  }
  Refuse("a shift to WGS 84 by the method " + NameOf(method) + " cannot be held");
}

// The value of the shift parameter of that EPSG code and, in `unit`, its unit.
std::string ShiftValue(const Json& parameters, int code, UnitKind kind,
                       std::optional<UnitModel>* unit) {
  for (const Json& parameter : parameters) {
    if (EpsgIdOf(parameter) == code) return ParameterText(parameter, kind, unit);
  }
  Refuse("the shift has no parameter EPSG:" + std::to_string(code));
}

}  // namespace

DatumShiftModel ShiftFromJson(const Json& transformation) {
  const Json& parameters = transformation.at("parameters");
  DatumShiftModel shift;
  shift.name = NameOf(transformation);
  shift.description = DescriptionOf(transformation);
  shift.type = ShiftTypeOf(transformation.at("method"));
  std::optional<UnitModel> linear, angular, scale;
  shift.tx = ShiftValue(parameters, 8605, UnitKind::kLinear, &linear);
  shift.ty = ShiftValue(parameters, 8606, UnitKind::kLinear, &linear);
  shift.tz = ShiftValue(parameters, 8607, UnitKind::kLinear, &linear);
  shift.linearUnit = *linear;
  if (shift.type == 1) return shift;
  shift.rx = ShiftValue(parameters, 8608, UnitKind::kAngular, &angular);
  shift.ry = ShiftValue(parameters, 8609, UnitKind::kAngular, &angular);
  shift.rz = ShiftValue(parameters, 8610, UnitKind::kAngular, &angular);
  shift.s = ShiftValue(parameters, 8611, UnitKind::kScale, &scale);
  shift.angularUnit = *angular;
  shift.scaleUnit = *scale;
  return shift;
}

SystemModel ModelFromSystemJson(const Json& system) {
  const std::string type = TextOf(system, "type");
  if (type == "ProjectedCRS") return ProjectedFromJson(system);
  if (type == "GeographicCRS") return GeodeticFromJson(system);
  if (type == "GeodeticCRS") return GeocentricFromJson(system);
  Refuse("a system of the type " + type + " cannot be held");
}

}  // namespace QvRefSystem
