#include "platform/storage/database_recovery.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <list>
#include <map>
#include <set>
#include <vector>

#include "platform/storage/durable.h"
#include "platform/storage/file_locks.h"
#include "platform/storage/journal_names.h"
#include "platform/storage/left_journal.h"
#include "platform/storage/paths.h"
#include "platform/storage/retried.h"
#include "platform/storage/sqlite.h"

namespace QvPlatform::detail {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kTableEnding = ".dat";
constexpr mode_t kUsualMode = 0644;

[[noreturn]] void Fail(const std::string& path, const std::string& doing) {
  throw StorageError("\"" + path + "\" " + doing + ": " + std::strerror(errno));
}

std::string Quoted(const std::string& path) {
  return "\"" + path + "\"";
}

bool IsThere(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0;
}

std::string JournalOf(const std::string& path) {
  return path + std::string(kJournalEnding);
}

/// The super-journals beside a file whose transactions it leads.
std::vector<std::string> SuperJournalsOf(const std::string& path) {
  std::vector<std::string> found;
  std::error_code error;
  fs::directory_iterator entry(FolderOf(path), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const std::string name = entry->path().string();
    if (IsSuperJournalName(name) && name.starts_with(path + "-mj")) found.push_back(name);
  }
  return found;
}

/// A file whose journal waits for its fate.
struct LeftFile {
  std::string path;
  JournalFile journal;
};

/// One run over the files of a database.
class Recovery {
 public:
  Recovery(std::string folder, std::function<void(const std::string&)> tell)
      : folder_(std::move(folder)), tell_(std::move(tell)) {}
  /// `paths` are those of the database's files, also of such as only have a journal.
  void Run(const std::set<std::string>& paths);

 private:
  void LockOut(const std::string& path);
  void Look(const std::string& path);
  void PutAside(const std::string& path, const std::string& why);
  [[nodiscard]] std::string HereOf(const std::string& superJournal) const;
  [[nodiscard]] bool IsUnfinished(const std::string& superJournal) const;
  void Release(const LeftFile& file) const;
  void Finish(const LeftFile& file);
  void RollBack(const std::string& path);
  void RemoveIdle(const std::string& superJournal);

