#include "platform/storage/table_format.h"

#include <algorithm>
#include <array>

#include "platform/text/ascii.h"

namespace QvPlatform::detail {

namespace {

constexpr std::size_t kMaxNameLength = 64;
constexpr std::string_view kMagic("SQLite format 3\0", 16);

/// Places in the header of an SQLite file; numbers there are big-endian.
constexpr std::size_t kWriteVersionAt = 18;
constexpr std::size_t kReadVersionAt = 19;
constexpr std::size_t kApplicationIdAt = 68;
/// Value of the two version bytes of a file that needs a write-ahead log beside it.
constexpr char kLogVersion = 2;

/// Codes of fields as their declaration gives them.
constexpr int kText = 1;
constexpr int kFloat = 2;
constexpr int kInteger = 3;
constexpr int kDateTime = 6;
constexpr int kMandatory = 1;
constexpr int kGeneratedKey = 2;

/// SQL type of a field, empty for a type that there is not.
std::string_view SqlType(int type) {
  switch (type) {
    case kText:
      return "TEXT";
    case kFloat:
    case kDateTime:
      return "REAL";
    case kInteger:
      return "INTEGER";
    default:
      return {};
  }
}

std::string ColumnSql(const FieldDescription& field) {
  std::string sql = QuoteName(field.name) + ' ';
  sql += SqlType(field.type);
  if (field.need == kGeneratedKey) sql += " PRIMARY KEY AUTOINCREMENT";
  if (field.need == kMandatory) sql += " NOT NULL";
  return sql;
}

bool HasGeneratedKey(const std::vector<FieldDescription>& fields) {
  return std::ranges::any_of(fields, [](const auto& field) { return field.need == kGeneratedKey; });
}

/// The statement that makes a table. SQLite keeps its text, so that it also tells whether a table
/// found in a file is what its description says.
std::string TableSql(const std::string& table, const std::vector<FieldDescription>& fields) {
  std::string sql = "CREATE TABLE " + QuoteName(table) + " (";
  if (!HasGeneratedKey(fields)) {
    sql += QuoteName(kHiddenKey) + " INTEGER PRIMARY KEY AUTOINCREMENT, ";
  }
  for (const FieldDescription& field : fields)
    sql += ColumnSql(field) + ", ";
  return sql + QuoteName(kVersionColumn) + " INTEGER NOT NULL) STRICT";
}

std::string AllColumns(const std::vector<FieldDescription>& fields) {
  std::string list = QuoteName(kVersionColumn);
  if (!HasGeneratedKey(fields)) list += ", " + QuoteName(kHiddenKey);
  for (const FieldDescription& field : fields)
    list += ", " + QuoteName(field.name);
  return list;
}

[[noreturn]] void Refuse(const Connection& connection, const std::string& reason) {
  throw StorageError("\"" + connection.Name() + "\" " + reason);
}

void CheckField(const Connection& connection, const std::vector<FieldDescription>& before,
                const FieldDescription& field) {
  const bool goodKey = field.need != kGeneratedKey || field.type == kInteger;
  if (!IsIdentifier(field.name) || SqlType(field.type).empty() || field.need < 0 ||
      field.need > kGeneratedKey || field.length < 0 || field.length > 255 || !goodKey) {
    Refuse(connection, "describes its field \"" + field.name + "\" wrongly");
  }
  const bool secondKey = field.need == kGeneratedKey && HasGeneratedKey(before);
  const bool taken = std::ranges::any_of(
      before, [&field](const auto& other) { return EqualAscii(other.name, field.name); });
  if (secondKey || taken || EqualAscii(field.name, kHiddenKey) ||
      EqualAscii(field.name, kVersionColumn)) {
    Refuse(connection, "describes its field \"" + field.name + "\" twice or by a reserved name");
  }
}

void CopyColumns(Statement& from, int count, Statement& to) {
  for (int column = 0; column < count; ++column) {
    const int parameter = column + 1;
    switch (from.ColumnKind(column)) {
      case Statement::Kind::kInteger:
        to.BindInteger(parameter, from.ColumnInteger(column));
        break;
      case Statement::Kind::kFloat:
        to.BindFloat(parameter, from.ColumnFloat(column));
        break;
      case Statement::Kind::kText:
        to.BindText(parameter, from.ColumnText(column));
        break;
      case Statement::Kind::kBytes:
        to.BindBytes(parameter, from.ColumnBytes(column));
        break;
      case Statement::Kind::kNull:
        to.BindNull(parameter);
        break;
    }
  }
}

}  // namespace

bool IsIdentifier(std::string_view name) {
  const auto isLetter = [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
  };
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  return !name.empty() && name.size() <= kMaxNameLength && !isDigit(name.front()) &&
         std::ranges::all_of(name, [&](char c) { return isLetter(c) || isDigit(c); });
}

std::string KeyColumn(const std::vector<FieldDescription>& fields) {
  for (const FieldDescription& field : fields) {
    if (field.need == kGeneratedKey) return field.name;
  }
  return kHiddenKey;
}

void CreateDescriptions(Connection& connection) {
  connection.Execute(
      "CREATE TABLE qv_fields (table_name TEXT NOT NULL COLLATE NOCASE, position INTEGER NOT NULL, "
      "name TEXT NOT NULL, type INTEGER NOT NULL, required INTEGER NOT NULL, "
      "length INTEGER NOT NULL, PRIMARY KEY (table_name, position)) STRICT, WITHOUT ROWID");
}

void CreateRecordTable(Connection& connection, const std::string& table,
                       const std::vector<FieldDescription>& fields) {
  connection.Execute(TableSql(table, fields));
  Statement insert = connection.Prepare("INSERT INTO qv_fields VALUES (?, ?, ?, ?, ?, ?)");
  int position = 0;
  for (const FieldDescription& field : fields) {
    insert.BindText(1, table);
    insert.BindInteger(2, position++);
    insert.BindText(3, field.name);
    insert.BindInteger(4, field.type);
    insert.BindInteger(5, field.need);
    insert.BindInteger(6, field.length);
    insert.Run();
  }
}

bool HasRecordTable(Connection& connection, const std::string& table) {
  return connection.QueryInteger("SELECT count(*) FROM qv_fields WHERE table_name = " +
                                 QuoteText(table)) > 0;
}

void DropRecordTable(Connection& connection, const std::string& table) {
  connection.Execute("DROP TABLE " + QuoteName(table) +
                     "; DELETE FROM qv_fields WHERE table_name = " + QuoteText(table));
}

std::vector<FieldDescription> ReadFields(Connection& connection, const std::string& table) {
  std::vector<FieldDescription> fields;
  if (connection.QueryInteger(
          "SELECT count(*) FROM sqlite_master WHERE name = 'qv_fields' AND type = 'table'") == 0) {
    Refuse(connection, "has no description of its fields");
  }
  Statement query = connection.Prepare(
      "SELECT name, type, required, length, position FROM qv_fields WHERE table_name = " +
      QuoteText(table) + " ORDER BY position");
  while (query.Step()) {
    const auto number = [&query](int column) {
      return static_cast<int>(std::clamp<std::int64_t>(query.ColumnInteger(column), -1, 1000));
    };
    FieldDescription field{std::string(query.ColumnText(0)), number(1), number(2), number(3)};
    CheckField(connection, fields, field);
    if (number(4) != static_cast<int>(fields.size())) {
      Refuse(connection, "lacks the description of a field");
    }
    fields.push_back(std::move(field));
  }
  if (fields.empty()) Refuse(connection, "has no description of its fields");
  Statement schema = connection.Prepare(
      "SELECT name, sql, type FROM sqlite_master WHERE tbl_name = " + QuoteText(table) +
      " COLLATE NOCASE");
  bool matches = false;
  while (schema.Step()) {
    // Indexes and triggers on the records are not ours, and could make SQLite run what they say.
    matches = schema.ColumnText(1) == TableSql(std::string(schema.ColumnText(0)), fields);
    if (!matches) break;
  }
  if (!matches) Refuse(connection, "has records that its field description does not fit");
  return fields;
}

void CopyRecordTable(Connection& from, const std::string& fromTable, Connection& to,
                     const std::string& toTable) {
  const std::vector<FieldDescription> fields = ReadFields(from, fromTable);
  CreateRecordTable(to, toTable, fields);
  const std::string columns = AllColumns(fields);
  const int count = static_cast<int>(std::ranges::count(columns, ',')) + 1;
  std::string places = "?";
  for (int i = 1; i < count; ++i)
    places += ", ?";
  Statement read = from.Prepare("SELECT " + columns + " FROM " + QuoteName(fromTable) +
                                " ORDER BY " + QuoteName(KeyColumn(fields)));
  Statement write = to.Prepare("INSERT INTO " + QuoteName(toTable) + " (" + columns + ") VALUES (" +
                               places + ")");
  while (read.Step()) {
    CopyColumns(read, count, write);
    write.Run();
  }
  const std::int64_t last = from.QueryInteger(
      "SELECT seq FROM sqlite_sequence WHERE name = " + QuoteText(fromTable) + " COLLATE NOCASE");
  // A table whose last records are gone still remembers their keys.
  to.Execute("DELETE FROM sqlite_sequence WHERE name = " + QuoteText(toTable) +
             "; INSERT INTO sqlite_sequence (name, seq) VALUES (" + QuoteText(toTable) + ", " +
             std::to_string(last) + ")");
}

std::uint32_t ApplicationIdOf(std::string_view header) {
  if (header.size() < kFileHeaderSize || !header.starts_with(kMagic)) return 0;
  std::uint32_t id = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    id = (id << 8) | static_cast<unsigned char>(header[kApplicationIdAt + i]);
  }
  return id;
}

