#include "platform/geocore/wkt2.h"

#include <nlohmann/json.hpp>

#include "platform/geocore/model_from_tree.h"
#include "platform/geocore/proj_handles.h"

namespace QvRefSystem {
namespace {

// A record keeps its code when it is edited; WKT bears the code only where the definition is
// still the registry's.
void AddConfirmedCode(int code, ProjObject* system, const std::string& json) {
  const ProjObject known = code == 0 ? nullptr : CreateEpsgSystem(code);
  if (!known || !proj_is_equivalent_to_with_ctx(ThreadProjContext(), system->get(), known.get(),
                                                PJ_COMP_EQUIVALENT_EXCEPT_AXIS_ORDER_GEOGCRS)) {
    return;
  }
  auto withCode = nlohmann::ordered_json::parse(json);
  withCode["id"] = {{"authority", "EPSG"}, {"code", code}};
  if (ProjObject made = CreateProjObject(withCode.dump(), nullptr)) *system = std::move(made);
}

}  // namespace

bool TreeToWkt2(const QvCommonUtils::TStringTree* tree, Dimension dimension, std::string* wkt,
                std::string* error) {
  SystemModel model;
  std::string json;
  if (!ModelFromTree(tree, &model, error) || !ModelToProjJson(model, dimension, &json, error)) {
    return false;
  }
  ProjObject system = CreateProjObject(json, error);
  if (!system) return false;
  AddConfirmedCode(model.geoTiffCode, &system, json);
  constexpr const char* kOptions[] = {"MULTILINE=YES", nullptr};
  const char* text = proj_as_wkt(ThreadProjContext(), system.get(), PJ_WKT2_2019, kOptions);
  if (!text) {
    *error = TakeProjMessage();
    return false;
  }
  *wkt = text;
  return true;
}

}  // namespace QvRefSystem
