#pragma once

#include <memory>
#include <string>

#include "platform/dbset/sqlite_store.h"
#include "platform/storage/container.h"

namespace QvPlatform::detail {

/// A record table of a container.
class ContainerStore final : public SqliteStore {
 public:
  /// Opens by the full name of the resource. Throws StorageError where there is no such container.
  explicit ContainerStore(const std::string& name);
  ~ContainerStore() override;

  /// The container, whose connection all of its tables share.
  [[nodiscard]] const std::shared_ptr<Container>& Owner() const { return container_; }

 protected:
  TableLink& Link() override { return link_; }
  Session& Own() override { return container_->Transactions(); }
  std::string Path() const override { return path_; }
  void CheckSound() override;

 private:
  std::string path_;
  std::shared_ptr<Container> container_;
  TableLink link_;
};

}  // namespace QvPlatform::detail
