#include "platform/storage/file_use.h"

#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace QvPlatform::detail {

namespace {

using FileId = std::pair<dev_t, ino_t>;

/// The descriptors that wait for the last connection to one file.
class FileUse {
 public:
  FileUse() = default;
  FileUse(const FileUse&) = delete;
  FileUse& operator=(const FileUse&) = delete;
  ~FileUse() {
    for (const int descriptor : waiting_)
      close(descriptor);
  }
  void Keep(int descriptor) { waiting_.push_back(descriptor); }

 private:
  std::vector<int> waiting_;
};

struct Registry {
  std::mutex mutex;
  std::map<FileId, std::weak_ptr<FileUse>> uses;
};

Registry& Uses() {
  static Registry registry;
  return registry;
}

}  // namespace

std::shared_ptr<void> RegisterFileUse(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return nullptr;
  Registry& registry = Uses();
  const std::lock_guard lock(registry.mutex);
  std::erase_if(registry.uses, [](const auto& entry) { return entry.second.expired(); });
  std::weak_ptr<FileUse>& entry = registry.uses[{status.st_dev, status.st_ino}];
  std::shared_ptr<FileUse> use = entry.lock();
  if (use == nullptr) {
    use = std::make_shared<FileUse>();
    entry = use;
  }
  return use;
}

void CloseBesideConnections(int descriptor) noexcept {
  struct stat status {};
  if (fstat(descriptor, &status) == 0) {
    Registry& registry = Uses();
    const std::lock_guard lock(registry.mutex);
    const auto entry = registry.uses.find({status.st_dev, status.st_ino});
    const std::shared_ptr<FileUse> use =
        entry != registry.uses.end() ? entry->second.lock() : nullptr;
    if (use != nullptr) {
      try {
        use->Keep(descriptor);
        return;
      } catch (const std::bad_alloc&) {
        // A leaked descriptor is better than a lost lock.
        return;
      }
    }
  }
  close(descriptor);
}

}  // namespace QvPlatform::detail
