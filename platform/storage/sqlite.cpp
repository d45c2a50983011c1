#include "platform/storage/sqlite.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <new>
#include <thread>

#include "platform/storage/file_fault.h"
#include "platform/storage/left_journal.h"
#include "platform/storage/lock_vfs.h"
#include "platform/storage/waiting.h"

namespace QvPlatform::detail {

namespace {

/// Place of the change counter in the head of an SQLite file, four bytes, the highest first.
constexpr std::size_t kChangeCounterAt = 24;

/// Pauses between two looks whether a lock is free: short at first, since most writers are done
/// within a few milliseconds, and never longer than a window may stand still.
constexpr std::array kPauses = {std::chrono::milliseconds{1}, std::chrono::milliseconds{2},
                                std::chrono::milliseconds{5}, std::chrono::milliseconds{10},
                                std::chrono::milliseconds{20}};

/// SQLite's own way to say "copy this before you return" is a pointer of value -1, and "it stays
/// where it is" is null; the header spells both with C casts.
constexpr sqlite3_destructor_type kStays = nullptr;

/// SQLite gives a meaning to relative names such as ":memory:" and "file:x", to absolute ones
/// never.
std::string AbsolutePath(const std::string& path) {
  return std::filesystem::absolute(path).string();
}

/// What users call the causes that they can do something about, by the kind of SQLite's code.
struct Cause {
  int kind;
  std::string_view words;
};
constexpr std::array kCauses = {
    Cause{SQLITE_BUSY, "another program is writing to it"},
    Cause{SQLITE_LOCKED, "another part of this program is writing to it"},
    Cause{SQLITE_FULL, "the disk is full"},
    Cause{SQLITE_READONLY, "it cannot be written: the medium, the folder or the file is read-only"},
    Cause{SQLITE_NOMEM, "there is not enough memory"},
    Cause{SQLITE_CORRUPT, "it is damaged"},
    Cause{SQLITE_NOTADB, "it is no database, or is damaged"},
    Cause{SQLITE_IOERR, "the medium fails"},
    Cause{SQLITE_CANTOPEN, "it cannot be opened"},
};

std::string_view CauseOf(int code) {
  if (code == SQLITE_IOERR_NOMEM) code = SQLITE_NOMEM;
  if (code == SQLITE_READONLY_ROLLBACK) {
    return "an interrupted change has to be undone first, and it is read-only";
  }
  constexpr std::array kLocking = {SQLITE_IOERR_LOCK, SQLITE_IOERR_UNLOCK, SQLITE_IOERR_RDLOCK,
                                   SQLITE_IOERR_CHECKRESERVEDLOCK};
  if (std::ranges::find(kLocking, code) != kLocking.end()) return "it cannot be locked";
  if (code == SQLITE_READONLY_DBMOVED) return "it was moved or removed while it was open";
  const auto* cause = std::ranges::find(kCauses, code & 0xFF, &Cause::kind);
  return cause != kCauses.end() ? cause->words : std::string_view();
}

/// File, cause in the user's words if there are such, and in brackets what SQLite says.
std::string Describe(int code, std::string_view doing, const std::string& name,
                     std::string_view reason) {
  const FileFault fault = TakeFileFault(code);
  const std::string_view cause = CauseOf(code);
  std::string message = "\"" + (fault.path.empty() ? name : fault.path) + "\": ";
  message.append(cause.empty() ? reason : cause);
  if (!fault.reason.empty() && (code & 0xFF) != SQLITE_BUSY) message += ": " + fault.reason;
  message.append(" (").append(doing);
  if (!cause.empty()) message.append(": ").append(reason);
  return message + ", SQLite " + std::to_string(code) + ")";
}

/// A path as SQLite's URI: the characters that mean something there are escaped.
std::string FileUri(const std::string& path) {
  std::string uri = "file:";
  for (const char c : path) {
    if (c == '%' || c == '?' || c == '#') {
      constexpr std::string_view kDigits = "0123456789abcdef";
      uri += '%';
      uri += kDigits[static_cast<unsigned char>(c) >> 4];
      uri += kDigits[static_cast<unsigned char>(c) & 15];
    } else {
      uri += c;
    }
  }
  return uri;
}

}  // namespace

bool SqliteError::IsReadOnly() const {
  return (code_ & 0xFF) == SQLITE_READONLY;
}

bool SqliteError::IsTakenKey() const {
  return code_ == SQLITE_CONSTRAINT_PRIMARYKEY || code_ == SQLITE_CONSTRAINT_ROWID;
}

bool SqliteError::IsLocked() const {
  const int kind = code_ & 0xFF;
  return kind == SQLITE_BUSY || kind == SQLITE_LOCKED;
}

void Connection::Closer::operator()(sqlite3* handle) const {
  sqlite3_close_v2(handle);
}

Connection::Connection(sqlite3* handle, std::string name)
    : handle_(handle), name_(std::move(name)) {}

Connection Connection::Open(const std::string& uri, const std::string& name, int flags,
                            const char* fileSystem) {
  sqlite3* handle = nullptr;
  const int code = sqlite3_open_v2(uri.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, fileSystem);
  if (handle == nullptr) throw std::bad_alloc();
  Connection connection(handle, name);
  connection.Check(code, "cannot be opened");
  connection.Harden();
  return connection;
}

Connection Connection::OpenChecked(const std::string& name, int flags, const char* fileSystem) {
  const std::string path = AbsolutePath(name);
  CheckLeftJournal(path);
  return Open(path, path, flags, fileSystem);
}

Connection Connection::OpenFile(const std::string& path) {
  return OpenChecked(path, SQLITE_OPEN_READWRITE, LockVfs());
}

Connection Connection::OpenReadOnly(const std::string& path) {
  return OpenChecked(path, SQLITE_OPEN_READONLY, LockVfs());
}

Connection Connection::OpenLogged(const std::string& path) {
  return OpenChecked(path, SQLITE_OPEN_READWRITE, LoggedVfs());
}

Connection Connection::OpenImmutable(const std::string& name) {
  const std::string path = AbsolutePath(name);
  return Open(FileUri(path) + "?immutable=1", path, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI,
              LockVfs());
}

Connection Connection::OpenMemory() {
  return Open(":memory:", "memory", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
}

Connection Connection::OpenImage(std::string_view bytes, const std::string& name) {
  Connection connection = OpenMemory();
  connection.name_ = name;
  // SQLite takes the bytes as writable for want of a constant form, but is told not to write.
  auto* data = const_cast<unsigned char*>(reinterpret_cast<const unsigned char*>(bytes.data()));
  const auto size = static_cast<sqlite3_int64>(bytes.size());
  connection.Check(sqlite3_deserialize(connection.handle_.get(), "main", data, size, size,
                                       SQLITE_DESERIALIZE_READONLY),
                   "cannot be read");
  return connection;
}

void Connection::WaitPolitely() {
  waitBegin_ = std::make_unique<Clock::time_point>();
  Check(sqlite3_busy_handler(handle_.get(), &OnLocked, waitBegin_.get()), "cannot be made safe");
}

int Connection::OnLocked(void* begin, int timesAsked) noexcept {
  Clock::time_point& waitBegin = *static_cast<Clock::time_point*>(begin);
  if (timesAsked == 0) waitBegin = Clock::now();
  try {
    using std::chrono::milliseconds;
    const auto waited = std::chrono::duration_cast<milliseconds>(Clock::now() - waitBegin);
    if (!CurrentWaiter().KeepWaiting(waited)) return 0;
    const auto pause = std::min(static_cast<std::size_t>(timesAsked), kPauses.size() - 1);
    std::this_thread::sleep_for(kPauses[pause]);
    return 1;
  } catch (...) {
    // No exception may pass through SQLite.
    return 0;
  }
}

void Connection::Harden() {
  sqlite3* const handle = handle_.get();
  sqlite3_extended_result_codes(handle, 1);
  WaitPolitely();
  struct Setting {
    int option;
    int value;
  };
  constexpr std::array kSettings = {
      Setting{SQLITE_DBCONFIG_DEFENSIVE, 1},
      Setting{SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
      Setting{SQLITE_DBCONFIG_ENABLE_TRIGGER, 0},
      Setting{SQLITE_DBCONFIG_ENABLE_VIEW, 0},
      Setting{SQLITE_DBCONFIG_DQS_DDL, 0},
      Setting{SQLITE_DBCONFIG_DQS_DML, 0},
      Setting{SQLITE_DBCONFIG_WRITABLE_SCHEMA, 0},
      Setting{SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0},
  };
  for (const Setting& setting : kSettings) {
    int now = -1;
    Check(sqlite3_db_config(handle, setting.option, setting.value, &now), "cannot be made safe");
    if (now != setting.value) {
      throw SqliteError(SQLITE_MISUSE, name_ + ": cannot be made safe", "a setting is refused");
    }
  }
  Execute("PRAGMA cell_size_check=ON; PRAGMA mmap_size=0");
}

void Connection::Check(int code, std::string_view doing) const {
  if ((code & 0xFF) == SQLITE_OK) return;
  const std::string reason = sqlite3_errmsg(handle_.get());
  throw SqliteError(code, Describe(code, doing, name_, reason), reason);
}

void Connection::Attach(const std::string& name, const std::string& schema) {
  const std::string path = AbsolutePath(name);
  CheckLeftJournal(path);
  Execute("ATTACH " + QuoteText(path) + " AS " + QuoteName(schema));
}

void Connection::Execute(const std::string& sql) {
  Check(sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr), "refused");
}

Statement Connection::Prepare(const std::string& sql) {
  return {*this, sql};
}

std::int64_t Connection::QueryInteger(const std::string& sql) {
  Statement query(*this, sql);
  return query.Step() ? query.ColumnInteger(0) : 0;
}

std::string Connection::QueryText(const std::string& sql) {
  Statement query(*this, sql);
  return query.Step() ? std::string(query.ColumnText(0)) : std::string();
}

bool Connection::InTransaction() const {
  return sqlite3_get_autocommit(handle_.get()) == 0;
}

bool Connection::IsReadOnly(const std::string& schema) const {
  return sqlite3_db_readonly(handle_.get(), schema.c_str()) == 1;
}

std::int64_t Connection::LastRowId() const {
  return sqlite3_last_insert_rowid(handle_.get());
}

int Connection::Changes() const {
  return sqlite3_changes(handle_.get());
}

bool Connection::HasMoved(const std::string& schema) const {
  int moved = 0;
  const int code =
      sqlite3_file_control(handle_.get(), schema.c_str(), SQLITE_FCNTL_HAS_MOVED, &moved);
  return code == SQLITE_OK && moved != 0;
}

std::string Connection::ReadFileHeader(const std::string& schema) const {
  sqlite3_file* file = nullptr;
  Check(sqlite3_file_control(handle_.get(), schema.c_str(), SQLITE_FCNTL_FILE_POINTER, &file),
        "cannot be read");
  std::string bytes(kFileHeaderSize, '\0');
  if (file == nullptr || file->pMethods == nullptr) return {};
  const int code = file->pMethods->xRead(file, bytes.data(), static_cast<int>(bytes.size()), 0);
  if (code == SQLITE_IOERR_SHORT_READ) {
    bytes.resize(static_cast<std::size_t>(
        std::min<std::int64_t>(FileSize(schema), static_cast<std::int64_t>(bytes.size()))));
  } else {
    Check(code, "cannot be read");
  }
  return bytes;
}

std::uint32_t Connection::ChangeCounter(const std::string& schema) const {
  const std::string header = ReadFileHeader(schema);
  if (header.size() < kFileHeaderSize) return 0;
  std::uint32_t counter = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    counter = (counter << 8) | static_cast<unsigned char>(header[kChangeCounterAt + i]);
  }
  return counter;
}

std::int64_t Connection::FileSize(const std::string& schema) const {
  sqlite3_file* file = nullptr;
  Check(sqlite3_file_control(handle_.get(), schema.c_str(), SQLITE_FCNTL_FILE_POINTER, &file),
        "cannot be read");
  sqlite3_int64 size = 0;
  if (file != nullptr && file->pMethods != nullptr) {
    Check(file->pMethods->xFileSize(file, &size), "cannot be measured");
  }
  return size;
}

std::string Connection::Serialize() const {
  sqlite3_int64 size = 0;
  const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> bytes(
      sqlite3_serialize(handle_.get(), "main", &size, 0), &sqlite3_free);
  if (bytes == nullptr) throw std::bad_alloc();
  return {reinterpret_cast<const char*>(bytes.get()), static_cast<std::size_t>(size)};
}

void Statement::Closer::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

Statement::Statement(Connection& connection, const std::string& sql) : connection_(&connection) {
  sqlite3_stmt* handle = nullptr;
  const int code =
      sqlite3_prepare_v3(connection.handle_.get(), sql.c_str(), static_cast<int>(sql.size() + 1),
                         SQLITE_PREPARE_PERSISTENT, &handle, nullptr);
  handle_.reset(handle);
  Check(code, "refused");
}

void Statement::Check(int code, std::string_view doing) const {
  connection_->Check(code, doing);
}

void Statement::BindNull(int parameter) {
  Check(sqlite3_bind_null(handle_.get(), parameter), "cannot take a value");
}

void Statement::BindInteger(int parameter, std::int64_t value) {
  Check(sqlite3_bind_int64(handle_.get(), parameter, value), "cannot take a value");
}

void Statement::BindFloat(int parameter, double value) {
  Check(sqlite3_bind_double(handle_.get(), parameter, value), "cannot take a value");
}

void Statement::BindText(int parameter, std::string_view text) {
  // A null pointer would bind NULL in the place of an empty text.
  const char* data = text.data() != nullptr ? text.data() : "";
  Check(sqlite3_bind_text64(handle_.get(), parameter, data, text.size(), kStays, SQLITE_UTF8),
        "cannot take a text");
}

void Statement::BindBytes(int parameter, std::string_view bytes) {
  const char* data = bytes.data() != nullptr ? bytes.data() : "";
  Check(sqlite3_bind_blob64(handle_.get(), parameter, data, bytes.size(), kStays),
        "cannot take bytes");
}

bool Statement::Step() {
  const int code = sqlite3_step(handle_.get());
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  try {
    Check(code, "refused");
  } catch (...) {
    Reset();
    throw;
  }
  return false;
}

void Statement::Run() {
  while (Step()) {
  }
  Reset();
}

void Statement::Reset() noexcept {
  sqlite3_reset(handle_.get());
}

Statement::Kind Statement::ColumnKind(int column) const {
  switch (sqlite3_column_type(handle_.get(), column)) {
    case SQLITE_INTEGER:
      return Kind::kInteger;
    case SQLITE_FLOAT:
      return Kind::kFloat;
    case SQLITE_TEXT:
      return Kind::kText;
    case SQLITE_BLOB:
      return Kind::kBytes;
    default:
      return Kind::kNull;
  }
}

std::int64_t Statement::ColumnInteger(int column) const {
  return sqlite3_column_int64(handle_.get(), column);
}

double Statement::ColumnFloat(int column) const {
  return sqlite3_column_double(handle_.get(), column);
}

std::string_view Statement::ColumnText(int column) const {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(handle_.get(), column));
  if (text == nullptr) return {};
  return {text, static_cast<std::size_t>(sqlite3_column_bytes(handle_.get(), column))};
}

std::string_view Statement::ColumnBytes(int column) const {
  const auto* bytes = static_cast<const char*>(sqlite3_column_blob(handle_.get(), column));
  if (bytes == nullptr) return {};
  return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(handle_.get(), column))};
}

namespace {

std::string Quote(std::string_view text, char quote) {
  std::string result(1, quote);
  for (const char c : text) {
    if (c == quote) result += quote;
    result += c;
  }
  return result + quote;
}

}  // namespace

std::string QuoteName(std::string_view name) {
  return Quote(name, '"');
}

std::string QuoteText(std::string_view text) {
  return Quote(text, '\'');
}

}  // namespace QvPlatform::detail
