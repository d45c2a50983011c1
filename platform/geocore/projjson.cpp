#include "platform/geocore/projjson.h"

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <numbers>
#include <span>
#include <stdexcept>

#include "platform/geocore/model_from_tree.h"
#include "platform/geocore/polar_axes.h"
#include "platform/geocore/projection_methods.h"
#include "platform/geocore/wgs84.h"
#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

using Json = nlohmann::ordered_json;

// Why a model cannot be told in PROJJSON; caught where the model came in.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

double Number(const std::string& text, const std::string& what) {
  double value = 0;
  if (!QvPlatform::TextToDouble(text, &value)) {
    throw Refusal(what + " is not a number: \"" + text + "\"");
  }
  return value;
}

Json Id(int epsgCode) {
  return {{"authority", "EPSG"}, {"code", epsgCode}};
}

double FactorOf(const UnitModel& unit) {
  if (!(unit.factorB > 0) || !(unit.factorC > 0)) {
    throw Refusal("the factors of the unit " + unit.name + " are not positive");
  }
  return unit.factorB / unit.factorC;
}

// PROJJSON's own word for metre, degree and unity; null for any other unit. Factors decide, not
// codes: a unit that was edited may still bear its old code.
const char* WordFor(double factor, UnitKind kind) {
  constexpr double kDegree = std::numbers::pi / 180;
  switch (kind) {
    case UnitKind::kLinear:
      return factor == 1 ? "metre" : nullptr;
    case UnitKind::kAngular:
      return std::abs(factor / kDegree - 1) < 1e-14 ? "degree" : nullptr;
    case UnitKind::kScale:
      return factor == 1 ? "unity" : nullptr;
  }
  return nullptr;
}

Json UnitJson(const UnitModel& unit, UnitKind kind) {
  const double factor = FactorOf(unit);
  if (const char* word = WordFor(factor, kind)) return word;
  const char* type = kind == UnitKind::kLinear    ? "LinearUnit"
                     : kind == UnitKind::kAngular ? "AngularUnit"
                                                  : "ScaleUnit";
  return {{"type", type},
          {"name", unit.name.empty() ? "unnamed" : unit.name},
          {"conversion_factor", factor}};
}

// A number alone counts in PROJJSON's default unit of its kind, metre or degree.
Json Measure(const std::string& text, const UnitModel& unit, UnitKind kind,
             const std::string& what) {
  const double value = Number(text, what);
  if (WordFor(FactorOf(unit), kind)) return value;
  return {{"value", value}, {"unit", UnitJson(unit, kind)}};
}

Json EllipsoidJson(const EllipsoidModel& ellipsoid) {
  Json json{{"name", ellipsoid.name}};
  const auto axis = [&](const std::string& text, const std::string& what) {
    if (!(Number(text, what + " of " + ellipsoid.name) > 0)) {
      throw Refusal(what + " of " + ellipsoid.name + " is not positive");
    }
    return Measure(text, ellipsoid.unit, UnitKind::kLinear, what);
  };
  if (ellipsoid.sphere || (ellipsoid.useF && ellipsoid.f == 0)) {
    json["radius"] = axis(ellipsoid.a, "the semi-major axis");
    return json;
  }
  json["semi_major_axis"] = axis(ellipsoid.a, "the semi-major axis");
  if (!ellipsoid.useF) {
    json["semi_minor_axis"] = axis(ellipsoid.b, "the semi-minor axis");
    return json;
  }
  if (!(ellipsoid.f > 0 && ellipsoid.f < 1)) {
    throw Refusal("the flattening of " + ellipsoid.name + " is not between 0 and 1");
  }
  json["inverse_flattening"] = InverseFlattening(ellipsoid.f);
  return json;
}

Json PrimeMeridianJson(const PrimeMeridianModel& meridian) {
  return {{"name", meridian.name},
          {"longitude", Measure(meridian.longitude, meridian.unit, UnitKind::kAngular,
                                "the longitude of the prime meridian " + meridian.name)}};
}

Json DatumJson(const SystemModel& system) {
  const EllipsoidModel* ellipsoid = system.datum       ? &system.datum->ellipsoid
                                    : system.ellipsoid ? &*system.ellipsoid
                                                       : nullptr;
  if (!ellipsoid) throw Refusal(system.name + " has neither a datum nor an ellipsoid");
  const std::string name = system.datum ? DatumNameWithoutEnsemble(system.datum->name)
                                        : "Unknown based on " + ellipsoid->name + " ellipsoid";
  return {{"type", "GeodeticReferenceFrame"},
          {"name", name},
          {"ellipsoid", EllipsoidJson(*ellipsoid)},
          {"prime_meridian", PrimeMeridianJson(system.primeMeridian)}};
}

