#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dbset/db_header.h"
#include "platform/dbset/group_mark.h"
#include "platform/dbset/record_mark.h"
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

/// What has become of a table since it was read.
struct TableChanges {
  /// Records that are new or were changed.
  std::vector<std::unique_ptr<Row>> written;
  /// Identities of the records that are gone.
  std::vector<std::int64_t> removed;
};

/// How a group of changes has ended whose commit has failed.
enum class CommitOutcome { kUndone, kCommitted, kUnknown };

/// One table of a store. Failures throw StorageError; a refused change throws DataSetError.
class TableStore {
 public:
  virtual ~TableStore() = default;

  /// Reads the whole table as it stands at one moment. Throws StorageError also where a record or
  /// the table is not what was written.
  [[nodiscard]] virtual LoadedTable Load() = 0;
  /// Whether somebody else has changed the table since it was loaded. Costs the reading of a
  /// counter as long as nobody has written to the store.
  [[nodiscard]] virtual bool HasMoved() = 0;
  /// Brings what was loaded up to date. `known` are the marks of the rows in memory, by rising
  /// identity. Nothing if the table has to be loaded as a whole.
  [[nodiscard]] virtual std::optional<TableChanges> LoadChanges(
      std::span<const RecordMark> known) = 0;
  /// Whether another file, or none, has come into the place of the one that is open.
  [[nodiscard]] virtual bool IsReplaced() = 0;
  /// As long as the result lives, nobody commits to the store, and all that is read here is of one
  /// moment. No change can be made meanwhile.
  [[nodiscard]] virtual std::shared_ptr<void> Hold() = 0;
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
  [[nodiscard]] virtual bool Delete(const Row& row) = 0;

  /// The last key that the table has given away, 0 for none.
  [[nodiscard]] virtual std::int64_t LastKey() = 0;
  /// New records get keys behind this one.
  virtual void RaiseLastKey(std::int64_t key) = 0;
  /// What is noted of a record under a word; nothing if nothing is.
  [[nodiscard]] virtual std::optional<std::string> Note(std::int64_t id, std::string_view kind) = 0;
  /// Notes something of a record, in the place of what was noted under the word before. The notes
  /// of a record go with it.
  virtual void SetNote(std::int64_t id, std::string_view kind, std::string_view value) = 0;

  /// What is wrong with the store as a file, found by reading all of it; nothing if it is sound.
  [[nodiscard]] virtual std::vector<std::string> FindDamage() = 0;
  /// The last group over several files that wrote here.
  [[nodiscard]] virtual GroupMark LastGroup() = 0;
  /// Whether the transaction that is open has changed this table.
  [[nodiscard]] virtual bool TakesPart() const = 0;
  /// What became of the changes of this table after a commit has failed.
  [[nodiscard]] virtual CommitOutcome Outcome() = 0;

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
