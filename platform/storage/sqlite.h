#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/storage/stream.h"

struct sqlite3;
struct sqlite3_stmt;

/// The one room that knows SQLite: thin owners of its handles, and one exception for its codes.
namespace QvPlatform::detail {

/// What SQLite refused to do. The message names the file by its path and tells the cause in a
/// user's words, then in brackets what was to be done, SQLite's own words and its code.
class SqliteError : public StorageError {
 public:
  /// `code` is an extended result code of SQLite, `reason` its own words alone.
  SqliteError(int code, const std::string& message, std::string reason)
      : StorageError(message), code_(code), reason_(std::move(reason)) {}
  /// SQLite's extended result code.
  [[nodiscard]] int Code() const { return code_; }
  /// SQLite's own words, without the file and the code.
  [[nodiscard]] const std::string& Reason() const { return reason_; }
  /// A row was to get a key that another row has.
  [[nodiscard]] bool IsTakenKey() const;
  /// The file or its medium takes no writing.
  [[nodiscard]] bool IsReadOnly() const;
  /// Another connection, mostly another program's, holds a lock that was waited for long enough.
  [[nodiscard]] bool IsLocked() const;

 private:
  int code_;
  std::string reason_;
};

class Statement;

/// Start of an SQLite file, as it stands on the medium.
constexpr std::size_t kFileHeaderSize = 100;

/// A connection to one file or to memory, over the file system of lock_vfs.h. It is hardened
/// against files made by strangers: no trusted schema, triggers, views or extensions, no memory
/// map. Where another program writes, each operation waits as long as the CurrentWaiter of its
/// thread has it wait. All its statements must be gone before it. Not for use by two threads.
class Connection {
 public:
  /// Opens a file for writing, or for reading where the medium allows no more. Never creates it.
  /// This and the other openings throw SqliteError, or StorageError for what CheckLeftJournal
  /// refuses.
  [[nodiscard]] static Connection OpenFile(const std::string& path);
  /// Opens a file for reading only, with SQLite's locks against others who write it.
  [[nodiscard]] static Connection OpenReadOnly(const std::string& path);
  /// Opens a file that may have a write-ahead log, with SQLite's own locks, which a close of any
  /// other descriptor of the file in this process drops.
  [[nodiscard]] static Connection OpenLogged(const std::string& path);
  /// For a file on a medium that cannot change: takes no locks and makes no file beside it.
  [[nodiscard]] static Connection OpenImmutable(const std::string& path);
  /// A database of its own that is gone with the connection.
  [[nodiscard]] static Connection OpenMemory();
  /// Reads a database out of its bytes, which have to outlive the connection.
  [[nodiscard]] static Connection OpenImage(std::string_view bytes, const std::string& name);

  Connection(Connection&&) noexcept = default;
  Connection& operator=(Connection&&) = delete;
  ~Connection() = default;

  /// Opens another file beside, under the name of a schema. Throws SqliteError.
  void Attach(const std::string& path, const std::string& schema);
  /// Runs statements that give no rows, one after the other. Throws SqliteError at the first that
  /// fails.
  void Execute(const std::string& sql);
  /// Throws SqliteError for SQL that does not fit the database.
  [[nodiscard]] Statement Prepare(const std::string& sql);
  /// First column of the first row; 0 if there is none.
  [[nodiscard]] std::int64_t QueryInteger(const std::string& sql);
  /// First column of the first row as text; "" if there is none.
  [[nodiscard]] std::string QueryText(const std::string& sql);

  /// Whether a transaction is open, of whatever kind.
  [[nodiscard]] bool InTransaction() const;
  /// Whether the file of a schema cannot be written through this connection.
  [[nodiscard]] bool IsReadOnly(const std::string& schema) const;
  /// Identity of the row that was inserted last.
  [[nodiscard]] std::int64_t LastRowId() const;
  /// Rows that the last statement changed.
  [[nodiscard]] int Changes() const;
  /// True if the file's path leads to another file, or to none, since it was opened.
  [[nodiscard]] bool HasMoved(const std::string& schema) const;
  /// The first bytes of the file, fewer if it is shorter. Takes no lock.
  [[nodiscard]] std::string ReadFileHeader(const std::string& schema) const;
  /// The number in the head of the file that each commit raises; 0 for a file without a head.
  [[nodiscard]] std::uint32_t ChangeCounter(const std::string& schema) const;
  /// Size in bytes of the file as it lies on the medium; 0 without a file.
  [[nodiscard]] std::int64_t FileSize(const std::string& schema) const;
  /// The bytes of the database.
  [[nodiscard]] std::string Serialize() const;
  /// What messages call it: the whole path of a file.
  [[nodiscard]] const std::string& Name() const { return name_; }

