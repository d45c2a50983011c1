#pragma once

#include <string>

#include "platform/geocore/system_model.h"

namespace QvRefSystem {

/// Makes the model of a live EPSG projected, geographic or geocentric system from the registry, as
/// the delivered database holds it. False, with `model` unchanged and `error` set, for any other
/// code.
[[nodiscard]] bool ModelFromEpsg(int code, SystemModel* model, std::string* error);

}  // namespace QvRefSystem
