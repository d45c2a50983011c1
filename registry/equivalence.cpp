#include "registry/equivalence.h"

#include "platform/geocore/proj_handles.h"

namespace QvRefSystem {

bool EquivalentToEpsg(const std::string& definition, int code, std::string* why) {
  const ProjObject known = CreateEpsgSystem(code);
  if (!known) {
    *why = "EPSG:" + std::to_string(code) + " is not in PROJ's database";
    return false;
  }
  const ProjObject system = CreateProjObject(definition, why);
  if (!system) return false;
  if (!proj_is_equivalent_to_with_ctx(ThreadProjContext(), system.get(), known.get(),
                                      PJ_COMP_EQUIVALENT_EXCEPT_AXIS_ORDER_GEOGCRS)) {
    *why = "PROJ finds it different from EPSG:" + std::to_string(code) + " (" +
           proj_get_name(known.get()) + ")";
    return false;
  }
  return true;
}

}  // namespace QvRefSystem
