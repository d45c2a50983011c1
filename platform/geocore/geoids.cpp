#include "platform/geocore/geoids.h"

#include <charconv>
#include <mutex>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "platform/geocore/proj_handles.h"

namespace QvRefSystem {
namespace {

// EPSG methods whose result is the height over a geoid; what follows is the form of the grid.
constexpr std::string_view kGeoidMethods = "Geographic3D to GravityRelatedHeight";

using Geoids = std::map<int, SystemGeoid>;
// Source and target systems that were asked for already: most pairs have several operations.
using Pairs = std::set<std::pair<int, int>>;

int EpsgCode(const PJ* object) {
  const char* text = object ? proj_get_id_code(object, 0) : nullptr;
  int code = 0;
  if (text) std::from_chars(text, text + std::string_view(text).size(), code);
  return code;
}

bool IsGeoidOperation(PJ_CONTEXT* context, const PJ* operation) {
  const char* method = nullptr;
  return proj_coordoperation_get_method_info(context, operation, &method, nullptr, nullptr) &&
         std::string_view(method).starts_with(kGeoidMethods);
}

// The best single operation between the two systems whose grid is on this machine.
std::optional<SystemGeoid> FindGrid(PJ_CONTEXT* context, const PJ* source, const PJ* target) {
  const ProjFactory factory(proj_create_operation_factory_context(context, "EPSG"));
  proj_operation_factory_context_set_allow_use_intermediate_crs(context, factory.get(),
                                                                PROJ_INTERMEDIATE_CRS_USE_NEVER);
  proj_operation_factory_context_set_allow_ballpark_transformations(context, factory.get(), 0);
  proj_operation_factory_context_set_spatial_criterion(context, factory.get(),
                                                       PROJ_SPATIAL_CRITERION_PARTIAL_INTERSECTION);
  proj_operation_factory_context_set_grid_availability_use(
      context, factory.get(), PROJ_GRID_AVAILABILITY_DISCARD_OPERATION_IF_MISSING_GRID);
  const ProjList found(proj_create_operations(context, source, target, factory.get()));
  const int count = found ? proj_list_get_count(found.get()) : 0;
  for (int i = 0; i < count; ++i) {
    const ProjObject operation(proj_list_get(context, found.get(), i));
    const char* grid = nullptr;
    if (proj_get_type(operation.get()) == PJ_TYPE_TRANSFORMATION &&
        proj_coordoperation_get_grid_used_count(context, operation.get()) == 1 &&
        proj_coordoperation_is_instantiable(context, operation.get()) &&
        proj_coordoperation_get_grid_used(context, operation.get(), 0, &grid, nullptr, nullptr,
                                          nullptr, nullptr, nullptr, nullptr)) {
      return SystemGeoid{EpsgCode(target), proj_get_name(target), grid, EpsgCode(source)};
    }
  }
  return std::nullopt;
}

void AddGeoid(PJ_CONTEXT* context, const char* operationCode, Pairs* asked, Geoids* geoids) {
  const ProjObject operation(proj_create_from_database(
      context, "EPSG", operationCode, PJ_CATEGORY_COORDINATE_OPERATION, 0, nullptr));
  if (!operation || !IsGeoidOperation(context, operation.get())) return;
  const ProjObject source(proj_get_source_crs(context, operation.get()));
  const ProjObject target(proj_get_target_crs(context, operation.get()));
  if (proj_get_type(source.get()) != PJ_TYPE_GEOGRAPHIC_3D_CRS ||
      proj_get_type(target.get()) != PJ_TYPE_VERTICAL_CRS || proj_is_deprecated(target.get()) ||
      geoids->contains(EpsgCode(target.get())) ||
      !asked->emplace(EpsgCode(source.get()), EpsgCode(target.get())).second) {
    return;
  }
  if (auto geoid = FindGrid(context, source.get(), target.get())) {
    geoids->emplace(geoid->code, std::move(*geoid));
  }
}

Geoids ListGeoids() {
  Geoids geoids;
  Pairs asked;
  PJ_CONTEXT* context = ThreadProjContext();
  const ProjStrings codes(proj_get_codes_from_database(context, "EPSG", PJ_TYPE_TRANSFORMATION, 0));
  for (char** code = codes.get(); code && *code; ++code)
    AddGeoid(context, *code, &asked, &geoids);
  return geoids;
}

std::optional<SystemGeoid> FindOverWgs84(int code) {
  constexpr int kWgs84Geographic3D = 4979;
  const ProjObject source = CreateEpsgSystem(kWgs84Geographic3D);
  const ProjObject target = CreateEpsgSystem(code);
  if (!source || !target || proj_get_type(target.get()) != PJ_TYPE_VERTICAL_CRS ||
      proj_is_deprecated(target.get())) {
    return std::nullopt;
  }
  return FindGrid(ThreadProjContext(), source.get(), target.get());
}

const Geoids& SystemGeoids() {
  static const Geoids geoids = ListGeoids();
  return geoids;
}

}  // namespace

const SystemGeoid* FindSystemGeoid(int code) {
  // One geoid is found in milliseconds if it counts over WGS 84; the list takes most of a second.
  static std::mutex mutex;
  static Geoids single;
  const std::lock_guard lock(mutex);
  if (const auto found = single.find(code); found != single.end()) return &found->second;
  if (auto geoid = FindOverWgs84(code))
    return &single.emplace(code, std::move(*geoid)).first->second;
  const auto found = SystemGeoids().find(code);
  return found == SystemGeoids().end() ? nullptr : &found->second;
}

bool GetSystemGeoidName(int code, std::string* name) {
  const SystemGeoid* geoid = FindSystemGeoid(code);
  if (geoid) *name = geoid->name;
  return geoid != nullptr;
}

bool GetSystemGeoidsList(std::map<int, std::string>* list) {
  list->clear();
  for (const auto& [code, geoid] : SystemGeoids())
    list->emplace(code, geoid.name);
  return !list->empty();
}

}  // namespace QvRefSystem