void CheckMark(const Connection& connection, std::uint32_t applicationId, std::string_view kind) {
  const std::string header = connection.ReadFileHeader("main");
  const std::string name(kind);
  const std::size_t known = std::min(header.size(), kMagic.size());
  if (header.empty()) Refuse(connection, "is empty and no " + name);
  if (header.compare(0, known, kMagic.substr(0, known)) != 0) {
    Refuse(connection, "is no " + name + " but something else");
  }
  if (header.size() < kFileHeaderSize) Refuse(connection, "is cut short");
  if (ApplicationIdOf(header) != applicationId) {
    Refuse(connection, "is no " + name + " but another program's database");
  }
  const bool logged =
      header[kWriteVersionAt] == kLogVersion || header[kReadVersionAt] == kLogVersion;
  if (applicationId == kTableFileId && logged) {
    Refuse(connection, "was changed by another program: its records may lie in a log beside it");
  }
}

void CheckFile(Connection& connection, std::string_view kind) {
  if (connection.QueryInteger("PRAGMA user_version") != kFormatVersion) {
    Refuse(connection, "is a " + std::string(kind) + " of another version");
  }
  const std::int64_t pages = connection.QueryInteger("PRAGMA page_count");
  const std::int64_t pageSize = connection.QueryInteger("PRAGMA page_size");
  // SQLite counts a page that is only begun as a whole one. Pages of a container may still lie in
  // its log.
  const bool logged = connection.ReadFileHeader("main")[kReadVersionAt] == kLogVersion;
  if (!logged && connection.FileSize("main") < pages * pageSize) {
    Refuse(connection, "is cut short");
  }
}

