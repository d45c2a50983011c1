#pragma once

#include <string>

#include "platform/data/string_tree.h"
#include "platform/geocore/system_model.h"

/// The bridge from PROJ's forms of a coordinate reference system to ours.
namespace QvRefSystem {

/// Makes the model of a system from its PROJJSON. A system that the registry has, by its code or by
/// its name, and that is the same to PROJ, is the registry's own, so that its record is found
/// again. A datum of the registry brings its shift, any other one a null shift that says so; a
/// bound system's transformation to WGS 84 is the shift itself. A compound system is held if its
/// heights are those of a built-in geoid. Vertical, derived and engineering systems, and methods
/// that the model cannot hold, are refused. False, with `model` unchanged and `error` saying why.
[[nodiscard]] bool ModelFromProjJson(const std::string& json, SystemModel* model,
                                     std::string* error);
/// Makes the model of a system from anything that PROJ reads as a system: PROJJSON, WKT, a PROJ
/// string, "EPSG:code".
[[nodiscard]] bool ModelFromProjText(const std::string& text, SystemModel* model,
                                     std::string* error);
/// Does the same, and writes the model as a tree as ModelToTree does.
[[nodiscard]] bool TreeFromProjText(const std::string& text, QvCommonUtils::TStringTree* tree,
                                    std::string* error);

}  // namespace QvRefSystem
