#pragma once

#include <string>
#include <vector>

#include "platform/storage/sqlite.h"

namespace QvPlatform::detail {

/// Hears how a transaction in which it wrote has ended.
class TransactionListener {
 public:
  virtual ~TransactionListener() = default;
  /// All that it wrote is durable.
  virtual void OnCommitted() = 0;
  /// Part or all of what it wrote since the transaction began is undone.
  virtual void OnRolledBack() noexcept = 0;
};

/// Another file, or none, has come into the place of one that is open.
class FileReplacedError : public StorageError {
 public:
  using StorageError::StorageError;
};

/// A connection and the transaction that may be open on it.
class Session {
 public:
  /// `schemas` are the files whose place on the medium is checked before each transaction.
  Session(Connection connection, std::vector<std::string> schemas);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// The connection itself.
  [[nodiscard]] Connection& Db() { return connection_; }
  /// True between Begin and the end of the transaction, also of one that SQLite has given up.
  [[nodiscard]] bool Active() const { return active_; }

  /// Begins a transaction and takes the locks of a writer at once. Throws StorageError, and
  /// FileReplacedError where a file has been replaced or removed since it was opened.
  void Begin();
  /// Has to be called ahead of the first change of a file: its head is written into the rollback
  /// journal first, so that a journal that is left tells to which state of which file it belongs.
  void BeginFile(const std::string& schema);
  /// A change is half made and cannot be undone by itself: nothing more is written, and the commit
  /// is refused.
  void Doom() { doomed_ = true; }
  /// All is durable when it returns. Throws StorageError after everything has been rolled back.
  void Commit();
  /// Undoes everything and ends the transaction.
  void Rollback() noexcept;
  /// Sets a mark inside the transaction to which it can be rolled back; marks nest. Throws
  /// StorageError.
  void PushMark();
  /// Forgets the last mark and keeps what was written since. Throws StorageError.
  void ReleaseMark();
  /// Undoes what was written since the last mark, forgets it, and tells the listeners.
  void RollbackToMark() noexcept;
  /// Does the same without telling, for a change that no listener has taken for made yet.
  void DropToMark() noexcept;
  /// Throws if SQLite has given up the transaction, as it does when a medium is full.
  void CheckAlive() const;

  /// The listener hears of the end of the open transaction, once.
  void Join(TransactionListener* listener);
  /// The listener hears nothing more.
  void Leave(TransactionListener* listener) noexcept;

 private:
  [[nodiscard]] std::string MarkName() const;
  void TellRolledBack(bool ended) noexcept;

  Connection connection_;
  std::vector<std::string> schemas_;
  std::vector<TransactionListener*> listeners_;
  std::vector<std::string> begun_;
  int marks_ = 0;
  bool active_ = false;
  bool doomed_ = false;
};

/// One change that is durable when Done returns, or that belongs to the transaction that was open
/// already. Without Done it is undone.
class WriteScope {
 public:
  /// A scope of several statements inside an open transaction is undone as a whole.
  explicit WriteScope(Session& session, bool severalStatements = false);
  ~WriteScope();
  WriteScope(const WriteScope&) = delete;
  WriteScope& operator=(const WriteScope&) = delete;
  /// Makes the change last. The listener, which may be null, hears that it is committed: now, or at
  /// the end of the transaction around. Throws StorageError after the change is undone.
  void Done(TransactionListener* listener);

 private:
  Session& session_;
  bool own_;
  bool mark_;
  bool done_ = false;
};

/// A read transaction, unless one of any kind is open already.
class ReadScope {
 public:
  /// Reads between here and the end of the scope see one state of the files. Throws StorageError.
  explicit ReadScope(Session& session);
  ~ReadScope();
  ReadScope(const ReadScope&) = delete;
  ReadScope& operator=(const ReadScope&) = delete;

 private:
  Session& session_;
  bool own_;
};

}  // namespace QvPlatform::detail
