#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/dbset/record_sql.h"
#include "platform/dbset/table_link.h"
#include "platform/dbset/table_store.h"
#include "platform/storage/record_sum.h"
#include "platform/storage/table_state.h"

namespace QvPlatform::detail {

/// What table files and tables of containers have in common.
class SqliteStore : public TableStore, public TransactionListener {
 public:
  LoadedTable Load() override;
  bool HasMoved() override;
  std::optional<TableChanges> LoadChanges(std::span<const RecordMark> known) override;
  bool IsReplaced() override;
  std::shared_ptr<void> Hold() override;
  std::string MirroredState() override;
  bool TakeOver(const std::string& state, const TQvDbHeader& header) override;
  std::unique_ptr<Row> ReadRow(std::int64_t id) override;
  void Insert(Row* row) override;
  bool Update(std::int64_t id, Row* row) override;
  bool Delete(const Row& row) override;
  std::int64_t LastKey() override;
  void RaiseLastKey(std::int64_t key) override;
  std::optional<std::string> Note(std::int64_t id, std::string_view kind) override;
  void SetNote(std::int64_t id, std::string_view kind, std::string_view value) override;
  std::vector<std::string> FindDamage() override;
  GroupMark LastGroup() override;
  bool TakesPart() const override { return before_.has_value(); }
  CommitOutcome Outcome() override;

  void OnCommitted() override;
  void OnRolledBack() noexcept override;

 protected:
  /// Where to read and write at this moment.
  [[nodiscard]] virtual TableLink& Link() = 0;
  /// The connection that is the store's outside of groups.
  [[nodiscard]] virtual Session& Own() = 0;
  /// Path of the file.
  [[nodiscard]] virtual std::string Path() const = 0;
  /// Throws StorageError unless this is a sound table; sets the header.
  virtual void CheckSound() = 0;

  void SetHeader(const TQvDbHeader& header);

 private:
  class Change;

  [[nodiscard]] Connection& Db() { return Link().Transactions().Db(); }
  [[nodiscard]] std::string StateNow();
  [[nodiscard]] std::int64_t ReadChanges();
  [[nodiscard]] bool IsCurrent();
  void NoteLoaded(const TableState& state);
  void TakeSums();
  [[nodiscard]] TableState RequireState();
  void RequireWhole(const TableState& state, std::size_t rows, std::int64_t digest);
  [[nodiscard]] std::vector<RecordMark> ReadMarks(const TableState& state);
  [[noreturn]] void RefuseDamaged(const std::string& what);

  [[nodiscard]] std::unique_ptr<Row> RowFrom(Statement& query);
  [[nodiscard]] Cell CellFrom(Statement& query, int column, const TQvDbField& field) const;
  [[nodiscard]] std::int64_t SumOf(std::int64_t id, std::int64_t version,
                                   const std::vector<Cell>& cells);
  [[nodiscard]] std::int64_t StoredSum(std::int64_t id);
  [[nodiscard]] RecordSql Sql();
  Statement& Prepared(std::optional<Statement> TableLink::*statement,
                      std::string (RecordSql::*makeSql)() const);
  void BindFields(Statement& statement, const Row& row, std::int64_t id, std::int64_t sum) const;
  void BeginChange();
  void CountChange(int rows, std::int64_t digest);

  TQvDbHeader header_;
  int keyField_ = -1;
  RecordSum sum_;
  /// Whether the file has checksums.
  bool summed_ = false;
  /// The rows in memory are those of the table after this number of changes; older files have none,
  /// and are known by the change counter of their head.
  std::int64_t changes_ = 0;
  /// The counter in the head of the file when that was last found.
  std::uint32_t counter_ = 0;
  bool loaded_ = false;
  /// The number of changes ahead of the transaction that is open, once it has changed the table.
  std::optional<std::int64_t> before_;
  /// The numbers ahead of and behind a transaction that was undone.
  std::int64_t undoneFrom_ = 0;
  std::int64_t undoneTo_ = 0;
};

}  // namespace QvPlatform::detail
