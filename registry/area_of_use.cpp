#include "registry/area_of_use.h"

#include "platform/geocore/proj_handles.h"

namespace QvRefSystem {

std::optional<AreaOfUse> AreaOfUseOf(int epsgCode) {
  const ProjObject system = CreateEpsgSystem(epsgCode);
  if (!system) return std::nullopt;
  AreaOfUse area;
  const char* name = nullptr;
  const bool known =
      proj_get_area_of_use(ThreadProjContext(), system.get(), &area.box.west, &area.box.south,
                           &area.box.east, &area.box.north, &name) != 0;
  // PROJ tells a bound that it does not know by -1000.
  constexpr double kUnknown = -1000;
  if (!known || area.box.west == kUnknown || area.box.south == kUnknown) return std::nullopt;
  if (name != nullptr) area.name = name;
  return area;
}

}  // namespace QvRefSystem
