#include "registry/legacy_bridge.h"

#include <array>
#include <cmath>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "platform/geocore/projection_methods.h"
#include "platform/geocore/wgs84.h"
#include "registry/delivered_types.h"
#include "registry/model_tree.h"
#include "registry/proj_bridge.h"

namespace QvRefSystem {

using Json = nlohmann::ordered_json;
using QvPlatform::LegacyParameter;
using QvPlatform::SQvCTUI_ProjectionInfo1;

namespace {

constexpr int kLongitudeOfOrigin = 8802;
constexpr int kFalseEasting = 8806;
constexpr double kMetresInAZone = 1e6;

Json Id(int code) {
  return {{"authority", "EPSG"}, {"code", code}};
}

Json LengthUnit(const SQvCTUI_ProjectionInfo1& info) {
  return {{"type", "LinearUnit"},
          {"name", info.UnitName.empty() ? "unit" : info.UnitName},
          {"conversion_factor", info.UnitFactor}};
}

Json Axis(const char* name, const char* abbreviation, const char* direction, const Json& unit) {
  return {{"name", name}, {"abbreviation", abbreviation}, {"direction", direction}, {"unit", unit}};
}

// The axes of a plane or of a geographic system, in the order of the record.
Json System(const char* subtype, Json east, Json north, bool northFirst) {
  Json axes = northFirst ? Json::array({std::move(north), std::move(east)})
                         : Json::array({std::move(east), std::move(north)});
  return {{"subtype", subtype}, {"axis", std::move(axes)}};
}

// Without a name only the ellipsoid is known, which PROJ says in these words.
Json Datum(const SQvCTUI_ProjectionInfo1& info) {
  const std::string ellipsoid = info.EllipsoidName.empty() ? "unnamed" : info.EllipsoidName;
  const bool sphere = info.InverseFlattening == 0;
  Json shape = {{"name", ellipsoid}};
  shape[sphere ? "radius" : "semi_major_axis"] = info.SemiMajorAxis;
  if (!sphere) shape["inverse_flattening"] = info.InverseFlattening;
  Json datum = {{"type", "GeodeticReferenceFrame"},
                {"name", info.DatumName.empty() ? "Unknown based on " + ellipsoid + " ellipsoid"
                                                : info.DatumName},
                {"ellipsoid", shape}};
  if (info.MeridianLongitude != 0) {
    datum["prime_meridian"] = {{"name", info.MeridianName.empty() ? "unnamed" : info.MeridianName},
                               {"longitude", info.MeridianLongitude}};
  }
  return datum;
}

Json Geographic(const SQvCTUI_ProjectionInfo1& info, const std::string& name, bool northFirst) {
  return {{"type", "GeographicCRS"},
          {"name", name},
          {"datum", Datum(info)},
          {"coordinate_system",
           System("ellipsoidal", Axis("Geodetic longitude", "Lon", "east", "degree"),
                  Axis("Geodetic latitude", "Lat", "north", "degree"), northFirst)}};
}

Json Geocentric(const SQvCTUI_ProjectionInfo1& info) {
  const Json unit = LengthUnit(info);
  return {{"type", "GeodeticCRS"},
          {"name", info.SystemName},
          {"datum", Datum(info)},
          {"coordinate_system",
           {{"subtype", "Cartesian"},
            {"axis",
             {Axis("Geocentric X", "X", "geocentricX", unit),
              Axis("Geocentric Y", "Y", "geocentricY", unit),
              Axis("Geocentric Z", "Z", "geocentricZ", unit)}}}}};
}

// The value of a parameter, with what the number of the zone adds to it.
double ValueOf(const LegacyParameter& parameter, const SQvCTUI_ProjectionInfo1& info) {
  if (!info.HasZones) return parameter.Value;
  if (parameter.Code == kLongitudeOfOrigin) {
    return std::remainder(parameter.Value + info.Zone * info.ZoneWidth, 360);
  }
  const bool easting = parameter.Code == kFalseEasting;
  return parameter.Value + (easting ? info.Zone * kMetresInAZone / info.UnitFactor : 0);
}

std::optional<Json> Parameter(int code, const SQvCTUI_ProjectionInfo1& info) {
  const ProjectionParameter& wanted = *FindProjectionParameter(code);
  for (const LegacyParameter& parameter : info.Parameters) {
    if (parameter.Code != code) continue;
    Json unit = "unity";
    if (wanted.unit == UnitKind::kAngular) unit = "degree";
    if (wanted.unit == UnitKind::kLinear) unit = LengthUnit(info);
    return Json{{"name", wanted.name},
                {"value", ValueOf(parameter, info)},
                {"unit", unit},
                {"id", Id(code)}};
  }
  return std::nullopt;
}

std::optional<Json> Conversion(const SQvCTUI_ProjectionInfo1& info) {
  const ProjectionMethod* method = FindProjectionMethod(info.Method);
  if (method == nullptr) return std::nullopt;
  Json parameters = Json::array();
  for (const int code : method->parameters) {
    auto parameter = Parameter(code, info);
    if (!parameter) return std::nullopt;
    parameters.push_back(*std::move(parameter));
  }
  return Json{{"name", info.ProjectionName.empty() ? info.SystemName : info.ProjectionName},
              {"method", {{"name", method->name}, {"id", Id(method->code)}}},
              {"parameters", std::move(parameters)}};
}

std::optional<Json> Projected(const SQvCTUI_ProjectionInfo1& info) {
  auto conversion = Conversion(info);
  if (!conversion) return std::nullopt;
  const Json unit = LengthUnit(info);
  const std::string base = info.DatumName.empty() ? info.EllipsoidName : info.DatumName;
  return Json{
      {"type", "ProjectedCRS"},
      {"name", info.SystemName},
      {"base_crs", Geographic(info, base.empty() ? "unnamed" : base, true)},
      {"conversion", *std::move(conversion)},
      {"coordinate_system", System("Cartesian", Axis("Easting", "E", "east", unit),
                                   Axis("Northing", "N", "north", unit), info.NorthingFirst != 0)}};
}

// The system bound to WGS 84 by its own shift.
std::optional<Json> Bound(Json system, const SQvCTUI_ProjectionInfo1& info) {
  const DatumShiftType* type = FindDatumShiftType(info.ShiftType);
  if (type == nullptr) return std::nullopt;
  const Json second = {{"type", "AngularUnit"},
                       {"name", "arc-second"},
                       {"conversion_factor", 4.84813681109535993589914102357e-6}};
  const Json million = {
      {"type", "ScaleUnit"}, {"name", "parts per million"}, {"conversion_factor", 1e-6}};
  const std::array units{Json("metre"), second, million};
  Json parameters = Json::array();
  const std::size_t count = info.ShiftType == 1 ? 3 : 7;
  for (std::size_t i = 0; i < count; ++i) {
    constexpr int kFirstParameter = 8605;
    constexpr const char* kNames[] = {
        "X-axis translation", "Y-axis translation", "Z-axis translation", "X-axis rotation",
        "Y-axis rotation",    "Z-axis rotation",    "Scale difference"};
    parameters.push_back({{"name", kNames[i]},
                          {"value", info.Shift[i]},
                          {"unit", units[i / 3]},
                          {"id", Id(kFirstParameter + static_cast<int>(i))}});
  }
  const std::string from = info.DatumName.empty() ? info.SystemName : info.DatumName;
  SQvCTUI_ProjectionInfo1 wgs84;
  wgs84.DatumName = Wgs84::kDatumName;
  wgs84.EllipsoidName = Wgs84::kName;
  wgs84.SemiMajorAxis = Wgs84::kSemiMajorAxis;
  wgs84.InverseFlattening = Wgs84::kInverseFlattening;
  Json target = Geographic(wgs84, Wgs84::kName, true);
  target["id"] = Id(Wgs84::kGeographic2D);
  return Json{{"type", "BoundCRS"},
              {"source_crs", std::move(system)},
              {"target_crs", std::move(target)},
              {"transformation",
               {{"name", from + " to WGS 84"},
                {"method", {{"name", type->name}, {"id", Id(type->geographicMethod)}}},
                {"parameters", std::move(parameters)}}}};
}

bool HasZone(const SQvCTUI_ProjectionInfo1& info) {
  return info.Projected && info.ZoneWidth > 0 && info.Zone >= 1 &&
         info.Zone * info.ZoneWidth <= 360;
}

bool IsWhole(const SQvCTUI_ProjectionInfo1& info) {
  const int kinds = int{info.Geodetic} + int{info.Projected} + int{info.Geocentric};
  return kinds == 1 && !info.SystemName.empty() && info.UnitFactor > 0 && info.SemiMajorAxis > 0 &&
         (info.InverseFlattening == 0 || info.InverseFlattening > 1) &&
         std::abs(info.MeridianLongitude) <= 180 && (!info.HasZones || HasZone(info));
}

std::optional<Json> SystemOf(const SQvCTUI_ProjectionInfo1& info) {
  if (info.Projected) return Projected(info);
  return info.Geocentric ? Geocentric(info)
                         : Geographic(info, info.SystemName, info.NorthingFirst != 0);
}

}  // namespace

bool FillReferenceSystemTree(const SQvCTUI_ProjectionInfo1* info, QvCommonUtils::TStringTree* tree,
                             double averageX, double averageY, double averageZ) {
  const bool located =
      std::isfinite(averageX) && std::isfinite(averageY) && std::isfinite(averageZ);
  if (info == nullptr || !located || !IsWhole(*info)) return false;
  auto system = SystemOf(*info);
  if (system && info->HasShift) system = Bound(*std::move(system), *info);
  if (!system) return false;
  (*system)["$schema"] = "https://proj.org/schemas/v0.5/projjson.schema.json";
  SystemModel model;
  std::string error;
  if (!ModelFromProjJson(system->dump(), &model, &error)) return false;
  ModelToTree(model, tree);
  return true;
}

}  // namespace QvRefSystem
