#pragma once

#include <optional>
#include <string>
#include <utility>

#include "platform/storage/session.h"

namespace QvPlatform::detail {

/// A record table as one connection sees it, with the statements prepared so far.
class TableLink {
 public:
  /// The session has to outlive the link; `schema` is what its connection calls the file.
  TableLink(Session& session, std::string schema, std::string table)
      : session_(session), schema_(std::move(schema)), table_(std::move(table)) {}

  /// The connection with its transactions.
  [[nodiscard]] Session& Transactions() const { return session_; }
  /// What the connection calls the file.
  [[nodiscard]] const std::string& Schema() const { return schema_; }
  /// Name of the table in the file.
  [[nodiscard]] const std::string& Table() const { return table_; }
  /// Schema and table as SQL writes them.
  [[nodiscard]] std::string FullName() const {
    return QuoteName(schema_) + "." + QuoteName(table_);
  }

  /// Forgets the statements, which are made for tables with checksums or for those without.
  void MakeAnew(bool forSums) {
    if (sums_ == forSums) return;
    sums_ = forSums;
    for (auto* statement : {&insert, &update, &remove, &read, &nextKey, &count, &changes})
      statement->reset();
  }

  /// Adds a record; empty until it is first prepared, as are the others.
  std::optional<Statement> insert;
  /// Changes a record of a known version.
  std::optional<Statement> update;
  /// Deletes a record of a known version.
  std::optional<Statement> remove;
  /// Reads one record.
  std::optional<Statement> read;
  /// Gives the last key of the table.
  std::optional<Statement> nextKey;
  /// Counts a change in the state of the table.
  std::optional<Statement> count;
  /// Reads how many changes the table has seen.
  std::optional<Statement> changes;

 private:
  Session& session_;
  std::string schema_;
  std::string table_;
  bool sums_ = false;
};

}  // namespace QvPlatform::detail
