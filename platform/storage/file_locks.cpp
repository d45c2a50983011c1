#include "platform/storage/file_locks.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace QvPlatform::detail {

namespace {

/// The bytes that SQLite locks, as its file format fixes them: sqlite.org/fileformat2.html, section
/// "The lock-byte page".
constexpr off_t kPendingByte = 0x40000000;
constexpr off_t kReservedByte = kPendingByte + 1;
constexpr off_t kSharedFirst = kPendingByte + 2;
constexpr off_t kSharedSize = 510;

/// A call that goes on being interrupted is given up at last: none of them waits for anything.
constexpr int kMostInterruptions = 100;
/// The descriptors below belong to the standard streams, even where those are closed.
constexpr int kFirstDescriptor = 3;
constexpr mode_t kUsualMode = 0644;

bool IsRefusedWriting(int reason) {
  return reason == EACCES || reason == EPERM || reason == EROFS;
}

int OpenOnce(const std::string& path, int flags) noexcept {
  int descriptor = -1;
  for (int tries = 0; tries < kMostInterruptions; ++tries) {
    descriptor = open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, kUsualMode);
    if (descriptor >= 0 || errno != EINTR) break;
  }
  if (descriptor < 0 || descriptor >= kFirstDescriptor) return descriptor;
  const int higher = fcntl(descriptor, F_DUPFD_CLOEXEC, kFirstDescriptor);
  close(descriptor);
  return higher;
}

}  // namespace

FileLocks::~FileLocks() {
  if (descriptor_ >= 0) close(descriptor_);
}

bool FileLocks::Open(const std::string& path, bool writing, int flags) noexcept {
  forWriting_ = writing;
  if (writing) descriptor_ = OpenOnce(path, O_RDWR | flags);
  if (!writing || (descriptor_ < 0 && IsRefusedWriting(errno))) {
    forWriting_ = false;
    descriptor_ = OpenOnce(path, O_RDONLY);
  }
  if (descriptor_ < 0) return false;
  struct stat status {};
  if (fstat(descriptor_, &status) != 0) return false;
  if (S_ISREG(status.st_mode)) return true;
  errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  return false;
}

bool FileLocks::IsAt(const std::string& path) const noexcept {
  struct stat here {};
  struct stat there {};
  return fstat(descriptor_, &here) == 0 && stat(path.c_str(), &there) == 0 &&
         here.st_dev == there.st_dev && here.st_ino == there.st_ino;
}

FileLocks::Answer FileLocks::Set(short type, off_t start, off_t length) const noexcept {
  for (int tries = 0;; ++tries) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = start;
    lock.l_len = length;
    if (fcntl(descriptor_, F_OFD_SETLK, &lock) == 0) return Answer::kGranted;
    if (errno == EAGAIN || errno == EACCES) return Answer::kHeldByOther;
    if (errno == EINVAL) return Answer::kUnsupported;
    // Letting go is tried again: what stays locked keeps everybody out, this process too.
    const bool goesOn = errno == EINTR || type == F_UNLCK;
    if (!goesOn || tries >= kMostInterruptions) return Answer::kFailed;
  }
}

FileLocks::Answer FileLocks::RaiseToShared() noexcept {
  // A writer that waits for its readers to go holds the pending byte, so that none comes in after.
  const Answer gate = Set(F_RDLCK, kPendingByte, 1);
  if (gate != Answer::kGranted) return gate;
  const Answer shared = Set(F_RDLCK, kSharedFirst, kSharedSize);
  const int reason = errno;
  if (Set(F_UNLCK, kPendingByte, 1) != Answer::kGranted) return Answer::kFailed;
  errno = reason;
  if (shared == Answer::kGranted) level_ = Level::kShared;
  return shared;
}

FileLocks::Answer FileLocks::RaiseToExclusive() noexcept {
  if (level_ < Level::kPending) {
    const Answer pending = Set(F_WRLCK, kPendingByte, 1);
    if (pending != Answer::kGranted) return pending;
    // Kept while readers are waited for; Lower lets go of it.
    level_ = Level::kPending;
  }
  const Answer exclusive = Set(F_WRLCK, kSharedFirst, kSharedSize);
  if (exclusive == Answer::kGranted) level_ = Level::kExclusive;
  return exclusive;
}

FileLocks::Answer FileLocks::Raise(Level level) noexcept {
  if (level <= level_) return Answer::kGranted;
  if (level == Level::kShared) return RaiseToShared();
  if (level == Level::kExclusive) return RaiseToExclusive();
  const Answer reserved = Set(F_WRLCK, kReservedByte, 1);
  if (reserved == Answer::kGranted) level_ = Level::kReserved;
  return reserved;
}

FileLocks::Answer FileLocks::Lower(Level level) noexcept {
  if (level >= level_) return Answer::kGranted;
  if (level == Level::kNone) {
    const Answer freed = Set(F_UNLCK, 0, 0);
    if (freed == Answer::kGranted) level_ = Level::kNone;
    return freed;
  }
  // The writer's bytes go first: whatever fails then, no more is held than is known here, but for
  // a shared range that still keeps readers out and is let go of with everything.
  const Answer freed = Set(F_UNLCK, kPendingByte, 2);
  if (freed != Answer::kGranted) return freed;
  const bool exclusive = level_ == Level::kExclusive;
  level_ = Level::kShared;
  return exclusive ? Set(F_RDLCK, kSharedFirst, kSharedSize) : Answer::kGranted;
}

FileLocks::Answer FileLocks::FindWriter(bool* found) noexcept {
  if (level_ > Level::kShared) {
    *found = true;
    return Answer::kGranted;
  }
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = kReservedByte;
  lock.l_len = 1;
  if (fcntl(descriptor_, F_OFD_GETLK, &lock) != 0) {
    return errno == EINVAL ? Answer::kUnsupported : Answer::kFailed;
  }
  *found = lock.l_type != F_UNLCK;
  return Answer::kGranted;
}

void FileLocks::Park() noexcept {
  descriptor_ = -1;
}

}  // namespace QvPlatform::detail
