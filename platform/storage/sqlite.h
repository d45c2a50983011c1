#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/storage/stream.h"

struct sqlite3;
struct sqlite3_stmt;

/// The one room that knows SQLite: thin owners of its handles, and one exception for its codes.
namespace QvPlatform::detail {

/// What SQLite refused to do. The message names the file, what was to be done, SQLite's reason and
/// its code.
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

 private:
  int code_;
  std::string reason_;
};

class Statement;

/// Start of an SQLite file, as it stands on the medium.
constexpr std::size_t kFileHeaderSize = 100;

/// A connection to one file or to memory, hardened against files made by strangers: no trusted
/// schema, triggers, views or extensions, no memory map. All its statements must be gone before
/// it. Not for use by two threads.
class Connection {
 public:
  /// Never creates the file. Falls back to reading where the medium allows no more.
  [[nodiscard]] static Connection OpenFile(const std::string& path);
  /// Never writes, and leaves the file to others who do.
  [[nodiscard]] static Connection OpenReadOnly(const std::string& path);
  /// For a file on a medium that cannot change: takes no locks and makes no file beside it.
  [[nodiscard]] static Connection OpenImmutable(const std::string& path);
  [[nodiscard]] static Connection OpenMemory();
  /// Reads a database out of its bytes, which have to outlive the connection.
  [[nodiscard]] static Connection OpenImage(std::string_view bytes, const std::string& name);

  Connection(Connection&&) noexcept = default;
  Connection& operator=(Connection&&) = delete;
  ~Connection() = default;

  void Attach(const std::string& path, const std::string& schema);
  void Execute(const std::string& sql);
  [[nodiscard]] Statement Prepare(const std::string& sql);
  /// First column of the first row; 0 if there is none.
  [[nodiscard]] std::int64_t QueryInteger(const std::string& sql);
  [[nodiscard]] std::string QueryText(const std::string& sql);

  [[nodiscard]] bool InTransaction() const;
  [[nodiscard]] bool IsReadOnly(const std::string& schema) const;
  [[nodiscard]] std::int64_t LastRowId() const;
  /// Rows that the last statement changed.
  [[nodiscard]] int Changes() const;
  /// True if the file's path leads to another file, or to none, since it was opened.
  [[nodiscard]] bool HasMoved(const std::string& schema) const;
  /// The first bytes of the file, fewer if it is shorter, read without opening it again: closing a
  /// second descriptor would drop the locks that this process has on the file.
  [[nodiscard]] std::string ReadFileHeader(const std::string& schema) const;
  [[nodiscard]] std::int64_t FileSize(const std::string& schema) const;
  /// The bytes of the database.
  [[nodiscard]] std::string Serialize() const;
  /// What messages call it: the path, without the folder of a file.
  [[nodiscard]] const std::string& Name() const { return name_; }

 private:
  friend class Statement;
  struct Closer {
    void operator()(sqlite3* handle) const;
  };

  Connection(sqlite3* handle, std::string name);
  static Connection Open(const std::string& uri, const std::string& name, int flags);
  static Connection OpenShared(const std::string& name, int flags);
  void Harden();
  void Check(int code, std::string_view doing) const;

  // Says which files this process has open, for file_use.h. The last member to go.
  std::vector<std::shared_ptr<void>> uses_;
  std::unique_ptr<sqlite3, Closer> handle_;
  std::string name_;
};

/// A prepared statement. Parameters count from 1, columns from 0.
class Statement {
 public:
  Statement(Connection& connection, const std::string& sql);

  void BindNull(int parameter);
  void BindInteger(int parameter, std::int64_t value);
  void BindFloat(int parameter, double value);
  /// The text has to live until the next Reset or Run.
  void BindText(int parameter, std::string_view text);
  void BindBytes(int parameter, std::string_view bytes);

  /// True if a row stands ready.
  [[nodiscard]] bool Step();
  /// Executes a statement that gives no rows, and readies it for the next time.
  void Run();
  void Reset() noexcept;

  enum class Kind { kNull, kInteger, kFloat, kText, kBytes };
  [[nodiscard]] Kind ColumnKind(int column) const;
  [[nodiscard]] std::int64_t ColumnInteger(int column) const;
  [[nodiscard]] double ColumnFloat(int column) const;
  /// Valid until the next Step or Reset.
  [[nodiscard]] std::string_view ColumnText(int column) const;
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
  explicit StatementScope(Statement& statement) : statement_(statement) {}
  ~StatementScope() { statement_.Reset(); }
  StatementScope(const StatementScope&) = delete;
  StatementScope& operator=(const StatementScope&) = delete;

 private:
  Statement& statement_;
};

/// An SQL identifier or string in its quotes.
[[nodiscard]] std::string QuoteName(std::string_view name);
[[nodiscard]] std::string QuoteText(std::string_view text);

/// Lets SQLite undo what a killed writer left half done in the file, so that the file can be
/// replaced without its rollback journal coming down on the new content.
void SettleLeftJournal(const std::string& path) noexcept;

}  // namespace QvPlatform::detail
