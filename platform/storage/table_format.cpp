#include "platform/storage/table_format.h"

#include <algorithm>
#include <array>

#include "platform/storage/record_sum.h"
#include "platform/storage/table_state.h"
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
std::string TableSql(const std::string& table, const std::vector<FieldDescription>& fields,
                     bool hasSums = true) {
  std::string sql = "CREATE TABLE " + QuoteName(table) + " (";
  if (!HasGeneratedKey(fields)) {
    sql += QuoteName(kHiddenKey) + " INTEGER PRIMARY KEY AUTOINCREMENT, ";
  }
  for (const FieldDescription& field : fields)
    sql += ColumnSql(field) + ", ";
  sql += QuoteName(kVersionColumn) + " INTEGER NOT NULL";
  if (hasSums) sql += ", " + QuoteName(kSumColumn) + " INTEGER";
  return sql + ") STRICT";
}

/// The key, the version, and the fields behind them.
std::string AllColumns(const std::vector<FieldDescription>& fields) {
  const std::string key = KeyColumn(fields);
  std::string list = QuoteName(key) + ", " + QuoteName(kVersionColumn);
  for (const FieldDescription& field : fields) {
    if (field.name != key) list += ", " + QuoteName(field.name);
  }
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
      EqualAscii(field.name, kVersionColumn) || EqualAscii(field.name, kSumColumn)) {
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
  connection.Execute(FieldsTableSql());
  CreateStateTables(connection, "main");
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
  PutState(connection, table, 0, 0);
}

bool HasRecordTable(Connection& connection, const std::string& table) {
  return connection.QueryInteger("SELECT count(*) FROM qv_fields WHERE table_name = " +
                                 QuoteText(table)) > 0;
}

void DropRecordTable(Connection& connection, const std::string& table) {
  const std::string ofTable = " WHERE table_name = " + QuoteText(table);
  connection.Execute("DROP TABLE " + QuoteName(table) + "; DELETE FROM qv_fields" + ofTable +
                     "; DELETE FROM qv_notes" + ofTable);
  // The count of its changes stays, for a table that may come into its place.
  PutState(connection, table, 0, 0);
}

namespace {

std::vector<FieldDescription> ReadDescription(Connection& connection, const std::string& table,
                                              const std::string& schema) {
  std::vector<FieldDescription> fields;
  Statement query =
      connection.Prepare("SELECT name, type, required, length, position FROM " + schema +
                         "qv_fields WHERE table_name = " + QuoteText(table) + " ORDER BY position");
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
  return fields;
}

}  // namespace

std::vector<FieldDescription> ReadFields(Connection& connection, const std::string& table,
                                         std::string_view schemaName) {
  const std::string schema = QuoteName(schemaName) + '.';
  if (connection.QueryInteger("SELECT count(*) FROM " + schema +
                              "sqlite_master WHERE name = 'qv_fields' AND type = 'table'") == 0) {
    Refuse(connection, "has no description of its fields");
  }
  std::vector<FieldDescription> fields = ReadDescription(connection, table, schema);
  const bool hasSums = HasSums(connection, std::string(schemaName));
  Statement query =
      connection.Prepare("SELECT name, sql, type FROM " + schema +
                         "sqlite_master WHERE tbl_name = " + QuoteText(table) + " COLLATE NOCASE");
  bool matches = false;
  while (query.Step()) {
    // Indexes and triggers on the records are not ours, and could make SQLite run what they say.
    matches = query.ColumnText(1) == TableSql(std::string(query.ColumnText(0)), fields, hasSums);
    if (!matches) break;
  }
  if (!matches) Refuse(connection, "has records that its field description does not fit");
  return fields;
}

namespace {

/// Copies the records of a table with their checksums, which have to be theirs.
class RecordCopy {
 public:
  RecordCopy(Connection& from, const std::string& fromTable, Connection& to,
             const std::string& toTable)
      : from_(from), fromTable_(fromTable), to_(to), toTable_(toTable) {}

