#include "platform/storage/file_identity.h"

#include <sys/stat.h>

namespace QvPlatform::detail {

std::string FileIdentity(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return {};
  return std::to_string(status.st_dev) + ':' + std::to_string(status.st_ino);
}

}  // namespace QvPlatform::detail
