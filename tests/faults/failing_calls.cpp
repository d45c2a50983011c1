// Each call is made by its number in the kernel: nothing of the C library's stands between.
#undef _FORTIFY_SOURCE
#include "tests/faults/failing_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace refframe_faults {

namespace {

// Nothing here may allocate: malloc is one of the calls.
struct State {
  char families[160] = "";
  char prefix[PATH_MAX] = "";
  long at = 0;
  long calls = 0;
  bool forGood = false;
  bool halfDone = false;
  char effect = 'f';
  int error = 0;
  int log = -1;
};
State state;

bool IsUnderPrefix(const char* path) {
  return path != nullptr && std::strncmp(path, state.prefix, std::strlen(state.prefix)) == 0;
}

// The path of an open file; "" for what is no file or none of those that count.
struct PathOf {
  char text[PATH_MAX] = "";
  explicit PathOf(int descriptor) {
    if ((state.families[0] == '\0' && state.log < 0) || descriptor == state.log) return;
    char link[40];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    const long size = syscall(SYS_readlink, link, text, sizeof text - 1);
    text[std::max(size, 0L)] = '\0';
    if (text[0] != '/' || !IsUnderPrefix(text)) text[0] = '\0';
  }
};

// Whether the call that counts now is hit; sets errno for one that fails.
bool IsHit(const char* family) {
  if (state.families[0] == '\0' || std::strstr(state.families, family) == nullptr) return false;
  const long call = ++state.calls;
  if (state.at == 0 || call < state.at || (call > state.at && !state.forGood)) return false;
  if (state.effect == 'k') syscall(SYS_kill, getpid(), SIGKILL);
  errno = state.error;
  return true;
}

bool Fails(const char* family, const char* path) {
  if (path == nullptr || path[0] == '\0' || !IsUnderPrefix(path) || !IsHit(family)) return false;
  if (state.effect != 'm') return true;
  const long descriptor = syscall(SYS_openat, AT_FDCWD, path, O_RDONLY | O_CLOEXEC, 0);
  if (descriptor >= 0) syscall(SYS_close, descriptor);
  return false;
}

void Log(char kind, unsigned long inode, const char* path, const void* bytes = nullptr,
         std::size_t size = 0, long offset = 0) {
  if (state.log < 0 || (kind != 'A' && !IsUnderPrefix(path)) || path[0] == '\0') return;
  const int error = errno;
  char head[PATH_MAX + 80];
  const int length =
      std::snprintf(head, sizeof head, "%c\t%lu\t%s\t%ld\t%zu\n", kind, inode, path, offset, size);
  syscall(SYS_write, state.log, head, length);
  if (size != 0) syscall(SYS_write, state.log, bytes, size);
  errno = error;
}

struct stat StatusOf(int descriptor) {
  struct stat status {};
  (void)fstat(descriptor, &status);
  return status;
}

// A change of a name, or of two where `second` is not null.
template <typename Call>
int Named(const char* family, char kind, const char* path, const char* second, Call call) {
  const char* const shown = second != nullptr ? second : path;
  if (Fails(family, shown)) return -1;
  struct stat status {};
  const bool isThere = syscall(SYS_newfstatat, AT_FDCWD, path, &status, AT_SYMLINK_NOFOLLOW) == 0;
  const int result = static_cast<int>(call());
  if (result == 0)
    Log(kind, isThere ? status.st_ino : 0, path, second, second ? std::strlen(second) : 0);
  return result;
}

template <typename Call>
ssize_t Written(int descriptor, const void* bytes, std::size_t size, long offset, Call call) {
  const PathOf path(descriptor);
  if (descriptor == 1) Log('A', 0, "-", bytes, size);
  if (Fails("write", path.text)) {
    state.halfDone = state.effect == 's' && size > 1 && !state.halfDone;
    if (!state.halfDone) return -1;
    size /= 2;
  }
  if (state.log >= 0 && offset < 0) offset = lseek(descriptor, 0, SEEK_CUR);
  const ssize_t done = call(size);
  if (done > 0) Log('W', StatusOf(descriptor).st_ino, path.text, bytes, done, offset);
  return done;
}

int Synced(int descriptor, long number) {
  const PathOf path(descriptor);
  if (Fails("sync", path.text)) return -1;
  const struct stat status = StatusOf(descriptor);
  const int result = static_cast<int>(syscall(number, descriptor));
  if (result == 0) Log(S_ISDIR(status.st_mode) ? 'D' : 'S', status.st_ino, path.text);
  return result;
}

int Cut(int descriptor, off_t size) {
  const PathOf path(descriptor);
  if (Fails("truncate", path.text)) return -1;
  const int result = static_cast<int>(syscall(SYS_ftruncate, descriptor, size));
  if (result == 0) Log('T', StatusOf(descriptor).st_ino, path.text, nullptr, 0, size);
  return result;
}

int Opened(const char* path, int flags, unsigned mode) {
  if (Fails("open", path)) return -1;
  const bool isMade = (flags & O_CREAT) != 0 && access(path, F_OK) != 0;
  const int result = static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
  if (result >= 0 && (isMade || (flags & O_TRUNC) != 0))
    Log(isMade ? 'C' : 'T', StatusOf(result).st_ino, path);
  return result;
}

int Controlled(int descriptor, int command, void* argument) {
  const bool locks = command == F_SETLK || command == F_SETLKW || command == F_OFD_SETLK ||
                     command == F_OFD_SETLKW;
  if (locks && Fails("lock", PathOf(descriptor).text)) return -1;
  return static_cast<int>(syscall(SYS_fcntl, descriptor, command, argument));
}

}  // namespace

