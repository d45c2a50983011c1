#pragma once

#include <span>
#include <string>

#include "platform/geocore/system_model.h"

/// The units that the registry knows, with factors as exact as their definitions.
namespace QvRefSystem {

/// All units with a fixed factor, by EPSG code. Sexagesimal notations (9110 and the like) have no
/// factor and are none of them. Unit 9122, the degree with its representation left open, is the
/// degree 9102 here, so that the same angle never stands in two units.
[[nodiscard]] std::span<const UnitModel> RegistryUnits();
/// Null for a code without a row; the degree for 9122.
[[nodiscard]] const UnitModel* FindRegistryUnit(int epsgCode);
/// The kind of a unit of the registry; kLinear for a code without a row.
[[nodiscard]] UnitKind RegistryUnitKind(int epsgCode);
/// The first unit of that kind whose factor to the base unit is `factor` within one part in 10^12
/// (what is left of a factor that was written with 15 digits); null if there is none. Of units
/// with the same factor it is the one with the lowest code.
[[nodiscard]] const UnitModel* FindRegistryUnitByFactor(UnitKind kind, double factor);
/// A unit that the registry does not have: B = factor and C = 1, no code.
[[nodiscard]] UnitModel MakeUserUnit(const std::string& name, double factor);

}  // namespace QvRefSystem
