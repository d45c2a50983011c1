#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace QvPlatform {

/// The last group of changes over several files that wrote to a table file.
struct GroupMark {
  /// Its number, which rises from group to group of a folder; 0 for none.
  std::int64_t number = 0;
  /// The files that it wrote to, without their folder.
  std::vector<std::string> files;
};

}  // namespace QvPlatform
