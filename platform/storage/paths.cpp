#include "platform/storage/paths.h"

#include <filesystem>

namespace QvPlatform::detail {

std::string CanonicalPath(const std::string& path) {
  std::error_code error;
  const std::filesystem::path canonical = std::filesystem::weakly_canonical(path, error);
  return error ? path : canonical.string();
}

}  // namespace QvPlatform::detail
