#include "platform/storage/journal_fence.h"

#include <sys/stat.h>

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/storage/journal_names.h"

namespace QvPlatform::detail {

namespace {

/// The folders of open databases, each with the number of those.
struct OpenFolders {
  std::mutex mutex;
  std::map<std::string, int> folders;
};

OpenFolders& Open() {
  // Stays to the very end of the process: a host may close its last database after all statics.
  static OpenFolders& open = *std::make_unique<OpenFolders>().release();
  return open;
}

bool IsOpenFolder(const std::string& folder) {
  OpenFolders& open = Open();
  const std::lock_guard lock(open.mutex);
  if (open.folders.contains(folder)) return true;
  return std::ranges::any_of(
      open.folders, [&folder](const auto& entry) { return IsSameFolder(entry.first, folder); });
}

}  // namespace

JournalFence::JournalFence(std::string folder) : folder_(std::move(folder)) {
  OpenFolders& open = Open();
  const std::lock_guard lock(open.mutex);
  ++open.folders[folder_];
}

JournalFence::~JournalFence() {
  OpenFolders& open = Open();
  const std::lock_guard lock(open.mutex);
  const auto entry = open.folders.find(folder_);
  if (--entry->second == 0) open.folders.erase(entry);
}

bool JournalFence::Lets(const std::string& path) {
  if (!IsJournalName(path) && !IsSuperJournalName(path)) return false;
  if (!IsOpenFolder(FolderOf(path))) return false;
  struct stat status {};
  return lstat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode);
}

}  // namespace QvPlatform::detail
