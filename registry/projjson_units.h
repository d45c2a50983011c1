#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "platform/geocore/system_model.h"

namespace QvRefSystem {

/// The unit of a PROJJSON object's "unit" member; the default (metre, degree, unity) without one.
/// A unit of the registry's factor is the registry's; any other is a user's with that factor.
[[nodiscard]] UnitModel UnitFromJson(const nlohmann::json& holder, UnitKind kind);

/// A number with its unit: a plain number in the default unit of its kind, or "value" and "unit".
struct JsonMeasure {
  /// The number, in `unit`.
  double value = 0;
  /// The unit that was named, or the default one of the kind.
  UnitModel unit;
};
/// Reads either form. Throws nlohmann::json::exception for anything else.
[[nodiscard]] JsonMeasure MeasureFromJson(const nlohmann::json& measure, UnitKind kind);

/// The code of the member "id" under the authority EPSG; 0 if it has none.
[[nodiscard]] int EpsgIdOf(const nlohmann::json& object);

}  // namespace QvRefSystem
