#pragma once

#include <string>
#include <vector>

namespace QvPlatform::detail {

/// A folder of a name of its own, in which something is made out of sight. It goes with this object
/// and all that is left in it.
class AsideFolder {
 public:
  /// Makes it in `parent`, which has to be there. Throws StorageError.
  explicit AsideFolder(const std::string& parent);
  ~AsideFolder();
  AsideFolder(const AsideFolder&) = delete;
  AsideFolder& operator=(const AsideFolder&) = delete;

  /// Where it lies.
  [[nodiscard]] const std::string& Path() const { return path_; }

  /// Paths of those in `parent` that killed processes of this user have left.
  [[nodiscard]] static std::vector<std::string> LeftIn(const std::string& parent);

 private:
  std::string path_;
  // Says to others that the folder is in use.
  int lock_ = -1;
};

}  // namespace QvPlatform::detail
