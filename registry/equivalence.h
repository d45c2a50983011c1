#pragma once

#include <string>

namespace QvRefSystem {

/// Whether PROJ takes a system (PROJJSON, WKT or another definition) for the same as the EPSG
/// system of that code: same datum, ellipsoid, meridian, projection, units and axes, the order of
/// latitude and longitude aside. `why` gets the reason of a "no".
[[nodiscard]] bool EquivalentToEpsg(const std::string& definition, int code, std::string* why);

}  // namespace QvRefSystem
