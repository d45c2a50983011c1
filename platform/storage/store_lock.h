#pragma once

#include <string>
#include <vector>

#include "platform/storage/sqlite.h"

namespace QvPlatform {

/// The writer's locks of table files or of a container, held while a database is replaced as a
/// whole. What a killed writer left half done in a file is undone when its lock is taken.
class StoreLock {
 public:
  /// Waits for other writers. A file that is missing, or damaged past opening, is passed over:
  /// nobody can be writing its records. Throws StorageError, holding nothing, where another program
  /// goes on writing.
  explicit StoreLock(std::vector<std::string> paths);

 private:
  std::vector<detail::Connection> held_;
};

}  // namespace QvPlatform
