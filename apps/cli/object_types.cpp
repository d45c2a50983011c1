#include "apps/cli/object_types.h"

#include <algorithm>

namespace RefframeCli {

using QvRefSystem::ObjectDescriptors;
using QvRefSystem::TObjectDescriptor;

std::string TypeArgument(std::string_view typeName) {
  std::string argument(typeName);
  std::ranges::replace(argument, ' ', '-');
  return argument;
}

std::vector<std::string> TypeArguments() {
  std::vector<std::string> arguments;
  for (const TObjectDescriptor& type : ObjectDescriptors()) {
    arguments.push_back(TypeArgument(type.typeName));
  }
  return arguments;
}

const TObjectDescriptor* TypeOfArgument(std::string_view argument) {
  for (const TObjectDescriptor& type : ObjectDescriptors()) {
    if (TypeArgument(type.typeName) == argument) return &type;
  }
  return nullptr;
}

}  // namespace RefframeCli
