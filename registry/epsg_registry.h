#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/geocore/system_model.h"
#include "platform/ui/user_interface.h"

/// The delivered database: PROJ's EPSG data set as rows of our tables.
namespace QvRefSystem {

/// How the delivered database is kept.
struct RegistryOptions {
  /// True: `path` names a container; false: a folder.
  bool resourceForm = false;
  /// True: the types that come with a database, and none of the registry's objects.
  bool empty = false;
};

/// A system of the registry that did not get in.
struct RegistryRefusal {
  /// EPSG code of the system.
  int code = 0;
  /// Name of the system in the registry.
  std::string name;
  /// Why it did not get in, as a text for users.
  std::string reason;
};

/// What became of the systems of the registry.
struct RegistryReport {
  /// Number of the systems that are in.
  int systems = 0;
  /// Live systems of the registry that did not get in, each with the reason.
  std::vector<RegistryRefusal> refused;
};

/// Makes a new database at `path` (which must not hold one yet) and fills it with every live EPSG
/// projected, geographic and geocentric system and all that they are built from, or leaves it
/// without objects. Takes less than a minute. False, with `error` set and nothing half-made left
/// behind, if it cannot be made.
[[nodiscard]] bool BuildRegistryDatabase(const std::string& path, const RegistryOptions& options,
                                         QvPlatform::TUserInterface& ui, RegistryReport* report,
                                         std::string* error);

}  // namespace QvRefSystem
