#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/dbset/table_link.h"
#include "platform/dbset/table_store.h"

namespace QvPlatform::detail {

/// What table files and tables of containers have in common.
class SqliteStore : public TableStore, public TransactionListener {
 public:
  LoadedTable Load() override;
  std::unique_ptr<Row> ReadRow(std::int64_t id) override;
  void Insert(Row* row) override;
  bool Update(std::int64_t id, Row* row) override;
  bool Delete(std::int64_t id, std::int64_t version) override;

 protected:
  /// Where to read and write at this moment.
  [[nodiscard]] virtual TableLink& Link() = 0;
  /// Throws StorageError unless this is a sound table.
  virtual void CheckSound() = 0;
  /// Inside the read transaction of Load.
  virtual void NoteLoaded() = 0;

  void SetHeader(const TQvDbHeader& header);

 private:
  [[nodiscard]] std::unique_ptr<Row> RowFrom(Statement& query) const;
  [[nodiscard]] Cell CellFrom(Statement& query, int column, const TQvDbField& field) const;
  [[nodiscard]] std::string ColumnList() const;
  [[nodiscard]] std::string OneRowCondition() const;
  [[nodiscard]] std::string InsertSql();
  [[nodiscard]] std::string UpdateSql();
  [[nodiscard]] std::string DeleteSql();
  [[nodiscard]] std::string ReadSql();
  Statement& Prepared(std::optional<Statement> TableLink::*statement,
                      std::string (SqliteStore::*makeSql)());
  int BindFields(Statement& statement, const Row& row, bool withKey) const;
  void RaiseLastKey(std::int64_t key);

  TQvDbHeader header_;
  std::string keyColumn_;
  int keyField_ = -1;
};

}  // namespace QvPlatform::detail