void Arm(const Fault& fault) {
  state = {};
  state.at = fault.at;
  state.forGood = fault.forGood;
  state.effect = fault.effect[0];
  state.error = fault.error;
  std::snprintf(state.prefix, sizeof state.prefix, "%s", fault.prefix.c_str());
  if (!fault.log.empty())
    state.log = open(fault.log.c_str(), O_CREAT | O_WRONLY | O_APPEND | O_CLOEXEC, 0644);
  std::snprintf(state.families, sizeof state.families, "%s", fault.families.c_str());
}

long Disarm() {
  state.families[0] = '\0';
  return state.calls;
}

}  // namespace refframe_faults

using namespace refframe_faults;

extern "C" {

// Each call under one name or two: with offsets of 64 bits they are the same.
#define REFFRAME_WITH_LAST(name, first, second, Last, does) \
  int name(first, second, ...) {                            \
    va_list rest;                                           \
    va_start(rest, b);                                      \
    const auto last = va_arg(rest, Last);                   \
    va_end(rest);                                           \
    return does(a, b, last);                                \
  }
REFFRAME_WITH_LAST(open, const char* a, int b, unsigned, Opened)
REFFRAME_WITH_LAST(open64, const char* a, int b, unsigned, Opened)
REFFRAME_WITH_LAST(fcntl, int a, int b, void*, Controlled)
REFFRAME_WITH_LAST(fcntl64, int a, int b, void*, Controlled)

ssize_t read(int descriptor, void* bytes, size_t size) {
  if (Fails("read", PathOf(descriptor).text)) return -1;
  return syscall(SYS_read, descriptor, bytes, size);
}
ssize_t pread64(int descriptor, void* bytes, size_t size, off64_t offset) {
  if (Fails("read", PathOf(descriptor).text)) return -1;
  return syscall(SYS_pread64, descriptor, bytes, size, offset);
}
ssize_t write(int descriptor, const void* bytes, size_t size) {
  return Written(descriptor, bytes, size, -1,
                 [=](size_t count) { return syscall(SYS_write, descriptor, bytes, count); });
}
ssize_t pwrite64(int descriptor, const void* bytes, size_t size, off64_t offset) {
  return Written(descriptor, bytes, size, offset, [=](size_t count) {
    return syscall(SYS_pwrite64, descriptor, bytes, count, offset);
  });
}

int fsync(int descriptor) {
  return Synced(descriptor, SYS_fsync);
}
int fdatasync(int descriptor) {
  return Synced(descriptor, SYS_fdatasync);
}
int ftruncate(int descriptor, off_t size) noexcept {
  return Cut(descriptor, size);
}
int ftruncate64(int descriptor, off64_t size) noexcept {
  return Cut(descriptor, size);
}

#define REFFRAME_NAMING(name, family, kind, parameters, second, ...)                \
  int name parameters noexcept {                                                    \
    return Named(family, kind, path, second, [=] { return syscall(__VA_ARGS__); }); \
  }
REFFRAME_NAMING(rename, "rename", 'R', (const char* path, const char* to), to, SYS_renameat,
                AT_FDCWD, path, AT_FDCWD, to)
REFFRAME_NAMING(renameat2, "rename", 'R',
                (int, const char* path, int, const char* to, unsigned how), to, SYS_renameat2,
                AT_FDCWD, path, AT_FDCWD, to, how)
REFFRAME_NAMING(link, "rename", 'L', (const char* path, const char* to), to, SYS_linkat, AT_FDCWD,
                path, AT_FDCWD, to, 0)
REFFRAME_NAMING(unlink, "unlink", 'U', (const char* path), nullptr, SYS_unlinkat, AT_FDCWD, path, 0)
REFFRAME_NAMING(rmdir, "unlink", 'U', (const char* path), nullptr, SYS_unlinkat, AT_FDCWD, path,
                AT_REMOVEDIR)
REFFRAME_NAMING(mkdir, "mkdir", 'M', (const char* path, mode_t mode), nullptr, SYS_mkdirat,
                AT_FDCWD, path, mode)
int remove(const char* path) noexcept {
  const int result = unlink(path);
  return result != 0 && errno == EISDIR ? rmdir(path) : result;
}

#define REFFRAME_STAT(name, Status, flags)                                           \
  int name(const char* path, struct Status* status) noexcept {                       \
    if (Fails("stat", path)) return -1;                                              \
    return static_cast<int>(syscall(SYS_newfstatat, AT_FDCWD, path, status, flags)); \
  }
REFFRAME_STAT(stat, stat, 0)
REFFRAME_STAT(stat64, stat64, 0)
REFFRAME_STAT(lstat, stat, AT_SYMLINK_NOFOLLOW)
REFFRAME_STAT(lstat64, stat64, AT_SYMLINK_NOFOLLOW)

void* mmap64(void* at, size_t size, int protection, int flags, int descriptor,
             off64_t offset) noexcept {
  if (descriptor > 2 && Fails("map", PathOf(descriptor).text)) return MAP_FAILED;
  return reinterpret_cast<void*>(
      syscall(SYS_mmap, at, size, protection, flags, descriptor, offset));
}

// Behind them stands the allocator of the C library or of the sanitizer.
#define REFFRAME_ALLOCATING(name, parameters, ...)                                           \
  void* name parameters noexcept {                                                           \
    static auto* const next = reinterpret_cast<void*(*)parameters>(dlsym(RTLD_NEXT, #name)); \
    return IsHit("malloc") ? nullptr : next(__VA_ARGS__);                                    \
  }
REFFRAME_ALLOCATING(malloc, (size_t size), size)
REFFRAME_ALLOCATING(calloc, (size_t count, size_t size), count, size)
REFFRAME_ALLOCATING(realloc, (void* block, size_t size), block, size)

}  // extern "C"

// What C++ allocates comes by malloc as well, whatever a sanitizer has in its place.
void* operator new(std::size_t size) {
  if (void* const block = malloc(std::max<std::size_t>(size, 1))) return block;
  throw std::bad_alloc();
}
void operator delete(void* block) noexcept {
  free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  free(block);
}
