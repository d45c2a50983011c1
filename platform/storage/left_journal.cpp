#include "platform/storage/left_journal.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <exception>

#include "platform/storage/durable.h"
#include "platform/storage/file_locks.h"
#include "platform/storage/journal_names.h"
#include "platform/storage/paths.h"
#include "platform/storage/sqlite.h"

namespace QvPlatform::detail {

namespace {

/// How often a misfit is looked at before it is believed: a writer may have ended one transaction
/// and begun another between the two files' reading.
constexpr int kLooks = 3;
constexpr int kMostNames = 10000;

std::string JournalOf(const std::string& path) {
  return path + std::string(kJournalEnding);
}

bool IsThere(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0;
}

/// Somebody is in the middle of a transaction with the file: its journal is none that was left.
bool HasWriter(const std::string& path) {
  FileLocks locks;
  bool found = false;
  return locks.Open(path, false) && locks.FindWriter(&found) == FileLocks::Answer::kGranted &&
         found;
}

std::string Quoted(const std::string& path) {
  return "\"" + path + "\"";
}

}  // namespace

JournalFault JudgeJournal(const JournalFile& journal, const std::string& path) {
  if (!journal.isHot) return JournalFault::kNone;
  if (!Fits(journal, ReadDatabaseHeader(path))) return JournalFault::kMisfit;
  const std::string& super = journal.superJournal;
  if (super.empty()) return JournalFault::kNone;
  if (!IsSuperJournalName(super)) return JournalFault::kForeignName;
  const bool here = IsSameFolder(FolderOf(super), FolderOf(path));
  return here ? JournalFault::kNone : JournalFault::kElsewhere;
}

JournalFault JudgeLeftJournal(const std::string& path) {
  JournalFault fault = JournalFault::kNone;
  for (int look = 0; look < kLooks; ++look) {
    fault = JudgeJournal(ReadJournalFile(JournalOf(path)), path);
    if (fault == JournalFault::kNone || HasWriter(path)) return JournalFault::kNone;
  }
  return fault;
}

void CheckLeftJournal(const std::string& name) {
  // SQLite looks for the journal beside the file to which a link leads.
  struct stat status {};
  const bool isLink = lstat(name.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
  const std::string path = isLink ? CanonicalPath(name) : name;
  const std::string journal = Quoted(JournalOf(path));
  switch (JudgeLeftJournal(path)) {
    case JournalFault::kNone:
      return;
    case JournalFault::kElsewhere:
      throw StorageError(Quoted(path) +
                         " was moved or copied in the middle of a change over several files, of "
                         "which " +
                         journal +
                         " is left; \"refframe recover\" finishes the change or takes it back");
    case JournalFault::kForeignName:
      throw StorageError(Quoted(path) + " is not opened: " + journal +
                         " beside it names a file that is none of its own; \"refframe recover\" "
                         "sets it aside");
    case JournalFault::kMisfit:
      throw StorageError(Quoted(path) + " is not opened: " + journal +
                         " beside it is left from another file or another state of it; \"refframe "
                         "recover\" sets it aside");
  }
}

void SettleLeftJournal(const std::string& path) noexcept {
  try {
    const JournalFile journal = ReadJournalFile(JournalOf(path));
    if (!journal.isHot || !journal.isSound) return;
  } catch (const std::exception&) {
    return;
  }
  try {
    Connection connection = Connection::OpenFile(path);
    // The first read rolls back what the journal holds.
    static_cast<void>(connection.QueryInteger("SELECT count(*) FROM sqlite_master"));
  } catch (const std::exception&) {
    // No table file after all, or one past saving: what stands there is about to be replaced.
  }
  unlink(JournalOf(path).c_str());
}

std::string SetAside(const std::string& path) {
  for (int number = 1; number < kMostNames; ++number) {
    std::string free = path + ".left" + (number == 1 ? std::string() : std::to_string(number));
    if (MoveToFreePlace(path, free)) {
      SyncFolder(FolderOf(free));
      return free;
    }
    if (errno != EEXIST) break;
  }
  throw StorageError(Quoted(path) + " cannot be set aside: " + std::strerror(errno));
}

void SettleOrphans(const std::string& path, const std::function<void(const std::string&)>& tell) {
  const std::string journal = JournalOf(path);
  if (IsThere(journal)) {
    const JournalFile left = ReadJournalFile(journal);
    const bool isJournal = !left.isHot || left.isSound;
    if (isJournal && unlink(journal.c_str()) != 0) {
      throw StorageError(Quoted(journal) + " cannot be removed: " + std::strerror(errno));
    }
    if (!isJournal) tell(Quoted(journal) + " is set aside as " + Quoted(SetAside(journal)));
  }
  for (const std::string_view ending : {kLogEnding, kLogIndexEnding}) {
    const std::string log = path + std::string(ending);
    if (!IsThere(log)) continue;
    tell(Quoted(log) + " is left from a database that is gone, and set aside as " +
         Quoted(SetAside(log)));
  }
}

}  // namespace QvPlatform::detail
