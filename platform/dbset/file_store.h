#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/dbset/sqlite_store.h"

namespace QvPlatform::detail {

class FileGroup;

/// A table file.
class FileStore final : public SqliteStore {
 public:
  /// Throws StorageError where there is no file or one of another kind.
  explicit FileStore(const std::string& path);
  ~FileStore() override;

  std::string MirroredState() override;
  bool TakeOver(const std::string& state, const TQvDbHeader& header) override;
  void OnCommitted() override;
  void OnRolledBack() noexcept override;

  /// The one name of the file.
  [[nodiscard]] const std::string& Path() const { return path_; }
  /// The connection of this store alone.
  [[nodiscard]] Session& Own() { return own_; }
  /// The shared connection of the last group of several files; null if there was none.
  [[nodiscard]] const std::shared_ptr<FileGroup>& Group() const { return group_; }
  /// Keeps the connection that the files of a group share, for the next such group.
  void SetGroup(std::shared_ptr<FileGroup> group);
  /// The rows in memory no longer count as what the file holds.
  void ForgetState() { mirrors_ = false; }
  /// While a link is given, the table is read and written through it.
  void UseLink(TableLink* link) { groupLink_ = link; }

 protected:
  TableLink& Link() override { return groupLink_ != nullptr ? *groupLink_ : ownLink_; }
  void CheckSound() override;
  void NoteLoaded() override;

 private:
  [[nodiscard]] std::uint32_t ChangeCounter();
  [[nodiscard]] std::string StateNow();

  std::string path_;
  Session own_;
  TableLink ownLink_;
  std::shared_ptr<FileGroup> group_;
  TableLink* groupLink_ = nullptr;
  /// The rows in memory are those of the file at this change counter, which each transaction of
  /// whatever process raises by one.
  bool mirrors_ = false;
  std::uint32_t counter_ = 0;
};

}  // namespace QvPlatform::detail
