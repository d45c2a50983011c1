#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/dbset/data_set.h"
#include "platform/dbset/row.h"

/// The seam between the table engine and what keeps its rows. Nothing above it knows of files.
namespace QvPlatform::detail {

struct LoadedTable {
  TQvDbHeader header;
  std::vector<std::unique_ptr<Row>> rows;
};

/// One table of a store. Failures throw StorageError; a refused change DataSetError.
class TableStore {
 public:
  virtual ~TableStore() = default;

  /// Reads the whole table as it stands at one moment.
  [[nodiscard]] virtual LoadedTable Load() = 0;
  /// A name for the state of the store that the rows in memory mirror; empty if somebody else has
  /// changed the store since they were read, or if their changes are not durable yet.
  [[nodiscard]] virtual std::string MirroredState() = 0;
  /// True if the store still is in that state; the rows kept in memory then stand for a Load.
  [[nodiscard]] virtual bool TakeOver(const std::string& state, const TQvDbHeader& header) = 0;

  [[nodiscard]] virtual std::unique_ptr<Row> ReadRow(std::int64_t id) = 0;
  /// Gives the row its identity, key and version.
  virtual void Insert(Row* row) = 0;
  /// Stores `row` in place of the row `id`, which still has to be of `row`'s version; false if it
  /// is not. The row's generated key may be another than `id`. Sets identity and version.
  [[nodiscard]] virtual bool Update(std::int64_t id, Row* row) = 0;
  /// False if the row is gone or of another version.
  [[nodiscard]] virtual bool Delete(std::int64_t id, std::int64_t version) = 0;

  /// Called, without throwing, when changes that the store had taken are undone.
  void SetUndoHandler(std::function<void()> handler) { undoHandler_ = std::move(handler); }

 protected:
  void TellUndone() const noexcept {
    if (undoHandler_) undoHandler_();
  }

 private:
  std::function<void()> undoHandler_;
};

/// A transaction over several tables. It takes the store's locks at the first write. Destroyed
/// before Commit, it undoes everything.
class StoreTransaction {
 public:
  virtual ~StoreTransaction() = default;
  virtual void BeforeWrite() = 0;
  /// Levels inside the transaction that can be undone by themselves.
  virtual void PushLevel() = 0;
  virtual void ReleaseLevel() = 0;
  virtual void UndoLevel() noexcept = 0;
  virtual void Commit() = 0;
};

[[nodiscard]] std::shared_ptr<TableStore> OpenTableStore(QvDataBufferType type,
                                                         const std::string& name);
/// Throws std::logic_error if the stores cannot share a transaction.
[[nodiscard]] std::unique_ptr<StoreTransaction> BeginTransaction(
    const std::vector<std::shared_ptr<TableStore>>& stores);

}  // namespace QvPlatform::detail
