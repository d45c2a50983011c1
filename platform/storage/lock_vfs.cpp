#include "platform/storage/lock_vfs.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <set>
#include <string>

#include "platform/storage/file_fault.h"
#include "platform/storage/file_locks.h"
#include "platform/storage/journal_fence.h"
#include "platform/storage/journal_names.h"

namespace QvPlatform::detail {

namespace {

using Answer = FileLocks::Answer;

/// What an open file needs beside SQLite's own.
struct FileState {
  explicit FileState(const char* name) : path(name) {}
  std::string path;
  FileLocks locks;
  /// SQLite's own locks are taken.
  bool native = true;
  /// Set for databases.
  std::optional<JournalFence> fence;
};

/// A file as SQLite sees it; SQLite gives the memory, and its own file follows in it.
struct File {
  sqlite3_file base;
  FileState* state;
};

FileState& StateOf(sqlite3_file* file) {
  return *reinterpret_cast<File*>(file)->state;
}

sqlite3_file* RealOf(sqlite3_file* file) {
  return reinterpret_cast<sqlite3_file*>(reinterpret_cast<File*>(file) + 1);
}

const sqlite3_io_methods& RealMethods(sqlite3_file* file) {
  return *RealOf(file)->pMethods;
}

sqlite3_vfs* RealVfs() {
  static sqlite3_vfs* const real = sqlite3_vfs_find("unix");
  return real;
}

/// The media that were found not to know our kind of locks. No descriptor is opened there for locks
/// alone: to close it would drop SQLite's own.
struct PlainMedia {
  std::mutex mutex;
  std::set<dev_t> media;
};

PlainMedia& Plain() {
  // Stays to the very end of the process, as long as any database may be open.
  static PlainMedia& plain = *std::make_unique<PlainMedia>().release();
  return plain;
}

bool IsOnPlainMedium(const std::string& path) {
  struct stat status {};
  PlainMedia& plain = Plain();
  const std::lock_guard lock(plain.mutex);
  return !plain.media.empty() && stat(path.c_str(), &status) == 0 &&
         plain.media.contains(status.st_dev);
}

/// Notes a failure with the system's reason and hands its code on.
int Noted(int code, const char* path, int reason) {
  if (code == SQLITE_OK || code == SQLITE_IOERR_SHORT_READ) return code;
  NoteFileFault(code, path, reason != 0 ? std::strerror(reason) : "");
  errno = reason;
  return code;
}

int Told(sqlite3_file* file, int code) {
  if (code == SQLITE_OK || code == SQLITE_IOERR_SHORT_READ) return code;
  int reason = 0;
  RealMethods(file).xFileControl(RealOf(file), SQLITE_FCNTL_LAST_ERRNO, &reason);
  return Noted(code, StateOf(file).path.c_str(), reason);
}

int Close(sqlite3_file* file) {
  const int code = RealMethods(file).xClose(RealOf(file));
  delete &StateOf(file);
  file->pMethods = nullptr;
  return code;
}

int Read(sqlite3_file* file, void* data, int size, sqlite3_int64 at) {
  const int code = RealMethods(file).xRead(RealOf(file), data, size, at);
  // SQLite takes what a medium cannot read for damage of the file.
  return Told(file, code == SQLITE_IOERR_CORRUPTFS ? SQLITE_IOERR_READ : code);
}

int Write(sqlite3_file* file, const void* data, int size, sqlite3_int64 at) {
  return Told(file, RealMethods(file).xWrite(RealOf(file), data, size, at));
}

int Truncate(sqlite3_file* file, sqlite3_int64 size) {
  return Told(file, RealMethods(file).xTruncate(RealOf(file), size));
}

int Sync(sqlite3_file* file, int flags) {
  return Told(file, RealMethods(file).xSync(RealOf(file), flags));
}

int FileSize(sqlite3_file* file, sqlite3_int64* size) {
  return Told(file, RealMethods(file).xFileSize(RealOf(file), size));
}

/// What SQLite is told of an answer, `failed` if it is a failure.
int CodeOf(FileState& state, Answer answer, int failed) {
  if (answer == Answer::kGranted) return SQLITE_OK;
  if (answer == Answer::kHeldByOther) return Noted(SQLITE_BUSY, state.path.c_str(), 0);
  return Noted(failed, state.path.c_str(), errno);
}

/// From the first answer on that says so the locks are SQLite's own; nothing is held by then.
bool TurnsNative(FileState& state, Answer answer) {
  if (answer != Answer::kUnsupported) return false;
  state.native = true;
  state.locks.Park();
  struct stat status {};
  if (stat(state.path.c_str(), &status) != 0) return true;
  try {
    PlainMedia& plain = Plain();
    const std::lock_guard lock(plain.mutex);
    plain.media.insert(status.st_dev);
  } catch (const std::bad_alloc&) {
    // The next file there finds it out again.
    return true;
  }
  return true;
}

int Lock(sqlite3_file* file, int level) {
  FileState& state = StateOf(file);
  if (!state.native) {
    const Answer answer = state.locks.Raise(static_cast<FileLocks::Level>(level));
    if (!TurnsNative(state, answer)) return CodeOf(state, answer, SQLITE_IOERR_LOCK);
  }
  return Told(file, RealMethods(file).xLock(RealOf(file), level));
}

int Unlock(sqlite3_file* file, int level) {
  FileState& state = StateOf(file);
  if (state.native) return Told(file, RealMethods(file).xUnlock(RealOf(file), level));
  const Answer answer = state.locks.Lower(static_cast<FileLocks::Level>(level));
  return CodeOf(state, answer, SQLITE_IOERR_UNLOCK);
}

int CheckReservedLock(sqlite3_file* file, int* held) {
  FileState& state = StateOf(file);
  if (!state.native) {
    bool found = false;
    const Answer answer = state.locks.FindWriter(&found);
    *held = found ? 1 : 0;
    if (!TurnsNative(state, answer)) return CodeOf(state, answer, SQLITE_IOERR_CHECKRESERVEDLOCK);
  }
  return Told(file, RealMethods(file).xCheckReservedLock(RealOf(file), held));
}

int FileControl(sqlite3_file* file, int operation, void* argument) {
  return RealMethods(file).xFileControl(RealOf(file), operation, argument);
}

int SectorSize(sqlite3_file* file) {
  return RealMethods(file).xSectorSize(RealOf(file));
}

int DeviceCharacteristics(sqlite3_file* file) {
  return RealMethods(file).xDeviceCharacteristics(RealOf(file));
}

int ShmMap(sqlite3_file* file, int region, int size, int extend, void volatile** memory) {
  return Told(file, RealMethods(file).xShmMap(RealOf(file), region, size, extend, memory));
}

int ShmLock(sqlite3_file* file, int offset, int count, int flags) {
  return RealMethods(file).xShmLock(RealOf(file), offset, count, flags);
}

void ShmBarrier(sqlite3_file* file) {
  RealMethods(file).xShmBarrier(RealOf(file));
}

int ShmUnmap(sqlite3_file* file, int deletes) {
  return RealMethods(file).xShmUnmap(RealOf(file), deletes);
}

/// The calls of an open file; those for the shared memory of a log from version 2 on.
constexpr sqlite3_io_methods Methods(int version) {
  sqlite3_io_methods methods{};
  methods.iVersion = version;
  methods.xClose = &Close;
  methods.xRead = &Read;
  methods.xWrite = &Write;
  methods.xTruncate = &Truncate;
  methods.xSync = &Sync;
  methods.xFileSize = &FileSize;
  methods.xLock = &Lock;
  methods.xUnlock = &Unlock;
  methods.xCheckReservedLock = &CheckReservedLock;
  methods.xFileControl = &FileControl;
  methods.xSectorSize = &SectorSize;
  methods.xDeviceCharacteristics = &DeviceCharacteristics;
  if (version < 2) return methods;
  methods.xShmMap = &ShmMap;
  methods.xShmLock = &ShmLock;
  methods.xShmBarrier = &ShmBarrier;
  methods.xShmUnmap = &ShmUnmap;
  return methods;
}

constexpr sqlite3_io_methods kPlainMethods = Methods(1);
constexpr sqlite3_io_methods kLoggedMethods = Methods(2);

/// Whether a file system is that of LoggedVfs.
bool IsLogged(const sqlite3_vfs* vfs) {
  return vfs->pAppData != nullptr;
}

bool IsLogName(const char* name) {
  return std::string_view(name).ends_with(kLogEnding);
}

/// Whether SQLite may touch a file of this name for a journal's sake. Notes a refusal.
bool MayTouch(const sqlite3_vfs* vfs, const char* name, int code) {
  if (IsLogged(vfs) && IsLogName(name)) return true;
  if (JournalFence::Lets(name)) return true;
  errno = EPERM;
  NoteFileFault(code, name, "a journal names it, and it is no journal of a database in its place");
  return false;
}

/// Closes what SQLite's own file system may have opened for a file that is not to be.
int GiveUp(File* made, int code) {
  sqlite3_file* const real = RealOf(&made->base);
  if (real->pMethods != nullptr) real->pMethods->xClose(real);
  made->state = nullptr;
  return code;
}

/// Both descriptors, that of the locks and SQLite's own, are of the file to which the path leads.
bool OpenedTheSame(File* file) {
  int moved = 0;
  RealMethods(&file->base).xFileControl(RealOf(&file->base), SQLITE_FCNTL_HAS_MOVED, &moved);
  return moved == 0 && file->state->locks.IsAt(file->state->path);
}

/// Opens the descriptor for the locks of a database and takes from `flags` what cannot be had.
int OpenLocks(FileState& state, int* flags) {
  if (IsOnPlainMedium(state.path)) return SQLITE_OK;
  const bool writing = (*flags & SQLITE_OPEN_READWRITE) != 0;
  const bool making = (*flags & SQLITE_OPEN_CREATE) != 0;
  if (!state.locks.Open(state.path, writing, making ? O_CREAT : 0)) {
    return Noted(SQLITE_CANTOPEN, state.path.c_str(), errno);
  }
  state.native = false;
  if (writing && !state.locks.ForWriting()) {
    *flags = (*flags & ~(SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE)) | SQLITE_OPEN_READONLY;
  }
  return SQLITE_OK;
}

int OpenNamed(sqlite3_vfs* vfs, const char* name, File* file, int flags, int* outFlags) {
  const bool database = (flags & SQLITE_OPEN_MAIN_DB) != 0;
  auto state = std::make_unique<FileState>(name);
  if (database) state->fence.emplace(FolderOf(name));
  if (database && !IsLogged(vfs)) {
    const int code = OpenLocks(*state, &flags);
    if (code != SQLITE_OK) return code;
  }
  file->state = state.get();
  const int code = RealVfs()->xOpen(RealVfs(), name, RealOf(&file->base), flags, outFlags);
  if (code != SQLITE_OK) return GiveUp(file, Noted(code, name, errno));
  if (!state->native && !OpenedTheSame(file)) {
    NoteFileFault(SQLITE_CANTOPEN, name, "another file came into its place");
    return GiveUp(file, SQLITE_CANTOPEN);
  }
  file->base.pMethods = database && IsLogged(vfs) ? &kLoggedMethods : &kPlainMethods;
  // Close takes it back.
  static_cast<void>(state.release());
  return SQLITE_OK;
}

int Open(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  constexpr int kFenced = SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_SUPER_JOURNAL | SQLITE_OPEN_WAL;
  constexpr int kNamed = kFenced | SQLITE_OPEN_MAIN_DB;
  file->pMethods = nullptr;
  try {
    if (name == nullptr || (flags & kNamed) == 0) {
      return RealVfs()->xOpen(RealVfs(), name, file, flags, outFlags);
    }
    if ((flags & kFenced) != 0 && !MayTouch(vfs, name, SQLITE_CANTOPEN)) return SQLITE_CANTOPEN;
    auto* const made = new (file) File{{nullptr}, nullptr};
    RealOf(file)->pMethods = nullptr;
    return OpenNamed(vfs, name, made, flags, outFlags);
  } catch (const std::bad_alloc&) {
    return SQLITE_NOMEM;
  }
}

int Delete(sqlite3_vfs* vfs, const char* name, int flushFolder) {
  try {
    if (!MayTouch(vfs, name, SQLITE_IOERR)) return SQLITE_IOERR_DELETE;
    const int code = RealVfs()->xDelete(RealVfs(), name, flushFolder);
    return code == SQLITE_IOERR_DELETE_NOENT ? code : Noted(code, name, errno);
  } catch (const std::bad_alloc&) {
    return SQLITE_IOERR_NOMEM;
  }
}

int Access(sqlite3_vfs* vfs, const char* name, int flags, int* found) {
  *found = 0;
  if (!IsLogged(vfs) && IsLogName(name)) return SQLITE_OK;
  try {
    if (!MayTouch(vfs, name, SQLITE_IOERR)) return SQLITE_IOERR_ACCESS;
    return Noted(RealVfs()->xAccess(RealVfs(), name, flags, found), name, errno);
  } catch (const std::bad_alloc&) {
    return SQLITE_IOERR_NOMEM;
  }
}

int FullPathname(sqlite3_vfs* /*vfs*/, const char* name, int size, char* path) {
  return RealVfs()->xFullPathname(RealVfs(), name, size, path);
}

int Randomness(sqlite3_vfs* /*vfs*/, int size, char* bytes) {
  return RealVfs()->xRandomness(RealVfs(), size, bytes);
}

int Sleep(sqlite3_vfs* /*vfs*/, int microseconds) {
  return RealVfs()->xSleep(RealVfs(), microseconds);
}

int CurrentTime(sqlite3_vfs* /*vfs*/, double* time) {
  return RealVfs()->xCurrentTime(RealVfs(), time);
}

int GetLastError(sqlite3_vfs* /*vfs*/, int size, char* text) {
  return RealVfs()->xGetLastError(RealVfs(), size, text);
}

int CurrentTimeInt64(sqlite3_vfs* /*vfs*/, sqlite3_int64* time) {
  return RealVfs()->xCurrentTimeInt64(RealVfs(), time);
}

/// Makes a file system known to SQLite, for the rest of the process.
const char* Register(sqlite3_vfs* vfs, const char* name, bool logged) {
  vfs->iVersion = 2;
  vfs->szOsFile = static_cast<int>(sizeof(File)) + RealVfs()->szOsFile;
  vfs->mxPathname = RealVfs()->mxPathname;
  vfs->zName = name;
  vfs->pAppData = logged ? vfs : nullptr;
  vfs->xOpen = &Open;
  vfs->xDelete = &Delete;
  vfs->xAccess = &Access;
  vfs->xFullPathname = &FullPathname;
  vfs->xRandomness = &Randomness;
  vfs->xSleep = &Sleep;
  vfs->xCurrentTime = &CurrentTime;
  vfs->xGetLastError = &GetLastError;
  vfs->xCurrentTimeInt64 = &CurrentTimeInt64;
  if (sqlite3_vfs_register(vfs, 0) != SQLITE_OK) throw std::bad_alloc();
  return name;
}

}  // namespace

const char* LockVfs() {
  static sqlite3_vfs vfs{};
  static const char* const name = Register(&vfs, "refframe", false);
  return name;
}

const char* LoggedVfs() {
  static sqlite3_vfs vfs{};
  static const char* const name = Register(&vfs, "refframe-logged", true);
  return name;
}

}  // namespace QvPlatform::detail
