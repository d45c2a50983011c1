#pragma once

#include <string>

#include "platform/geocore/projjson.h"

namespace QvRefSystem {

/// WKT2:2019 of what TreeToProjJson gives, over several lines. The code of the registry stands in
/// it where the definition is still that of the registry. False, with `error` telling why, for what
/// TreeToProjJson refuses or PROJ cannot write.
[[nodiscard]] bool TreeToWkt2(const QvCommonUtils::TStringTree* tree, Dimension dimension,
                              std::string* wkt, std::string* error);

}  // namespace QvRefSystem
