#include "platform/storage/store_lock.h"

#include <algorithm>
#include <filesystem>

namespace QvPlatform {

StoreLock::StoreLock(std::vector<std::string> paths) {
  // In the order in which a group of changes takes them, so that no two wait for each other.
  std::ranges::sort(paths);
  for (const std::string& path : paths) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) continue;
    try {
      detail::Connection connection = detail::Connection::OpenFile(path);
      // A log beside the file, as containers once had, would outlive a move of the file.
      connection.Execute("PRAGMA journal_mode=DELETE");
      connection.Execute("BEGIN IMMEDIATE");
      held_.push_back(std::move(connection));
    } catch (const detail::SqliteError& failure) {
      if (!failure.IsLocked()) continue;
      throw StorageError("\"" + path + "\" is being written by another program");
    } catch (const StorageError&) {
      // What a stopped change has left is of no use to the file.
      continue;
    }
  }
}

}  // namespace QvPlatform
