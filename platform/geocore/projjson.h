#pragma once

#include <string>
#include <string_view>

#include "platform/data/string_tree.h"
#include "platform/geocore/system_model.h"

/// The bridge from a reference system's tree and its model to PROJJSON.
namespace QvRefSystem {

enum class Dimension { kTwo = 2, kThree = 3 };

/// The PROJJSON of a system of kind 3, 4 or 5 (`dimension` counts for kind 4 alone). False, and
/// `error` says why, for a system that PROJJSON cannot tell. The datum's shift and heights over a
/// geoid are no part of it; docs/geodesy-normalisations.md lists what else PROJJSON is not told.
[[nodiscard]] bool ModelToProjJson(const SystemModel& model, Dimension dimension, std::string* json,
                                   std::string* error);
/// The same bound to WGS 84 by the datum's own shift. `datumName`, if not empty, takes the place
/// of the datum's name: PROJ drops the shifts between systems whose datums bear one name. False
/// also for a system without a datum, which has no shift. PROJ 9.1 takes the exact step from
/// another prime meridian to Greenwich for a ballpark one, and finds no operation out of a bound
/// geocentric system.
[[nodiscard]] bool ModelToBoundProjJson(const SystemModel& model, Dimension dimension,
                                        std::string_view datumName, std::string* json,
                                        std::string* error);
[[nodiscard]] bool TreeToProjJson(const QvCommonUtils::TStringTree* tree, Dimension dimension,
                                  std::string* json, std::string* error);
/// The name by which a datum stands in a model and in PROJJSON: the registry's name without the
/// word "ensemble", by which PROJ knows a datum and the ensemble of its realizations as one.
[[nodiscard]] std::string DatumNameWithoutEnsemble(std::string_view name);

/// 1 / f as the number of fewest digits that gives the same f again; 0 for an f of 0.
[[nodiscard]] double InverseFlattening(double flattening);

}  // namespace QvRefSystem
