#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "processors/object_descriptor.h"

namespace RefframeCli {

/// How an object type is written on the command line: its label with dashes for blanks.
[[nodiscard]] std::string TypeArgument(std::string_view typeName);
/// All of them, by object type code.
[[nodiscard]] std::vector<std::string> TypeArguments();
/// Null for any other text.
[[nodiscard]] const QvRefSystem::ObjectDescriptor* TypeOfArgument(std::string_view argument);

}  // namespace RefframeCli