namespace {

std::string MarkSql(std::uint32_t applicationId) {
  return "PRAGMA application_id = " + std::to_string(applicationId) +
         "; PRAGMA user_version = " + std::to_string(kFormatVersion);
}

}  // namespace

std::string MakeTableImage(const std::vector<FieldDescription>& fields) {
  Connection memory = Connection::OpenMemory();
  memory.Execute(MarkSql(kTableFileId));
  memory.Execute("BEGIN");
  CreateDescriptions(memory);
  CreateRecordTable(memory, kRecordTable, fields);
  memory.Execute("COMMIT");
  return memory.Serialize();
}

std::string MakeTableImage(Connection& from, const std::string& table) {
  Connection memory = Connection::OpenMemory();
  memory.Execute(MarkSql(kTableFileId));
  memory.Execute("BEGIN");
  CreateDescriptions(memory);
  CopyRecordTable(from, table, memory, kRecordTable);
  memory.Execute("COMMIT");
  return memory.Serialize();
}

std::string MakeContainerImage() {
  Connection memory = Connection::OpenMemory();
  memory.Execute(MarkSql(kContainerId));
  memory.Execute("BEGIN");
  CreateDescriptions(memory);
  memory.Execute(
      "CREATE TABLE qv_blobs (id INTEGER PRIMARY KEY AUTOINCREMENT, "
      "name TEXT NOT NULL UNIQUE COLLATE NOCASE, size INTEGER NOT NULL) STRICT;"
      "CREATE TABLE qv_blob_parts (blob INTEGER NOT NULL, part INTEGER NOT NULL, "
      "data BLOB NOT NULL, UNIQUE (blob, part)) STRICT");
  memory.Execute("COMMIT");
  return memory.Serialize();
}

std::unique_ptr<Connection> OpenTableImage(std::string_view bytes) {
  if (ApplicationIdOf(bytes) != kTableFileId) return nullptr;
  try {
    auto image = std::make_unique<Connection>(Connection::OpenImage(bytes, "table image"));
    if (image->QueryInteger("PRAGMA user_version") != kFormatVersion) return nullptr;
    const std::int64_t size =
        image->QueryInteger("PRAGMA page_count") * image->QueryInteger("PRAGMA page_size");
    if (size != static_cast<std::int64_t>(bytes.size())) return nullptr;
    if (image->QueryText("PRAGMA quick_check(1)") != "ok") return nullptr;
    static_cast<void>(ReadFields(*image, kRecordTable));
    return image;
  } catch (const StorageError&) {
    return nullptr;
  }
}

}  // namespace QvPlatform::detail
