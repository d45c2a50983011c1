#include "platform/storage/aside_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <set>
#include <utility>

#include "platform/storage/durable.h"
#include "platform/storage/journal_names.h"
#include "platform/storage/left_journal.h"
#include "platform/storage/retried.h"
#include "platform/storage/stream.h"

namespace QvPlatform::detail {

namespace {

namespace fs = std::filesystem;

/// A dot in front, so that no one takes a file left by a power cut for content.
constexpr std::string_view kBeginning = ".refframe-";
constexpr mode_t kUsualMode = 0666;
constexpr mode_t kModeBits = 07777;

constexpr std::string_view kEnding = ".new";

/// Takes the lock by which others know that the file is being written; it ends with the descriptor.
/// False if somebody else has it.
bool LockAside(int descriptor) {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return fcntl(descriptor, F_OFD_SETLK, &lock) == 0;
}

/// Removes a file aside unless somebody still writes it.
void RemoveDead(const fs::path& path) {
  const int descriptor =
      Retried([&path] { return open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK); });
  if (descriptor < 0) return;
  struct stat status {};
  const bool own =
      fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid();
  if (own && LockAside(descriptor)) unlink(path.c_str());
  close(descriptor);
}

/// Removes what killed writers have left in a folder, once for each folder that this process writes
/// to.
void ClearFolder(const std::string& folder) {
  static std::mutex mutex;
  static std::set<std::string> cleared;
  const std::lock_guard lock(mutex);
  if (!cleared.insert(folder).second) return;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    if (IsOfDeadProcess(entry->path().filename().string(), kEnding)) RemoveDead(entry->path());
  }
}

/// Where a link leads to: the link stays, its target is replaced.
std::string FollowLink(const std::string& path) {
  std::error_code error;
  if (!fs::is_symlink(path, error)) return path;
  const fs::path target = fs::weakly_canonical(path, error);
  return error ? path : target.string();
}

}  // namespace

std::string AsideName(std::string_view ending) {
  static std::atomic<unsigned> counter = 0;
  std::string name(kBeginning);
  name += std::to_string(getpid()) + "-" + std::to_string(counter++);
  return name.append(ending);
}

bool IsOfDeadProcess(std::string_view name, std::string_view ending) {
  if (!name.starts_with(kBeginning) || !name.ends_with(ending)) return false;
  if (name.size() < kBeginning.size() + ending.size()) return false;
  const std::string middle(
      name.substr(kBeginning.size(), name.size() - kBeginning.size() - ending.size()));
  int process = 0;
  int number = 0;
  int end = 0;
  const bool fits = std::sscanf(middle.c_str(), "%9d-%9d%n", &process, &number, &end) == 2 &&
                    static_cast<std::size_t>(end) == middle.size() && process > 0;
  return fits && kill(process, 0) != 0 && errno == ESRCH;
}

AsideFile::AsideFile(const std::string& path) : path_(FollowLink(path)) {
  struct stat old {};
  const bool replaces = stat(path_.c_str(), &old) == 0;
  if (replaces && !S_ISREG(old.st_mode)) {
    throw StorageError("\"" + path_ + "\" cannot be written: it is no plain file");
  }
  if (replaces && access(path_.c_str(), W_OK) != 0) Fail("cannot be written");
  ClearFolder(FolderOf(path_));
  do {
    aside_ = FolderOf(path_) + "/" + AsideName(kEnding);
    descriptor_ = Retried([this] {
      constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
      return open(aside_.c_str(), kFlags, kUsualMode);
    });
  } while (descriptor_ < 0 && errno == EEXIST);
  if (descriptor_ < 0) {
    aside_.clear();
    Fail("cannot be created");
  }
  // Without the lock, on a medium that has none, the process itself still says that it lives.
  static_cast<void>(LockAside(descriptor_));
  if (replaces && fchmod(descriptor_, old.st_mode & kModeBits) != 0) {
    // The rights of the folder then decide, as for a new file.
    errno = 0;
  }
}

AsideFile::~AsideFile() {
  if (!aside_.empty()) unlink(aside_.c_str());
  Close();
}

void AsideFile::Fail(const char* doing) const {
  const int reason = errno;
  throw StorageError("\"" + path_ + "\" " + doing + ": " + std::strerror(reason));
}

void AsideFile::Write(const void* data, std::size_t size) {
  const char* next = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t written = Retried([&] { return write(descriptor_, next, size); });
    if (written <= 0) Fail("cannot be written");
    next += written;
    size -= static_cast<std::size_t>(written);
  }
}

void AsideFile::Sync() {
  if (Retried([this] { return fsync(descriptor_); }) != 0) Fail("cannot be brought to the medium");
}

void AsideFile::TakePlace(Place place) {
  if (place == Place::kReplace) {
    SettleLeftJournal(path_);
    const auto replace = [this] { return rename(aside_.c_str(), path_.c_str()); };
    if (Retried(replace) != 0) Fail("cannot be replaced");
  } else if (!MoveToFreePlace(aside_, path_)) {
    Fail("cannot be created");
  }
  aside_.clear();
}

void AsideFile::Publish(Place place) {
  Sync();
  TakePlace(place);
  Close();
  if (!SyncFolder(FolderOf(path_))) Fail("cannot be brought to the medium");
}

void AsideFile::Close() noexcept {
  if (descriptor_ >= 0) close(std::exchange(descriptor_, -1));
}

}  // namespace QvPlatform::detail
