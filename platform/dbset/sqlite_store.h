#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/dbset/table_store.h"
#include "platform/storage/container.h"
#include "platform/storage/session.h"

namespace QvPlatform::detail {

/// A record table as one connection sees it, with the statements prepared so far.
class TableLink {
 public:
  TableLink(Session& session, std::string schema, std::string table)
      : session_(session), schema_(std::move(schema)), table_(std::move(table)) {}

  [[nodiscard]] Session& Transactions() const { return session_; }
  [[nodiscard]] const std::string& Schema() const { return schema_; }
  [[nodiscard]] const std::string& Table() const { return table_; }
  [[nodiscard]] std::string FullName() const {
    return QuoteName(schema_) + "." + QuoteName(table_);
  }

  std::optional<Statement> insert;
  std::optional<Statement> update;
  std::optional<Statement> remove;
  std::optional<Statement> read;

 private:
  Session& session_;
  std::string schema_;
  std::string table_;
};

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

class FileGroup;

/// A table file.
class FileStore final : public SqliteStore {
 public:
  explicit FileStore(const std::string& path);
  ~FileStore() override;

  std::string MirroredState() override;
  bool TakeOver(const std::string& state, const TQvDbHeader& header) override;
  void OnCommitted() override;
  void OnRolledBack() noexcept override;

  [[nodiscard]] const std::string& Path() const { return path_; }
  [[nodiscard]] Session& Own() { return own_; }
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

/// A record table of a container.
class ContainerStore final : public SqliteStore {
 public:
  explicit ContainerStore(const std::string& name);
  ~ContainerStore() override;

  std::string MirroredState() override;
  bool TakeOver(const std::string& state, const TQvDbHeader& header) override;
  void Insert(Row* row) override;
  bool Update(std::int64_t id, Row* row) override;
  bool Delete(std::int64_t id, std::int64_t version) override;
  void OnCommitted() override {}
  void OnRolledBack() noexcept override;

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