  void Run(const std::vector<FieldDescription>& fields) {
    const std::string columns = AllColumns(fields);
    count_ = static_cast<int>(std::ranges::count(columns, ',')) + 1;
    const bool hasSums = HasSums(from_, "main");
    const std::string sum = hasSums ? QuoteName(kSumColumn) : std::string("NULL");
    Statement read = from_.Prepare("SELECT " + columns + ", " + sum + " FROM " +
                                   QuoteName(fromTable_) + " ORDER BY 1");
    std::string places = "?";
    for (int i = 0; i < count_; ++i)
      places += ", ?";
    Statement write = to_.Prepare("INSERT INTO " + QuoteName(toTable_) + " (" + columns + ", " +
                                  QuoteName(kSumColumn) + ") VALUES (" + places + ")");
    while (read.Step())
      CopyRow(read, hasSums, write);
    if (hasSums) RequireState();
    PutState(to_, toTable_, rows_, digest_);
  }

 private:
  void CopyRow(Statement& read, bool hasSums, Statement& write) {
    CopyColumns(read, count_, write);
    sum_.Begin(read.ColumnInteger(0), read.ColumnInteger(1));
    for (int column = 2; column < count_; ++column)
      sum_.AddColumn(read, column);
    const std::int64_t sum = sum_.Value();
    if (hasSums && read.ColumnInteger(count_) != sum) RefuseDamaged();
    write.BindInteger(count_ + 1, sum);
    write.Run();
    ++rows_;
    digest_ = (digest_ + sum) & RecordSum::kMask;
  }
  void RequireState() {
    const std::optional<TableState> state = ReadState(from_, "main", fromTable_);
    if (!state || state->rows != rows_ || state->digest != digest_) RefuseDamaged();
  }
  [[noreturn]] void RefuseDamaged() const {
    Refuse(from_, "is damaged: the records of the table \"" + fromTable_ +
                      "\" are not what they were when they were written");
  }

  Connection& from_;
  const std::string& fromTable_;
  Connection& to_;
  const std::string& toTable_;
  RecordSum sum_;
  int count_ = 0;
  std::int64_t rows_ = 0;
  std::int64_t digest_ = 0;
};

}  // namespace

void CopyRecordTable(Connection& from, const std::string& fromTable, Connection& to,
                     const std::string& toTable) {
  const std::vector<FieldDescription> fields = ReadFields(from, fromTable);
  CreateRecordTable(to, toTable, fields);
  RecordCopy(from, fromTable, to, toTable).Run(fields);
  CopyNotes(from, fromTable, to, toTable);
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
  const std::int64_t version = connection.QueryInteger("PRAGMA user_version");
  if (version < kOldestVersion || version > kFormatVersion) {
    Refuse(connection, "is a " + std::string(kind) + " of another version");
  }
  CheckServiceTables(connection);
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

std::string MakeTableImage(const std::vector<FieldDescription>& fields, const std::string& kind) {
  Connection memory = Connection::OpenMemory();
  memory.Execute(MarkSql(kTableFileId));
  memory.Execute("BEGIN");
  CreateDescriptions(memory);
  CreateRecordTable(memory, kRecordTable, fields);
  if (!kind.empty()) PutNote(memory, kRecordTable, 0, kKindNote, kind);
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
  memory.Execute(BlobsTableSql() + ';' + BlobPartsTableSql());
  memory.Execute("COMMIT");
  return memory.Serialize();
}

std::unique_ptr<Connection> OpenTableImage(std::string_view bytes) {
  if (ApplicationIdOf(bytes) != kTableFileId) return nullptr;
  try {
    auto image = std::make_unique<Connection>(Connection::OpenImage(bytes, "table image"));
    const std::int64_t version = image->QueryInteger("PRAGMA user_version");
    if (version < kOldestVersion || version > kFormatVersion) return nullptr;
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
