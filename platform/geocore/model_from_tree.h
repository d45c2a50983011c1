#pragma once

#include <string>

#include "platform/data/string_tree.h"
#include "platform/geocore/system_model.h"

namespace QvRefSystem {

/// Reads the model out of a reference system's tree. A generated primary system reads as none; the
/// values of a height table are left aside. False, with `model` unchanged and `error` telling what
/// is missing where, if the tree does not hold a whole system.
[[nodiscard]] bool ModelFromTree(const QvCommonUtils::TStringTree* tree, SystemModel* model,
                                 std::string* error);

}  // namespace QvRefSystem
