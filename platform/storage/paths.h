#pragma once

#include <string>

namespace QvPlatform::detail {

/// The one name of a file, whatever links and dots lead to it, so that two openings of one file are
/// known as such; the path as it is where the system cannot tell. The file need not exist.
[[nodiscard]] std::string CanonicalPath(const std::string& path);

}  // namespace QvPlatform::detail
