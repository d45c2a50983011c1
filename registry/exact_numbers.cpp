#include "registry/exact_numbers.h"

#include <cmath>

namespace QvRefSystem {
namespace {

using Json = nlohmann::json;

// Puts `exact` in the place of a number of the text; only its last digits may differ, so that a
// number in another unit is never taken.
void Sharpen(double exact, Json* number) {
  constexpr double kCut = 1e-13;
  if (!number->is_number()) return;
  const double cut = number->get<double>();
  if (std::abs(exact - cut) <= kCut * std::abs(cut)) *number = exact;
}

void SharpenMeasure(double exact, Json* holder, const char* key) {
  const auto found = holder->find(key);
  if (found == holder->end()) return;
  Sharpen(exact, found->is_object() ? &found->at("value") : &*found);
}

void SharpenOperation(const PJ* operation, Json* json) {
  PJ_CONTEXT* context = ThreadProjContext();
  Json& parameters = json->at("parameters");
  const int count = proj_coordoperation_get_param_count(context, operation);
  for (int i = 0; i < count && i < static_cast<int>(parameters.size()); ++i) {
    const char* name = nullptr;
    double value = 0;
    if (proj_coordoperation_get_param(context, operation, i, &name, nullptr, nullptr, &value,
                                      nullptr, nullptr, nullptr, nullptr, nullptr, nullptr) &&
        parameters[static_cast<std::size_t>(i)].at("name") == name) {
      SharpenMeasure(value, &parameters[static_cast<std::size_t>(i)], "value");
    }
  }
}

void SharpenDatum(const PJ* system, Json* json) {
  PJ_CONTEXT* context = ThreadProjContext();
  const auto ensemble = json->find("datum_ensemble");
  Json& datum = ensemble == json->end() ? json->at("datum") : *ensemble;
  const ProjObject ellipsoid(proj_get_ellipsoid(context, system));
  double a = 0, b = 0, inverseFlattening = 0;
  int minorIsComputed = 0;
  if (ellipsoid && proj_ellipsoid_get_parameters(context, ellipsoid.get(), &a, &b, &minorIsComputed,
                                                 &inverseFlattening)) {
    Json& shape = datum.at("ellipsoid");
    SharpenMeasure(a, &shape, "radius");
    SharpenMeasure(a, &shape, "semi_major_axis");
    SharpenMeasure(b, &shape, "semi_minor_axis");
    SharpenMeasure(inverseFlattening, &shape, "inverse_flattening");
  }
  const ProjObject meridian(proj_get_prime_meridian(context, system));
  double longitude = 0;
  if (meridian && datum.contains("prime_meridian") &&
      proj_prime_meridian_get_parameters(context, meridian.get(), &longitude, nullptr, nullptr)) {
    SharpenMeasure(longitude, &datum["prime_meridian"], "longitude");
  }
}

void SharpenSystem(const PJ* system, Json* json) {
  PJ_CONTEXT* context = ThreadProjContext();
  if (json->contains("source_crs")) {
    const ProjObject source(proj_get_source_crs(context, system));
    const ProjObject shift(proj_crs_get_coordoperation(context, system));
    if (source) SharpenSystem(source.get(), &json->at("source_crs"));
    if (shift) SharpenOperation(shift.get(), &json->at("transformation"));
  } else if (json->contains("base_crs")) {
    const ProjObject base(proj_get_source_crs(context, system));
    const ProjObject conversion(proj_crs_get_coordoperation(context, system));
    if (base) SharpenSystem(base.get(), &json->at("base_crs"));
    if (conversion) SharpenOperation(conversion.get(), &json->at("conversion"));
  } else if (json->contains("datum") || json->contains("datum_ensemble")) {
    SharpenDatum(system, json);
  }
}

}  // namespace

Json ExactProjJson(const PJ* system) {
  const char* text = proj_as_projjson(ThreadProjContext(), system, nullptr);
  Json json = text ? Json::parse(text, nullptr, false) : Json(Json::value_t::discarded);
  if (!json.is_discarded()) SharpenSystem(system, &json);
  return json;
}

}  // namespace QvRefSystem
