#include "registry/projjson_units.h"

#include "platform/text/text.h"
#include "registry/registry_units.h"

namespace QvRefSystem {
namespace {

constexpr int kMetre = 9001;
constexpr int kDegree = 9102;
constexpr int kUnity = 9201;

const UnitModel& DefaultUnit(UnitKind kind) {
  const int code = kind == UnitKind::kLinear    ? kMetre
                   : kind == UnitKind::kAngular ? kDegree
                                                : kUnity;
  return *FindRegistryUnit(code);
}

}  // namespace

UnitModel UnitFromJson(const nlohmann::json& holder, UnitKind kind) {
  const auto unit = holder.find("unit");
  // A unit that is a word alone is the default of its kind.
  if (unit == holder.end() || unit->is_string()) return DefaultUnit(kind);
  const double factor = unit->at("conversion_factor").get<double>();
  if (const UnitModel* known = FindRegistryUnitByFactor(kind, factor)) return *known;
  return MakeUserUnit(unit->at("name").get<std::string>(), factor);
}

JsonMeasure MeasureFromJson(const nlohmann::json& measure, UnitKind kind) {
  if (measure.is_number()) return {measure.get<double>(), DefaultUnit(kind)};
  return {measure.at("value").get<double>(), UnitFromJson(measure, kind)};
}

int EpsgIdOf(const nlohmann::json& object) {
  const auto id = object.find("id");
  if (id == object.end() || id->at("authority") != "EPSG") return 0;
  const nlohmann::json& code = id->at("code");
  int number = 0;
  if (code.is_number_integer()) return code.get<int>();
  return code.is_string() && QvPlatform::TextToInteger(code.get<std::string>(), &number) ? number
                                                                                         : 0;
}

}  // namespace QvRefSystem
