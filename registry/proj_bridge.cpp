#include "registry/proj_bridge.h"

#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/geocore/geoids.h"
#include "platform/geocore/proj_handles.h"
#include "platform/text/text.h"
#include "registry/epsg_models.h"
#include "registry/exact_numbers.h"
#include "registry/model_tree.h"
#include "registry/projjson_reader.h"
#include "registry/registry_match.h"

namespace QvRefSystem {
namespace {

using Json = nlohmann::json;

bool IsSame(const PJ* system, int code) {
  const ProjObject known = CreateEpsgSystem(code);
  return known && proj_is_equivalent_to_with_ctx(ThreadProjContext(), system, known.get(),
                                                 PJ_COMP_EQUIVALENT_EXCEPT_AXIS_ORDER_GEOGCRS);
}

int EpsgCodeOf(const PJ* system) {
  const char* authority = proj_get_id_auth_name(system, 0);
  const char* text = proj_get_id_code(system, 0);
  int code = 0;
  if (!authority || !text || std::string_view(authority) != "EPSG" ||
      !QvPlatform::TextToInteger(text, &code)) {
    return 0;
  }
  return code;
}

// The registry's own model of a system that it knows by its code or, without one, by its name, if
// the definitions agree. A code on another definition counts for nothing.
std::optional<SystemModel> RegistryModel(const PJ* system) {
  std::vector<int> candidates = SystemsNamed(proj_get_name(system));
  if (const int code = EpsgCodeOf(system); code != 0) candidates = {code};
  SystemModel model;
  std::string ignored;
  for (const int code : candidates) {
    if (IsSame(system, code) && ModelFromEpsg(code, &model, &ignored)) return model;
  }
  return std::nullopt;
}

// A code stays only on the definition that the registry has under it, deprecated ones included.
void ConfirmCode(const PJ* system, SystemModel* model) {
  if (model->geoTiffCode != 0 && IsSame(system, model->geoTiffCode)) return;
  model->geoTiffCode = 0;
  model->abbreviation.clear();
}

// Gives a projected system the registry's base system, if that is what it stands on.
void TakeRegistryBase(const PJ* system, SystemModel* model) {
  const ProjObject base(proj_get_source_crs(ThreadProjContext(), system));
  auto known = base ? RegistryModel(base.get()) : std::nullopt;
  if (!known || known->kind != SystemKind::kGeodetic) {
    if (base) ConfirmCode(base.get(), model->primary.get());
    return;
  }
  model->datum = known->datum;
  model->ellipsoid = known->ellipsoid;
  model->primeMeridian = known->primeMeridian;
  model->primary = std::make_shared<SystemModel>(std::move(*known));
}

SystemModel ModelOfSystem(const PJ* system, const Json& json) {
  if (auto known = RegistryModel(system)) return std::move(*known);
  SystemModel model = ModelFromSystemJson(json);
  ConfirmCode(system, &model);
  if (model.kind == SystemKind::kProjected) TakeRegistryBase(system, &model);
  return model;
}

bool IsWgs84(const PJ* system) {
  constexpr int kForms[] = {4326, 4979, 4978};
  for (const int code : kForms) {
    if (IsSame(system, code)) return true;
  }
  return false;
}

void SetShift(const DatumShiftModel& shift, SystemModel* model) {
  if (!model->datum) {
    // Only the ellipsoid was known, but a shift needs a datum to stand on.
    model->datum.emplace();
    model->datum->name = "Unknown based on " + model->ellipsoid->name + " ellipsoid";
    model->datum->ellipsoid = *model->ellipsoid;
    model->ellipsoid.reset();
  }
  model->datum->shift = shift;
  if (!model->primary) return;
  model->primary = std::make_shared<SystemModel>(*model->primary);
  model->primary->datum = model->datum;
  model->primary->ellipsoid.reset();
}

SystemModel ModelOfBoundSystem(const PJ* bound, const Json& json) {
  PJ_CONTEXT* context = ThreadProjContext();
  const ProjObject target(proj_get_target_crs(context, bound));
  if (!target || !IsWgs84(target.get())) {
    throw BridgeRefusal("only a shift to WGS 84 can be held");
  }
  const ProjObject source(proj_get_source_crs(context, bound));
  const DatumShiftModel shift = ShiftFromJson(json.at("transformation"));
  SystemModel model = ModelOfSystem(source.get(), json.at("source_crs"));
  SetShift(shift, &model);
  return model;
}

SystemModel ModelOfHorizontal(const PJ* system) {
  const Json json = ExactProjJson(system);
  if (json.is_discarded()) {
    throw BridgeRefusal("PROJ cannot tell this system: " + TakeProjMessage());
  }
  return proj_get_type(system) == PJ_TYPE_BOUND_CRS ? ModelOfBoundSystem(system, json)
                                                    : ModelOfSystem(system, json);
}

bool CountsInMetres(const UnitModel& unit) {
  return unit.factorB == unit.factorC;
}

// A horizontal system with the heights of a built-in geoid, which count in metres upwards.
SystemModel ModelOfCompound(const PJ* compound) {
  PJ_CONTEXT* context = ThreadProjContext();
  const ProjObject horizontal(proj_crs_get_sub_crs(context, compound, 0));
  const ProjObject vertical(proj_crs_get_sub_crs(context, compound, 1));
  const int code = vertical ? EpsgCodeOf(vertical.get()) : 0;
  if (!horizontal || code == 0 || !IsSame(vertical.get(), code) || !FindSystemGeoid(code)) {
    throw BridgeRefusal(
        "the heights of this compound system are over no geoid that is built in here; take its "
        "horizontal system alone");
  }
  SystemModel model = ModelOfHorizontal(horizontal.get());
  if (!CountsInMetres(model.linearUnit)) {
    throw BridgeRefusal("heights in metres beside a plane in " + model.linearUnit.name +
                        " cannot be held");
  }
  model.geoidCode = code;
  // The code is that of the horizontal system alone.
  model.geoTiffCode = 0;
  return model;
}

SystemModel ModelOf(const PJ* object) {
  if (!proj_is_crs(object)) throw BridgeRefusal("not a coordinate reference system");
  return proj_get_type(object) == PJ_TYPE_COMPOUND_CRS ? ModelOfCompound(object)
                                                       : ModelOfHorizontal(object);
}

// PROJ takes its strings for systems only if they say so.
std::string AsSystem(const std::string& text) {
  const bool projString =
      text.find("+proj") != std::string::npos && text.find("+type=crs") == std::string::npos &&
      text.find('[') == std::string::npos && text.find('{') == std::string::npos;
  return projString ? text + " +type=crs" : text;
}

}  // namespace

bool ModelFromProjText(const std::string& text, SystemModel* model, std::string* error) {
  const ProjObject object = CreateProjObject(AsSystem(text), error);
  if (!object) return false;
  try {
    *model = ModelOf(object.get());
    return true;
  } catch (const BridgeRefusal& refusal) {
    *error = refusal.what();
  } catch (const Json::exception& unexpected) {
    *error = std::string("unexpected PROJJSON: ") + unexpected.what();
  }
  return false;
}

bool ModelFromProjJson(const std::string& json, SystemModel* model, std::string* error) {
  if (!Json::accept(json)) {
    *error = "not JSON";
    return false;
  }
  return ModelFromProjText(json, model, error);
}

bool TreeFromProjText(const std::string& text, QvCommonUtils::TStringTree* tree,
                      std::string* error) {
  SystemModel model;
  if (!ModelFromProjText(text, &model, error)) return false;
  ModelToTree(model, tree);
  return true;
}

}  // namespace QvRefSystem
