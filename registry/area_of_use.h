#pragma once

#include <optional>
#include <string>

#include "registry/proj_database.h"

namespace QvRefSystem {

/// Where a coordinate reference system is meant to be used, as the registry tells it.
struct AreaOfUse {
  /// In the registry's words; may be empty.
  std::string name;
  /// Its limits in degrees on WGS 84.
  EpsgBox box;
};

/// The area of use of the system of that EPSG code, deprecated ones included; none for a code that
/// PROJ's database does not have, or a system without a known area. Takes some milliseconds on the
/// first call of a thread, and well below one later.
[[nodiscard]] std::optional<AreaOfUse> AreaOfUseOf(int epsgCode);

}  // namespace QvRefSystem
