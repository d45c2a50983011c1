#pragma once

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

  /// The one name of the file.
  [[nodiscard]] std::string Path() const override { return path_; }
  /// The connection of this store alone.
  [[nodiscard]] Session& Own() override { return own_; }
  /// The shared connection of the last group of several files; null if there was none.
  [[nodiscard]] const std::shared_ptr<FileGroup>& Group() const { return group_; }
  /// Keeps the connection that the files of a group share, for the next such group.
  void SetGroup(std::shared_ptr<FileGroup> group);
  /// While a link is given, the table is read and written through it.
  void UseLink(TableLink* link) { groupLink_ = link; }

 protected:
  TableLink& Link() override { return groupLink_ != nullptr ? *groupLink_ : ownLink_; }
  void CheckSound() override;

 private:
  std::string path_;
  Session own_;
  TableLink ownLink_;
  std::shared_ptr<FileGroup> group_;
  TableLink* groupLink_ = nullptr;
};

}  // namespace QvPlatform::detail