  std::string folder_;
  std::function<void(const std::string&)> tell_;
  // Nobody else reads or writes the files while their journals are changed.
  std::list<FileLocks> locks_;
  // Files with a journal that SQLite may play back by itself.
  std::vector<std::string> interrupted_;
  // By the super-journal that was elsewhere.
  std::map<std::string, std::vector<LeftFile>> moved_;
};

void Recovery::LockOut(const std::string& path) {
  FileLocks& locks = locks_.emplace_back();
  if (!locks.Open(path, true)) Fail(path, "cannot be opened");
  for (const auto level : {FileLocks::Level::kShared, FileLocks::Level::kExclusive}) {
    const FileLocks::Answer answer = locks.Raise(level);
    if (answer == FileLocks::Answer::kHeldByOther) {
      throw StorageError(Quoted(path) + ": another program is using it");
    }
    if (answer == FileLocks::Answer::kFailed) Fail(path, "cannot be locked");
  }
}

void Recovery::PutAside(const std::string& path, const std::string& why) {
  const std::string place = SetAside(path);
  tell_(Quoted(path) + " " + why + "; it is set aside as " + Quoted(place));
}

void Recovery::Look(const std::string& path) {
  const std::string journal = JournalOf(path);
  if (!IsThere(journal)) return;
  if (!IsThere(path)) return PutAside(journal, "belongs to no file");
  LockOut(path);
  struct stat status {};
  if (lstat(journal.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
    return PutAside(journal, "is no plain file");
  }
  LeftFile file{path, ReadJournalFile(journal)};
  switch (JudgeJournal(file.journal, path)) {
    case JournalFault::kNone:
      if (file.journal.isHot) interrupted_.push_back(path);
      break;
    case JournalFault::kElsewhere:
      moved_[file.journal.superJournal].push_back(std::move(file));
      break;
    case JournalFault::kForeignName:
      PutAside(journal, "names a file that is no journal");
      break;
    case JournalFault::kMisfit:
      PutAside(journal, "is left from another file or another state of it");
      break;
  }
}

std::string Recovery::HereOf(const std::string& superJournal) const {
  return folder_ + superJournal.substr(superJournal.rfind('/'));
}

bool Recovery::IsUnfinished(const std::string& superJournal) const {
  if (IsThere(HereOf(superJournal))) return true;
  return std::ranges::any_of(moved_.at(superJournal), [](const LeftFile& file) {
    const auto header = ReadDatabaseHeader(file.path);
    return header && file.journal.changeCounter == header->changeCounter;
  });
}

/// Takes the name of the super-journal off the journal, which then stands for itself.
void Recovery::Release(const LeftFile& file) const {
  const std::string journal = JournalOf(file.path);
  const int descriptor =
      Retried([&] { return open(journal.c_str(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC); });
  if (descriptor < 0) Fail(journal, "cannot be opened");
  const bool done =
      Retried([&] { return ftruncate(descriptor, file.journal.superJournalAt); }) == 0 &&
      Retried([&] { return fsync(descriptor); }) == 0;
  const int reason = errno;
  close(descriptor);
  errno = reason;
  if (!done) Fail(journal, "cannot be written");
}

void Recovery::Finish(const LeftFile& file) {
  if (unlink(JournalOf(file.path).c_str()) != 0) Fail(JournalOf(file.path), "cannot be removed");
  tell_(Quoted(file.path) + ": a finished change needs its journal no more, which is removed");
}

void Recovery::RollBack(const std::string& path) {
  Connection connection = Connection::OpenFile(path);
  // The first read plays the journal back.
  static_cast<void>(connection.QueryInteger("SELECT count(*) FROM sqlite_master"));
  tell_(Quoted(path) + ": an interrupted change is taken back");
}

void Recovery::Run(const std::set<std::string>& paths) {
  for (const std::string& path : paths)
    Look(path);
  std::vector<std::string> superJournals;
  for (const auto& [super, files] : moved_) {
    if (!IsUnfinished(super)) {
      std::ranges::for_each(files, [this](const LeftFile& file) { Finish(file); });
      continue;
    }
    // While this stands here, a run that is interrupted goes on taking back.
    const std::string here = HereOf(super);
    const int descriptor = Retried([&] {
      return open(here.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC, kUsualMode);
    });
    if (descriptor < 0) Fail(here, "cannot be created");
    close(descriptor);
    superJournals.push_back(here);
    SyncFolder(folder_);
    for (const LeftFile& file : files) {
      Release(file);
      interrupted_.push_back(file.path);
    }
  }
  locks_.clear();
  std::ranges::for_each(interrupted_, [this](const std::string& path) { RollBack(path); });
  for (const std::string& super : superJournals) {
    if (unlink(super.c_str()) != 0 && errno != ENOENT) Fail(super, "cannot be removed");
  }
  for (const std::string& path : paths) {
    std::ranges::for_each(SuperJournalsOf(path), [this](const auto& super) { RemoveIdle(super); });
  }
  SyncFolder(folder_);
}

/// By now no journal waits for a super-journal. One that is still there was left before a journal
/// named it, or by a run like this one, unless the file that leads its transaction is being
/// written.
void Recovery::RemoveIdle(const std::string& superJournal) {
  const std::string leader = superJournal.substr(0, superJournal.rfind("-mj"));
  struct stat status {};
  const bool isFile = lstat(superJournal.c_str(), &status) == 0 && S_ISREG(status.st_mode);
  if (!isFile || !IsThere(leader)) return;
  FileLocks locks;
  if (!locks.Open(leader, true)) return;
  for (const auto level : {FileLocks::Level::kShared, FileLocks::Level::kExclusive}) {
    if (locks.Raise(level) != FileLocks::Answer::kGranted) return;
  }
  if (unlink(superJournal.c_str()) != 0) Fail(superJournal, "cannot be removed");
  tell_(Quoted(superJournal) + " is needed no more and is removed");
}

/// The table files of a folder, and those that are not there but for their journal.
std::set<std::string> TableFilesIn(const std::string& folder) {
  std::set<std::string> paths;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    std::string path = entry->path().string();
    if (path.ends_with(kJournalEnding)) path.resize(path.size() - kJournalEnding.size());
    if (path.ends_with(kTableEnding)) paths.insert(std::move(path));
  }
  if (error) throw StorageError(Quoted(folder) + " cannot be read: " + error.message());
  return paths;
}

}  // namespace

void RecoverDatabase(const std::string& name, const std::function<void(const std::string&)>& tell) {
  const std::string path = CanonicalPath(name);
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) Fail(path, "cannot be read");
  if (S_ISDIR(status.st_mode)) {
    Recovery(path, tell).Run(TableFilesIn(path));
    return;
  }
  Recovery(FolderOf(path), tell).Run({path});
  const std::optional<DatabaseHeader> header = ReadDatabaseHeader(path);
  if (!header || header->isLogged) return;
  for (const std::string_view ending : {kLogEnding, kLogIndexEnding}) {
    const std::string log = path + std::string(ending);
    if (IsThere(log))
      tell(Quoted(log) + " is a log of another database; it is set aside as " +
           Quoted(SetAside(log)));
  }
}

}  // namespace QvPlatform::detail
