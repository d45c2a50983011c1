#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "platform/geocore/system_model.h"

/// Reads models out of PROJJSON as PROJ itself writes it, for the bridge alone.
namespace QvRefSystem {

/// Why a system cannot be held as a model.
class BridgeRefusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The model of a geographic, geocentric or projected system, without shifts: a datum of the
/// registry comes with its own, any other one with a null shift. Throws BridgeRefusal for what the
/// model cannot hold, and nlohmann::json::exception for what is no PROJJSON.
[[nodiscard]] SystemModel ModelFromSystemJson(const nlohmann::json& system);
/// The shift of a transformation to WGS 84 by three or seven parameters. Throws as above.
[[nodiscard]] DatumShiftModel ShiftFromJson(const nlohmann::json& transformation);

}  // namespace QvRefSystem
