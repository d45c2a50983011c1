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

  /// Adds a record; empty until it is first prepared, as are the other three.
  std::optional<Statement> insert;
  /// Changes a record of a known version.
  std::optional<Statement> update;
  /// Deletes a record of a known version.
  std::optional<Statement> remove;
  /// Reads one record.
  std::optional<Statement> read;

 private:
  Session& session_;
  std::string schema_;
  std::string table_;
};

}  // namespace QvPlatform::detail
