#pragma once

#include <span>
#include <string_view>

#include "platform/data/system_kinds.h"
#include "processors/object_descriptor.h"

namespace QvRefSystem {

/// The members of a system of that kind behind the head, which the descriptor of reference systems
/// holds: axes, units, what the system refers to, its codes and heights. The list lives as long as
/// the program.
[[nodiscard]] std::span<const TreeItem> BodyOf(SystemKind kind);

/// The columns with the keys that a record of that kind cannot do without, as the rows of its body
/// say: the integrity check finds a record where one of them is 0.
[[nodiscard]] std::span<const std::string_view> RequiredReferences(SystemKind kind);

}  // namespace QvRefSystem