Json AxisJson(const char* name, const std::string& abbreviation, const char* direction,
              const Json& unit) {
  return {{"name", name}, {"abbreviation", abbreviation}, {"direction", direction}, {"unit", unit}};
}

Json HeightAxis(const UnitModel& unit) {
  return AxisJson("Ellipsoidal height", "h", "up", UnitJson(unit, UnitKind::kLinear));
}

Json GeographicAxes(const UnitModel& angular, const UnitModel& linear, Dimension dimension) {
  const Json unit = UnitJson(angular, UnitKind::kAngular);
  Json axes{AxisJson("Geodetic latitude", "Lat", "north", unit),
            AxisJson("Geodetic longitude", "Lon", "east", unit)};
  if (dimension == Dimension::kThree) axes.push_back(HeightAxis(linear));
  return {{"subtype", "ellipsoidal"}, {"axis", axes}};
}

Json GeodeticJson(const SystemModel& system, Dimension dimension) {
  return {{"type", "GeographicCRS"},
          {"name", system.name},
          {"datum", DatumJson(system)},
          {"coordinate_system", GeographicAxes(system.angularUnit, system.linearUnit, dimension)}};
}

Json GeocentricAxes(const UnitModel& linear) {
  const Json unit = UnitJson(linear, UnitKind::kLinear);
  Json axes{AxisJson("Geocentric X", "X", "geocentricX", unit),
            AxisJson("Geocentric Y", "Y", "geocentricY", unit),
            AxisJson("Geocentric Z", "Z", "geocentricZ", unit)};
  return {{"subtype", "Cartesian"}, {"axis", axes}};
}

Json GeocentricJson(const SystemModel& system) {
  return {{"type", "GeodeticCRS"},
          {"name", system.name},
          {"datum", DatumJson(system)},
          {"coordinate_system", GeocentricAxes(system.linearUnit)}};
}

const UnitModel& ParameterUnit(const ProjectionModel& projection, UnitKind kind) {
  const auto& unit = kind == UnitKind::kLinear    ? projection.linearUnit
                     : kind == UnitKind::kAngular ? projection.angularUnit
                                                  : projection.scaleUnit;
  if (!unit) {
    const char* word = kind == UnitKind::kLinear    ? "linear"
                       : kind == UnitKind::kAngular ? "angular"
                                                    : "scale";
    throw Refusal("the projection " + projection.name + " has no " + word + " unit");
  }
  return *unit;
}

const std::string& ParameterValue(const ProjectionModel& projection,
                                  const ProjectionParameter& parameter) {
  for (const ProjectionParameterModel& candidate : projection.parameters) {
    if (candidate.code == parameter.code) return candidate.value;
  }
  throw Refusal("the projection " + projection.name + " has no " + std::string(parameter.name));
}

const ProjectionMethod& MethodOf(const ProjectionModel& projection) {
  const ProjectionMethod* method = FindProjectionMethod(projection.method);
  if (!method) {
    throw Refusal("the method " + std::to_string(projection.method) + " of the projection " +
                  projection.name + " is not known");
  }
  return *method;
}

Json ConversionJson(const ProjectionModel& projection) {
  const ProjectionMethod& method = MethodOf(projection);
  Json parameters = Json::array();
  for (const int code : method.parameters) {
    const ProjectionParameter& parameter = *FindProjectionParameter(code);
    parameters.push_back(
        {{"name", parameter.name},
         {"value", Number(ParameterValue(projection, parameter),
                          std::string(parameter.name) + " of " + projection.name)},
         {"unit", UnitJson(ParameterUnit(projection, parameter.unit), parameter.unit)},
         {"id", Id(code)}});
  }
  return {{"name", projection.name},
          {"method", {{"name", method.name}, {"id", Id(method.code)}}},
          {"parameters", parameters}};
}

struct PlaneDirection {
  // PROJ tells swapped polar axes by these full names.
  const char* name;
  const char* direction;
};

PlaneDirection DirectionOf(bool northing, int sign) {
  if (northing)
    return sign > 0 ? PlaneDirection{"Northing", "north"} : PlaneDirection{"Southing", "south"};
  return sign > 0 ? PlaneDirection{"Easting", "east"} : PlaneDirection{"Westing", "west"};
}

Json PlaneAxis(const SystemModel& system, int i, const std::optional<PolarAspect>& pole,
               const Json& unit) {
  const ProjectionModel& projection = *system.projection;
  const bool northing = projection.swap == (i == 0);
  const PlaneDirection direction = DirectionOf(northing, projection.axisSign[i]);
  const std::string& abbreviation = system.axisAbbreviation[i].empty()
                                        ? projection.axisAbbreviation[i]
                                        : system.axisAbbreviation[i];
  Json axis = AxisJson(direction.name, abbreviation, direction.direction, unit);
  if (pole) {
    axis["direction"] = pole->northPole ? "south" : "north";
    axis["meridian"] = {{"longitude", pole->MeridianOf(northing, projection.axisSign[i])}};
  }
  return axis;
}

