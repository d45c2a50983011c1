#include "platform/storage/aside_folder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>

#include "platform/storage/stream.h"

namespace QvPlatform {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kUsualFileMode = 0666;
constexpr mode_t kUsualFolderMode = 0777;

[[noreturn]] void Fail(const std::string& path, const char* doing, int reason) {
  throw StorageError("\"" + path + "\" " + doing + ": " + std::strerror(reason));
}

/// A descriptor that is closed with its scope.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] int Number() const { return number_; }
  /// False, with the reason in errno, where closing fails.
  [[nodiscard]] bool Close() { return close(std::exchange(number_, -1)) == 0; }

 private:
  int number_;
};

bool IsUnsupported(int reason) {
  return reason == EINVAL || reason == ENOSYS || reason == EOPNOTSUPP;
}

}  // namespace

std::string FolderOf(const std::string& path) {
  const std::string folder = fs::path(path).parent_path().string();
  return folder.empty() ? "." : folder;
}

AsideFolder::AsideFolder(const std::string& beside) {
  static std::atomic<unsigned> counter = 0;
  std::error_code error;
  fs::create_directories(beside, error);
  if (error) throw StorageError("\"" + beside + "\" cannot be made: " + error.message());
  do {
    path_ = beside + "/.refframe-" + std::to_string(getpid()) + "-f" + std::to_string(counter++) +
            ".new";
  } while (mkdir(path_.c_str(), kUsualFolderMode) != 0 && errno == EEXIST);
  if (!fs::is_directory(path_, error)) Fail(beside, "cannot be written", errno);
}

AsideFolder::~AsideFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

void AsideFolder::Sync() const {
  const Descriptor folder(open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.Number() < 0 || syncfs(folder.Number()) != 0) {
    Fail(path_, "cannot be brought to the medium", errno);
  }
}

void MoveToFreePlace(const std::string& from, const std::string& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return;
  // Some media know no such step; there a moment stays in which another process may come first.
  struct stat there {};
  if (!IsUnsupported(errno)) Fail(to, "cannot be made", errno);
  if (lstat(to.c_str(), &there) == 0) Fail(to, "cannot be made", EEXIST);
  if (rename(from.c_str(), to.c_str()) != 0) Fail(to, "cannot be made", errno);
}

void ExchangePlaces(const std::string& one, const std::string& other) {
  if (renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) == 0) return;
  if (!IsUnsupported(errno)) Fail(other, "cannot be replaced", errno);
  const std::string between = one + ".between";
  if (rename(other.c_str(), between.c_str()) != 0) Fail(other, "cannot be replaced", errno);
  if (rename(one.c_str(), other.c_str()) != 0) {
    const int reason = errno;
    std::error_code ignored;
    fs::rename(between, other, ignored);
    Fail(other, "cannot be replaced", reason);
  }
  if (rename(between.c_str(), one.c_str()) != 0) Fail(one, "cannot be made", errno);
}

void SyncFolder(const std::string& folder) noexcept {
  const Descriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.Number() >= 0) fsync(descriptor.Number());
}

void WriteUnflushed(const std::string& path, const void* data, std::size_t size) {
  Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kUsualFileMode));
  if (file.Number() < 0) Fail(path, "cannot be created", errno);
  const char* next = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t written = write(file.Number(), next, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) Fail(path, "cannot be written", errno);
    next += written;
    size -= static_cast<std::size_t>(written);
  }
  if (!file.Close()) Fail(path, "cannot be written", errno);
}

}  // namespace QvPlatform
