#include "platform/storage/aside_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include "platform/storage/sqlite.h"
#include "platform/storage/stream.h"

namespace QvPlatform::detail {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kUsualMode = 0666;
constexpr mode_t kModeBits = 07777;

/// A name in the folder of the target that no other writer of this moment uses. It begins with a
/// dot so that no one takes a file left by a power cut for content.
std::string AsideName(const std::string& path) {
  static std::atomic<unsigned> counter = 0;
  const std::string name =
      ".refframe-" + std::to_string(getpid()) + "-" + std::to_string(counter++) + ".new";
  return (fs::path(path).parent_path() / name).string();
}

/// Where a link leads to: the link stays, its target is replaced.
std::string FollowLink(const std::string& path) {
  std::error_code error;
  if (!fs::is_symlink(path, error)) return path;
  const fs::path target = fs::weakly_canonical(path, error);
  return error ? path : target.string();
}

}  // namespace

AsideFile::AsideFile(const std::string& path) : path_(FollowLink(path)) {
  struct stat old {};
  const bool replaces = stat(path_.c_str(), &old) == 0;
  if (replaces && !S_ISREG(old.st_mode)) {
    throw StorageError("\"" + path_ + "\" cannot be written: it is no plain file");
  }
  if (replaces && access(path_.c_str(), W_OK) != 0) Fail("cannot be written");
  do {
    aside_ = AsideName(path_);
    descriptor_ = open(aside_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kUsualMode);
  } while (descriptor_ < 0 && errno == EEXIST);
  if (descriptor_ < 0) Fail("cannot be created");
  if (replaces && fchmod(descriptor_, old.st_mode & kModeBits) != 0) {
    // The rights of the folder then decide, as for a new file.
    errno = 0;
  }
}

AsideFile::~AsideFile() {
  Close();
  if (!aside_.empty()) unlink(aside_.c_str());
}

void AsideFile::Fail(const char* doing) const {
  const int reason = errno;
  throw StorageError("\"" + path_ + "\" " + doing + ": " + std::strerror(reason));
}

void AsideFile::Write(const void* data, std::size_t size) {
  const char* next = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t written = write(descriptor_, next, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) Fail("cannot be written");
    next += written;
    size -= static_cast<std::size_t>(written);
  }
}

void AsideFile::Sync() {
  if (fsync(descriptor_) != 0) Fail("cannot be brought to the medium");
  const int descriptor = std::exchange(descriptor_, -1);
  if (close(descriptor) != 0) Fail("cannot be brought to the medium");
}

void AsideFile::TakeFreePlace() {
  if (link(aside_.c_str(), path_.c_str()) == 0) return;
  // Some media have no links; there a moment stays in which another process may come first.
  const bool noLinks = errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS;
  if (!noLinks || access(path_.c_str(), F_OK) == 0) Fail("cannot be created");
  if (rename(aside_.c_str(), path_.c_str()) != 0) Fail("cannot be created");
}

void AsideFile::Publish(Place place) {
  Sync();
  if (place == Place::kReplace) {
    SettleLeftJournal(path_);
    if (rename(aside_.c_str(), path_.c_str()) != 0) Fail("cannot be replaced");
    aside_.clear();
  } else {
    TakeFreePlace();
  }
  const fs::path folder = fs::path(path_).parent_path();
  const int descriptor =
      open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  // A folder that may be written but not read cannot be flushed by its owner; the file itself is
  // on the medium by now.
  if (descriptor < 0) return;
  fsync(descriptor);
  close(descriptor);
}

void AsideFile::Close() noexcept {
  if (descriptor_ >= 0) close(std::exchange(descriptor_, -1));
}

}  // namespace QvPlatform::detail