UnitModel Degree() {
  UnitModel degree;
  degree.factorB = std::numbers::pi;
  degree.factorC = 180;
  return degree;
}

// The one method whose plane has ellipsoidal heights as its third axis.
constexpr int kTransverseMercator3D = 1111;

Json BaseJson(const SystemModel& system, Dimension dimension) {
  const SystemModel& base = system.primary ? *system.primary : system;
  if (base.kind != SystemKind::kGeodetic && system.primary) {
    throw Refusal("the primary system " + base.name + " of " + system.name + " is not geodetic");
  }
  const std::string name = system.primary ? base.name
                           : system.datum ? DatumNameWithoutEnsemble(system.datum->name)
                                          : system.name;
  return {{"type", "GeographicCRS"},
          {"name", name},
          {"datum", DatumJson(base)},
          {"coordinate_system", GeographicAxes(system.primary ? base.angularUnit : Degree(),
                                               system.linearUnit, dimension)}};
}

Json ProjectedJson(const SystemModel& system) {
  if (!system.projection) throw Refusal(system.name + " has no map projection");
  const bool threeAxes = system.projection->method == kTransverseMercator3D;
  const auto pole = PolarAspectOf(*system.projection);
  const Json unit = UnitJson(system.linearUnit, UnitKind::kLinear);
  Json axes{PlaneAxis(system, 0, pole, unit), PlaneAxis(system, 1, pole, unit)};
  if (threeAxes) axes.push_back(HeightAxis(system.linearUnit));
  return {{"type", "ProjectedCRS"},
          {"name", system.name},
          {"base_crs", BaseJson(system, threeAxes ? Dimension::kThree : Dimension::kTwo)},
          {"conversion", ConversionJson(*system.projection)},
          {"coordinate_system", {{"subtype", "Cartesian"}, {"axis", axes}}}};
}

Json SystemJson(const SystemModel& system, Dimension dimension) {
  switch (system.kind) {
    case SystemKind::kGeocentric:
      return GeocentricJson(system);
    case SystemKind::kGeodetic:
      return GeodeticJson(system, dimension);
    case SystemKind::kProjected:
      return ProjectedJson(system);
    case SystemKind::kLocalCartesian:
    case SystemKind::kLocal:
    case SystemKind::kTopocentric:
      break;
  }
  throw Refusal(system.name + " is neither geocentric nor geodetic nor projected");
}

struct ShiftParameter {
  int code;
  const char* name;
  const std::string DatumShiftModel::*value;
  UnitKind kind;
};

// EPSG Dataset v10.076, parameters of the geocentric transformation methods.
constexpr ShiftParameter kShiftParameters[] = {
    {8605, "X-axis translation", &DatumShiftModel::tx, UnitKind::kLinear},
    {8606, "Y-axis translation", &DatumShiftModel::ty, UnitKind::kLinear},
    {8607, "Z-axis translation", &DatumShiftModel::tz, UnitKind::kLinear},
    {8608, "X-axis rotation", &DatumShiftModel::rx, UnitKind::kAngular},
    {8609, "Y-axis rotation", &DatumShiftModel::ry, UnitKind::kAngular},
    {8610, "Z-axis rotation", &DatumShiftModel::rz, UnitKind::kAngular},
    {8611, "Scale difference", &DatumShiftModel::s, UnitKind::kScale},
};

struct ShiftMethod {
  int code;
  const char* name;
};

// EPSG methods by type of shift (1, 2, 3) and domain (geographic 2D, geographic 3D, geocentric).
constexpr ShiftMethod kShiftMethods[3][3] = {
    {{9603, "Geocentric translations (geog2D domain)"},
     {1035, "Geocentric translations (geog3D domain)"},
     {1031, "Geocentric translations (geocentric domain)"}},
    {{9606, "Position Vector transformation (geog2D domain)"},
     {1037, "Position Vector transformation (geog3D domain)"},
     {1033, "Position Vector transformation (geocentric domain)"}},
    {{9607, "Coordinate Frame rotation (geog2D domain)"},
     {1038, "Coordinate Frame rotation (geog3D domain)"},
     {1032, "Coordinate Frame rotation (geocentric domain)"}},
};

