#pragma once

#include <cstdint>
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

  std::string MirroredState() override;
  bool TakeOver(const std::string& state, const TQvDbHeader& header) override;
  void Insert(Row* row) override;
  bool Update(std::int64_t id, Row* row) override;
  bool Delete(std::int64_t id, std::int64_t version) override;
  void OnCommitted() override {}
  void OnRolledBack() noexcept override;

  /// The container, whose connection all of its tables share.
  [[nodiscard]] const std::shared_ptr<Container>& Owner() const { return container_; }

 protected:
  TableLink& Link() override { return link_; }
  void CheckSound() override;
  void NoteLoaded() override;

 private:
  [[nodiscard]] std::int64_t DataVersion();
  [[nodiscard]] std::string StateNow();
  void NoteChange();

  std::shared_ptr<Container> container_;
  TableLink link_;
  /// The rows in memory are those of the container at this version by others and at this count of
  /// changes by this process.
  std::int64_t version_ = -1;
  std::uint64_t changes_ = 0;
};

}  // namespace QvPlatform::detail
