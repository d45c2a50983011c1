#pragma once

#include <optional>
#include <string>
#include <utility>

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

}  // namespace QvPlatform::detail
