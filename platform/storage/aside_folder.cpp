#include "platform/storage/aside_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/storage/aside_file.h"
#include "platform/storage/retried.h"
#include "platform/storage/stream.h"

namespace QvPlatform::detail {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kEnding = ".making";
constexpr mode_t kUsualMode = 0777;

int OpenFolder(const std::string& path) {
  return Retried(
      [&path] { return open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); });
}

bool Lock(int descriptor) {
  return Retried([descriptor] { return flock(descriptor, LOCK_EX | LOCK_NB); }) == 0;
}

/// Whether a folder is one of this user's in which nobody works any more.
bool IsAbandoned(const std::string& path) {
  const int descriptor = OpenFolder(path);
  if (descriptor < 0) return false;
  struct stat status {};
  const bool abandoned =
      fstat(descriptor, &status) == 0 && status.st_uid == geteuid() && Lock(descriptor);
  close(descriptor);
  return abandoned;
}

}  // namespace

AsideFolder::AsideFolder(const std::string& parent) {
  int made = -1;
  do {
    path_ = parent + "/" + AsideName(kEnding);
    made = Retried([this] { return mkdir(path_.c_str(), kUsualMode); });
  } while (made < 0 && errno == EEXIST);
  if (made < 0) {
    throw StorageError("\"" + parent + "\": no folder can be made in it: " + std::strerror(errno));
  }
  lock_ = OpenFolder(path_);
  // Without the lock, on a medium that has none, the process itself still says that it lives.
  if (lock_ >= 0) static_cast<void>(Lock(lock_));
}

AsideFolder::~AsideFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
  if (lock_ >= 0) close(lock_);
}

std::vector<std::string> AsideFolder::LeftIn(const std::string& parent) {
  std::vector<std::string> left;
  std::error_code error;
  fs::directory_iterator entry(parent, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const std::string path = entry->path().string();
    if (IsOfDeadProcess(entry->path().filename().string(), kEnding) && IsAbandoned(path)) {
      left.push_back(path);
    }
  }
  return left;
}

}  // namespace QvPlatform::detail
