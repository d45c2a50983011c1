#pragma once

#include <memory>
#include <string>

namespace QvPlatform::detail {

/// Tells that a connection of this process is about to have the file open. The token is given up
/// after the connection has closed it. Null if there is no such file.
[[nodiscard]] std::shared_ptr<void> RegisterFileUse(const std::string& path);

/// Closes a file descriptor, at once or, where a connection of this process has the same file open,
/// together with the last such connection: POSIX drops all locks that a process has on a file as
/// soon as it closes any descriptor of it.
void CloseBesideConnections(int descriptor) noexcept;

}  // namespace QvPlatform::detail