Json ShiftJson(const DatumShiftModel& shift, int domain) {
  if (shift.type < 1 || shift.type > 3) throw Refusal("the type of the datum shift is not known");
  const ShiftMethod& method = kShiftMethods[shift.type - 1][domain];
  const std::size_t count = shift.type == 1 ? 3 : std::size(kShiftParameters);
  Json parameters = Json::array();
  for (const ShiftParameter& parameter : std::span(kShiftParameters).first(count)) {
    const UnitModel& unit = parameter.kind == UnitKind::kLinear    ? shift.linearUnit
                            : parameter.kind == UnitKind::kAngular ? shift.angularUnit
                                                                   : shift.scaleUnit;
    parameters.push_back({{"name", parameter.name},
                          {"value", Number(shift.*parameter.value,
                                           std::string(parameter.name) + " of " + shift.name)},
                          {"unit", UnitJson(unit, parameter.kind)},
                          {"id", Id(parameter.code)}});
  }
  return {{"name", shift.name.empty() ? "datum shift" : shift.name},
          {"method", {{"name", method.name}, {"id", Id(method.code)}}},
          {"parameters", parameters}};
}

Json Wgs84Json(bool geocentric, Dimension dimension) {
  const UnitModel metre;
  const Json ellipsoid{{"name", Wgs84::kName},
                       {"semi_major_axis", Wgs84::kSemiMajorAxis},
                       {"inverse_flattening", Wgs84::kInverseFlattening}};
  return {
      {"type", geocentric ? "GeodeticCRS" : "GeographicCRS"},
      {"name", Wgs84::kName},
      {"datum",
       {{"type", "GeodeticReferenceFrame"}, {"name", Wgs84::kDatumName}, {"ellipsoid", ellipsoid}}},
      {"coordinate_system",
       geocentric ? GeocentricAxes(metre) : GeographicAxes(Degree(), metre, dimension)}};
}

Json BoundJson(SystemModel system, Dimension dimension, std::string_view datumName) {
  if (!system.datum) throw Refusal(system.name + " has no datum, and so no shift to WGS 84");
  const DatumShiftModel shift = system.datum->shift;
  if (!datumName.empty()) {
    system.datum->name = datumName;
    if (system.primary) {
      system.primary = std::make_shared<SystemModel>(*system.primary);
      system.primary->datum = system.datum;
    }
  }
  const bool geocentric = system.kind == SystemKind::kGeocentric;
  const bool plane = system.kind == SystemKind::kProjected || dimension == Dimension::kTwo;
  return {{"type", "BoundCRS"},
          {"source_crs", SystemJson(system, dimension)},
          {"target_crs", Wgs84Json(geocentric, plane ? Dimension::kTwo : Dimension::kThree)},
          {"transformation", ShiftJson(shift, geocentric ? 2
                                              : plane    ? 0
                                                         : 1)}};
}

template <typename Make>
bool WriteJson(Make make, std::string* json, std::string* error) {
  try {
    Json made = make();
    made["$schema"] = "https://proj.org/schemas/v0.5/projjson.schema.json";
    // Names come from users: what is no UTF-8 must not end the call.
    *json = made.dump(2, ' ', false, Json::error_handler_t::replace);
    return true;
  } catch (const Refusal& refusal) {
    *error = refusal.what();
    return false;
  }
}

}  // namespace

double InverseFlattening(double flattening) {
  if (flattening == 0) return 0;
  // 1 / (1 / x) may miss x by a last place or two; the number that was entered is the one nearby
  // with the shortest text.
  constexpr int kPlaces = 2;
  double candidate = 1 / flattening;
  double best = candidate;
  std::size_t bestSize = std::numeric_limits<std::size_t>::max();
  for (int i = 0; i < kPlaces; ++i)
    candidate = std::nextafter(candidate, 0.0);
  for (int i = 0; i <= 2 * kPlaces; ++i) {
    const std::size_t size = QvPlatform::DoubleToText(candidate).size();
    if (1 / candidate == flattening && size < bestSize) {
      best = candidate;
      bestSize = size;
    }
    candidate = std::nextafter(candidate, std::numeric_limits<double>::infinity());
  }
  return best;
}

std::string DatumNameWithoutEnsemble(std::string_view name) {
  constexpr std::string_view kEnsemble = " ensemble";
  if (name.ends_with(kEnsemble)) name.remove_suffix(kEnsemble.size());
  return std::string(name);
}

bool ModelToProjJson(const SystemModel& model, Dimension dimension, std::string* json,
                     std::string* error) {
  return WriteJson([&] { return SystemJson(model, dimension); }, json, error);
}

bool ModelToBoundProjJson(const SystemModel& model, Dimension dimension, std::string_view datumName,
                          std::string* json, std::string* error) {
  return WriteJson([&] { return BoundJson(model, dimension, datumName); }, json, error);
}

bool TreeToProjJson(const QvCommonUtils::TStringTree* tree, Dimension dimension, std::string* json,
                    std::string* error) {
  SystemModel model;
  return ModelFromTree(tree, &model, error) && ModelToProjJson(model, dimension, json, error);
}

}  // namespace QvRefSystem
