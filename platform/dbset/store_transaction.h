#pragma once

#include <memory>
#include <vector>

#include "platform/dbset/table_store.h"

namespace QvPlatform::detail {

/// A transaction over several tables. It takes the store's locks at the first write. Destroyed
/// before Commit, it undoes everything.
class StoreTransaction {
 public:
  virtual ~StoreTransaction() = default;
  /// Has to be called ahead of each change. Throws StorageError where the locks cannot be had, or
  /// where the store has given the transaction up.
  virtual void BeforeWrite() = 0;
  /// Opens a level inside the transaction that can be undone by itself; levels nest.
  virtual void PushLevel() = 0;
  /// Closes the innermost level; its changes belong to the level around. Throws StorageError.
  virtual void ReleaseLevel() = 0;
  /// Closes the innermost level and undoes its changes.
  virtual void UndoLevel() noexcept = 0;
  /// All changes are durable when it returns. Throws StorageError where that is not sure.
  virtual void Commit() = 0;
  /// Undoes everything, if the transaction is still open.
  virtual void Undo() noexcept = 0;
};

/// Makes a transaction over these stores, which it keeps alive. Throws std::logic_error if they
/// cannot share one.
[[nodiscard]] std::unique_ptr<StoreTransaction> BeginTransaction(
    const std::vector<std::shared_ptr<TableStore>>& stores);

}  // namespace QvPlatform::detail
