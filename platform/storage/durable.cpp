#include "platform/storage/durable.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/storage/retried.h"

namespace QvPlatform::detail {

namespace {

constexpr mode_t kReservedMode = 0600;

bool IsUnsupported(int reason) {
  return reason == EINVAL || reason == ENOSYS || reason == EOPNOTSUPP || reason == EPERM;
}

/// For media without links and without a move that spares what it meets: a file of our own takes
/// the place first, and is what the move then replaces.
bool MoveByReservation(const std::string& from, const std::string& to) noexcept {
  const int descriptor = Retried(
      [&to] { return open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kReservedMode); });
  if (descriptor < 0) return false;
  close(descriptor);
  if (Retried([&] { return rename(from.c_str(), to.c_str()); }) == 0) return true;
  const int reason = errno;
  unlink(to.c_str());
  errno = reason;
  return false;
}

}  // namespace

bool SyncFolder(const std::string& folder) noexcept {
  const char* const path = folder.empty() ? "." : folder.c_str();
  const int descriptor = Retried([path] { return open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  if (descriptor < 0) return errno == EACCES;
  const bool done =
      Retried([descriptor] { return fsync(descriptor); }) == 0 || IsUnsupported(errno);
  const int reason = errno;
  close(descriptor);
  errno = reason;
  return done;
}

bool MoveToFreePlace(const std::string& from, const std::string& to) noexcept {
  const auto move = [&] {
    return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
  };
  if (Retried(move) == 0) return true;
  if (!IsUnsupported(errno)) return false;
  if (Retried([&] { return link(from.c_str(), to.c_str()); }) == 0) {
    unlink(from.c_str());
    return true;
  }
  return IsUnsupported(errno) && MoveByReservation(from, to);
}

}  // namespace QvPlatform::detail
