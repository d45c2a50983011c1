#include "platform/geocore/epsg_twins.h"

#include <string_view>

#include "platform/geocore/proj_handles.h"

namespace QvRefSystem {

bool AreEpsgTwins(int code, int other) {
  const ProjObject system = CreateEpsgSystem(code);
  const ProjObject twin = CreateEpsgSystem(other);
  return system && twin &&
         std::string_view(proj_get_name(system.get())) == proj_get_name(twin.get());
}

}  // namespace QvRefSystem
