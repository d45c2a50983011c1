#include "platform/storage/table_state.h"

#include <array>

namespace QvPlatform::detail {

namespace {

struct ServiceTable {
  std::string_view name;
  /// All that SQLite keeps of the statement that makes it, behind its name.
  std::string_view columns;
};

constexpr ServiceTable kFields{
    "qv_fields",
    " (table_name TEXT NOT NULL COLLATE NOCASE, position INTEGER NOT NULL, name TEXT NOT NULL, "
    "type INTEGER NOT NULL, required INTEGER NOT NULL, length INTEGER NOT NULL, "
    "PRIMARY KEY (table_name, position)) STRICT, WITHOUT ROWID"};
constexpr ServiceTable kState{
    "qv_state",
    " (table_name TEXT NOT NULL COLLATE NOCASE PRIMARY KEY, changes INTEGER NOT NULL, "
    "rows INTEGER NOT NULL, digest INTEGER NOT NULL, seq INTEGER NOT NULL, names TEXT NOT NULL) "
    "STRICT, WITHOUT ROWID"};
constexpr ServiceTable kNotes{
    "qv_notes",
    " (table_name TEXT NOT NULL COLLATE NOCASE, record INTEGER NOT NULL, kind TEXT NOT NULL, "
    "value TEXT NOT NULL, PRIMARY KEY (table_name, record, kind)) STRICT, WITHOUT ROWID"};
constexpr ServiceTable kBlobs{"qv_blobs",
                              " (id INTEGER PRIMARY KEY AUTOINCREMENT, "
                              "name TEXT NOT NULL UNIQUE COLLATE NOCASE, size INTEGER NOT NULL) "
                              "STRICT"};
constexpr ServiceTable kBlobParts{"qv_blob_parts",
                                  " (blob INTEGER NOT NULL, part INTEGER NOT NULL, "
                                  "data BLOB NOT NULL, UNIQUE (blob, part)) STRICT"};
constexpr std::array kServiceTables{kFields, kState, kNotes, kBlobs, kBlobParts};

std::string MakingSql(const ServiceTable& table, std::string_view schema = {}) {
  std::string sql = "CREATE TABLE ";
  if (!schema.empty()) sql += QuoteName(schema) + '.';
  sql.append(table.name);
  sql.append(table.columns);
  return sql;
}

}  // namespace

bool HasSums(Connection& connection, const std::string& schema) {
  return connection.QueryInteger("PRAGMA " + QuoteName(schema) + ".user_version") >= kSummedVersion;
}

void CreateStateTables(Connection& connection, const std::string& schema) {
  connection.Execute(MakingSql(kState, schema) + ';' + MakingSql(kNotes, schema));
}

void CheckServiceTables(Connection& connection) {
  Statement query = connection.Prepare(
      "SELECT name, type, sql FROM sqlite_master WHERE lower(tbl_name) LIKE 'qv@_%' ESCAPE '@' "
      "AND sql IS NOT NULL");
  while (query.Step()) {
    const std::string name(query.ColumnText(0));
    bool known = false;
    for (const ServiceTable& table : kServiceTables)
      known = known || (name == table.name && query.ColumnText(2) == MakingSql(table));
    if (!known) {
      throw StorageError("\"" + connection.Name() + "\" holds a table \"" + name +
                         "\" that is not made as it has to be");
    }
  }
}

std::optional<TableState> ReadState(Connection& connection, const std::string& schema,
                                    const std::string& table) {
  Statement query = connection.Prepare("SELECT changes, rows, digest, seq, names FROM " +
                                       QuoteName(schema) + ".qv_state WHERE table_name = ?");
  query.BindText(1, table);
  if (!query.Step()) return std::nullopt;
  return TableState{query.ColumnInteger(0), query.ColumnInteger(1), query.ColumnInteger(2),
                    query.ColumnInteger(3), std::string(query.ColumnText(4))};
}

void PutState(Connection& connection, const std::string& table, std::int64_t rows,
              std::int64_t digest) {
  Statement put = connection.Prepare(
      "INSERT INTO qv_state VALUES (?1, 1, ?2, ?3, 0, '') ON CONFLICT (table_name) DO UPDATE SET "
      "changes = changes + 1, rows = ?2, digest = ?3");
  put.BindText(1, table);
  put.BindInteger(2, rows);
  put.BindInteger(3, digest);
  put.Run();
}

void PutNote(Connection& connection, const std::string& table, std::int64_t record,
             std::string_view kind, std::string_view value) {
  Statement put = connection.Prepare("INSERT INTO qv_notes VALUES (?, ?, ?, ?)");
  put.BindText(1, table);
  put.BindInteger(2, record);
  put.BindText(3, kind);
  put.BindText(4, value);
  put.Run();
}

void CopyNotes(Connection& from, const std::string& fromTable, Connection& to,
               const std::string& toTable) {
  if (!HasSums(from, "main")) return;
  Statement read = from.Prepare("SELECT record, kind, value FROM qv_notes WHERE table_name = ?");
  read.BindText(1, fromTable);
  while (read.Step())
    PutNote(to, toTable, read.ColumnInteger(0), read.ColumnText(1), read.ColumnText(2));
}

std::string FieldsTableSql() {
  return MakingSql(kFields);
}

std::string BlobsTableSql() {
  return MakingSql(kBlobs);
}

std::string BlobPartsTableSql() {
  return MakingSql(kBlobParts);
}

}  // namespace QvPlatform::detail
