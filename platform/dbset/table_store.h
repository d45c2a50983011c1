#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/dbset/db_header.h"
#include "platform/dbset/row.h"

/// The seam between the table engine and what keeps its rows. Nothing above it knows of files.
namespace QvPlatform::detail {

/// A table as it was read.
struct LoadedTable {
  /// How the store declares the table.
  TQvDbHeader header;
  /// All records, with their identities and versions, in the order of their making.
  std::vector<std::unique_ptr<Row>> rows;
};

/// One table of a store. Failures throw StorageError; a refused change throws DataSetError.
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

  /// The record of this identity as it stands now; null if there is none.
  [[nodiscard]] virtual std::unique_ptr<Row> ReadRow(std::int64_t id) = 0;
  /// Gives the row its identity, key and version.
  virtual void Insert(Row* row) = 0;
  /// Stores `row` in place of the row `id`, which still has to be of `row`'s version; false if it
  /// is not. The row's generated key may be another than `id`. Sets identity and version.
  [[nodiscard]] virtual bool Update(std::int64_t id, Row* row) = 0;
  /// False if the row is gone or of another version.
  [[nodiscard]] virtual bool Delete(std::int64_t id, std::int64_t version) = 0;

  /// The handler is called, and must not throw, when changes that the store had taken are undone.
  void SetUndoHandler(std::function<void()> handler) { undoHandler_ = std::move(handler); }

 protected:
  void TellUndone() const noexcept {
    if (undoHandler_) undoHandler_();
  }

 private:
  std::function<void()> undoHandler_;
};

}  // namespace QvPlatform::detail
