#pragma once

#include <memory>

#include "platform/geocore/shell_definition.h"

namespace QvRefSystem {

/// Makes a model ready for computations. `table` is the one of a height system of kind 1; of a
/// topocentric system, that of its primary. Throws GeodesyError, with words for the user, for a
/// model that cannot be computed, and std::bad_optional_access for a local system without an
/// ellipsoid, which no tree makes.
[[nodiscard]] std::shared_ptr<const ShellDefinition> DefinitionFromModel(
    SystemModel model, std::shared_ptr<const THeightTable> table = nullptr);

}  // namespace QvRefSystem
