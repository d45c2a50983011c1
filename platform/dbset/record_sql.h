#pragma once

#include <string>
#include <vector>

#include "platform/dbset/db_header.h"

namespace QvPlatform::detail {

/// The statements over the records of one table as one connection sees it.
class RecordSql {
 public:
  /// The statements of the table in the file of a schema; `header`, which has to outlive this,
  /// declares its fields, and `hasSums` says whether its records have checksums.
  RecordSql(std::string schema, std::string table, const TQvDbHeader& header, bool hasSums);

  /// Reads all records by their identity. The columns are identity, version, checksum and the
  /// fields.
  [[nodiscard]] std::string ReadAll() const;
  /// Reads the record of one identity, with the same columns.
  [[nodiscard]] std::string ReadOne() const;
  /// Reads identity, version and checksum of all records by their identity.
  [[nodiscard]] std::string ReadMarks() const;
  /// Reads the checksum of one identity.
  [[nodiscard]] std::string ReadSum() const;
  /// Adds a record: identity, checksum, and the fields but for the generated key.
  [[nodiscard]] std::string Insert() const;
  /// Changes a record: the same, and then the identity and the version that it has to have.
  [[nodiscard]] std::string Update() const;
  /// Deletes a record of an identity and a version.
  [[nodiscard]] std::string Delete() const;
  /// Gives the last key that was given away.
  [[nodiscard]] std::string LastKey() const;
  /// Counts a change: by how much the number of records and the digest rise.
  [[nodiscard]] std::string Count() const;
  /// Reads how many changes the table has seen.
  [[nodiscard]] std::string Changes() const;

 private:
  [[nodiscard]] std::string FullName() const;
  [[nodiscard]] std::string Service(const char* table) const;
  [[nodiscard]] std::string Sum() const;
  [[nodiscard]] std::string Columns() const;
  [[nodiscard]] std::string OneRow() const;
  [[nodiscard]] std::vector<std::string> OwnFields() const;

  std::string schema_;
  std::string table_;
  const TQvDbHeader& header_;
  bool hasSums_;
  std::string key_;
};

}  // namespace QvPlatform::detail
