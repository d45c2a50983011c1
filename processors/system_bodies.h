#pragma once

#include <span>
#include <string_view>

#include "platform/data/system_kinds.h"

namespace QvRefSystem {

/// The columns with the keys that a record of that kind cannot do without: the integrity check
/// finds a record where one of them is 0.
[[nodiscard]] std::span<const std::string_view> RequiredReferences(SystemKind kind);

}  // namespace QvRefSystem
