#pragma once

#include <string>

namespace QvPlatform::detail {

/// Tells a file from any that comes into its place: device and number of the file that the path
/// leads to; empty where there is none.
[[nodiscard]] std::string FileIdentity(const std::string& path);

}  // namespace QvPlatform::detail
