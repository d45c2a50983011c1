#pragma once

#include <nlohmann/json.hpp>

#include "platform/geocore/proj_handles.h"

namespace QvRefSystem {

/// The PROJJSON of a system with every number that counts as PROJ holds it: PROJ's own text cuts
/// numbers to 15 digits. Discarded JSON (is_discarded) if PROJ cannot write the system.
[[nodiscard]] nlohmann::json ExactProjJson(const PJ* system);

}  // namespace QvRefSystem
