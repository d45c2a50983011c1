#pragma once

#include <string>

namespace QvPlatform::detail {

/// Brings the names in a folder to the medium. A folder that may be written but not read cannot be
/// flushed by its owner; that and a medium that flushes no folders are no failures. False with
/// errno if the medium fails.
bool SyncFolder(const std::string& folder) noexcept;

/// Moves a file to a name under which nothing stands, and never replaces anything. False with errno
/// if it cannot; EEXIST where the place is taken.
[[nodiscard]] bool MoveToFreePlace(const std::string& from, const std::string& to) noexcept;

}  // namespace QvPlatform::detail