 private:
  friend class Statement;
  struct Closer {
    void operator()(sqlite3* handle) const;
  };
  using Clock = std::chrono::steady_clock;

  Connection(sqlite3* handle, std::string name);
  static Connection Open(const std::string& uri, const std::string& name, int flags,
                         const char* fileSystem);
  static Connection OpenChecked(const std::string& name, int flags, const char* fileSystem);
  void Harden();
  void WaitPolitely();
  static int OnLocked(void* begin, int timesAsked) noexcept;
  void Check(int code, std::string_view doing) const;

  // When the present wait for a lock began; SQLite knows the address.
  std::unique_ptr<Clock::time_point> waitBegin_;
  std::unique_ptr<sqlite3, Closer> handle_;
  std::string name_;
};

/// A prepared statement. Parameters count from 1, columns from 0.
class Statement {
 public:
  /// The connection has to outlive the statement. Throws SqliteError for SQL that does not fit.
  Statement(Connection& connection, const std::string& sql);

  /// Gives a parameter no value. All bindings throw SqliteError for a parameter that there is not,
  /// and last until they are bound anew.
  void BindNull(int parameter);
  /// Gives a parameter an integer.
  void BindInteger(int parameter, std::int64_t value);
  /// Gives a parameter a number.
  void BindFloat(int parameter, double value);
  /// Gives a parameter a text, which has to live until the statement has run.
  void BindText(int parameter, std::string_view text);
  /// Gives a parameter bytes, which have to live as long as a text.
  void BindBytes(int parameter, std::string_view bytes);

  /// Goes on to the next row; true if one stands ready. Throws SqliteError.
  [[nodiscard]] bool Step();
  /// Executes a statement that gives no rows, and readies it for the next time. Throws SqliteError.
  void Run();
  /// Ends the reading and lets go of its lock; the bindings stay.
  void Reset() noexcept;

  /// What a column of the present row holds.
  enum class Kind { kNull, kInteger, kFloat, kText, kBytes };
  /// The kind of content, before any of the calls below has converted it.
  [[nodiscard]] Kind ColumnKind(int column) const;
  /// The content as an integer, converted by SQLite's rules; 0 for none.
  [[nodiscard]] std::int64_t ColumnInteger(int column) const;
  /// The content as a number, converted by SQLite's rules; 0 for none.
  [[nodiscard]] double ColumnFloat(int column) const;
  /// The content as text, converted by SQLite's rules; valid until the next Step or Reset.
  [[nodiscard]] std::string_view ColumnText(int column) const;
  /// The content as bytes, which are valid as long as a text.
  [[nodiscard]] std::string_view ColumnBytes(int column) const;

 private:
  struct Closer {
    void operator()(sqlite3_stmt* statement) const;
  };
  void Check(int code, std::string_view doing) const;

  const Connection* connection_;
  std::unique_ptr<sqlite3_stmt, Closer> handle_;
};

/// Resets a statement at the end of a scope, so that it holds no lock behind it.
class StatementScope {
 public:
  /// The statement has to outlive the scope.
  explicit StatementScope(Statement& statement) : statement_(statement) {}
  ~StatementScope() { statement_.Reset(); }
  StatementScope(const StatementScope&) = delete;
  StatementScope& operator=(const StatementScope&) = delete;

 private:
  Statement& statement_;
};

/// An SQL identifier in its quotes.
[[nodiscard]] std::string QuoteName(std::string_view name);
/// An SQL string in its quotes.
[[nodiscard]] std::string QuoteText(std::string_view text);

}  // namespace QvPlatform::detail
