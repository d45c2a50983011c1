#include "apps/cli/object_types.h"

#include <algorithm>

namespace RefframeCli {

using QvRefSystem::ObjectDescriptor;
using QvRefSystem::ObjectDescriptors;

std::string TypeArgument(std::string_view typeName) {
  std::string argument(typeName);
  std::ranges::replace(argument, ' ', '-');
  return argument;
}

std::vector<std::string> TypeArguments() {
  std::vector<std::string> arguments;
  for (const ObjectDescriptor& type : ObjectDescriptors()) {
    arguments.push_back(TypeArgument(type.typeName));
  }
  return arguments;
}

const ObjectDescriptor* TypeOfArgument(std::string_view argument) {
  for (const ObjectDescriptor& type : ObjectDescriptors()) {
    if (TypeArgument(type.typeName) == argument) return &type;
  }
  return nullptr;
}

}  // namespace RefframeCli
