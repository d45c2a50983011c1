#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/storage/sqlite.h"

/// What a file keeps about its record tables beside the described fields: checksums, counts of
/// changes, and notes on single records. It lies in the file of the records themselves, so that a
/// transaction over the tables of a folder needs no further file.
namespace QvPlatform::detail {

/// Checksum of a record; see RecordSum.
constexpr const char* kSumColumn = "ROW_SUM";
/// Under this word the table itself, as record 0, is noted what it was made to hold.
constexpr const char* kKindNote = "kind";
/// The first version of the layout whose records have checksums.
constexpr int kSummedVersion = 2;

/// One row of `qv_state`: what a record table as a whole has to be.
struct TableState {
  /// Raised by each change of a record. It never goes back, not even when the table is replaced.
  std::int64_t changes = 0;
  /// Number of the records.
  std::int64_t rows = 0;
  /// Sum of the checksums of all records, in 48 bits.
  std::int64_t digest = 0;
  /// Number of the last transaction over several files that wrote to this one; 0 for none.
  std::int64_t seq = 0;
  /// Names of the files of that transaction, with a "/" behind each.
  std::string names;
};

/// Whether the records of the file that a schema names have checksums.
[[nodiscard]] bool HasSums(Connection& connection, const std::string& schema);

/// Makes `qv_state` and `qv_notes`, without rows.
void CreateStateTables(Connection& connection, const std::string& schema);
/// Throws StorageError unless each table of ours that is there is made as we make it. Looks at no
/// table else.
void CheckServiceTables(Connection& connection);

/// The state of a table; nothing for a table without one, which is damage where HasSums.
[[nodiscard]] std::optional<TableState> ReadState(Connection& connection, const std::string& schema,
                                                  const std::string& table);
/// Puts count and digest for a table that is new or was replaced, and raises its changes.
void PutState(Connection& connection, const std::string& table, std::int64_t rows,
              std::int64_t digest);

/// Notes something of a record of a table that has no such note yet.
void PutNote(Connection& connection, const std::string& table, std::int64_t record,
             std::string_view kind, std::string_view value);
/// Copies the notes on the records of a table, if the file that is read has any.
void CopyNotes(Connection& from, const std::string& fromTable, Connection& to,
               const std::string& toTable);

/// SQL that makes `qv_fields`.
[[nodiscard]] std::string FieldsTableSql();
/// SQL that makes the list of blobs.
[[nodiscard]] std::string BlobsTableSql();
/// SQL that makes the parts of the blobs.
[[nodiscard]] std::string BlobPartsTableSql();

}  // namespace QvPlatform::detail
