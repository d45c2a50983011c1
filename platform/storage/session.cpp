#include "platform/storage/session.h"

#include <algorithm>
#include <utility>

namespace QvPlatform::detail {

Session::Session(Connection connection, std::vector<std::string> schemas)
    : connection_(std::move(connection)), schemas_(std::move(schemas)) {}

Session::~Session() {
  if (active_) Rollback();
}

void Session::Begin() {
  for (const std::string& schema : schemas_) {
    if (connection_.HasMoved(schema)) {
      throw FileReplacedError("\"" + connection_.Name() +
                              "\": the file was replaced or removed while it was open");
    }
  }
  connection_.Execute("BEGIN IMMEDIATE");
  active_ = true;
  doomed_ = false;
  marks_ = 0;
  begun_.clear();
}

void Session::BeginFile(const std::string& schema) {
  if (std::ranges::find(begun_, schema) != begun_.end()) return;
  const std::string version = "PRAGMA " + QuoteName(schema) + ".user_version";
  // To write what stands there already is a change of the first page all the same.
  connection_.Execute(version + " = " + std::to_string(connection_.QueryInteger(version)));
  begun_.push_back(schema);
}

void Session::CheckAlive() const {
  if (active_ && (doomed_ || !connection_.InTransaction())) {
    throw StorageError("\"" + connection_.Name() +
                       "\": the store has given up the group of changes");
  }
}

void Session::Commit() {
  try {
    CheckAlive();
    connection_.Execute("COMMIT");
  } catch (...) {
    Rollback();
    throw;
  }
  active_ = false;
  const std::vector<TransactionListener*> listeners = std::exchange(listeners_, {});
  for (TransactionListener* listener : listeners)
    listener->OnCommitted();
}

void Session::Rollback() noexcept {
  try {
    if (connection_.InTransaction()) connection_.Execute("ROLLBACK");
  } catch (const std::exception&) {
    // A rollback fails only where SQLite has rolled back already.
  }
  active_ = false;
  TellRolledBack(true);
}

std::string Session::MarkName() const {
  return "qv_mark_" + std::to_string(marks_);
}

void Session::PushMark() {
  // A mark would begin a transaction of its own in the place of one that SQLite has rolled back.
  CheckAlive();
  ++marks_;
  try {
    connection_.Execute("SAVEPOINT " + MarkName());
  } catch (...) {
    --marks_;
    throw;
  }
}

void Session::ReleaseMark() {
  CheckAlive();
  connection_.Execute("RELEASE " + MarkName());
  --marks_;
}

void Session::RollbackToMark() noexcept {
  DropToMark();
  TellRolledBack(false);
}

void Session::DropToMark() noexcept {
  try {
    if (connection_.InTransaction()) {
      connection_.Execute("ROLLBACK TO " + MarkName());
      connection_.Execute("RELEASE " + MarkName());
    }
  } catch (const std::exception&) {
    // CheckAlive finds out before anything else is written.
  }
  --marks_;
}

void Session::TellRolledBack(bool ended) noexcept {
  // Those that go on listening may be told again, and one may leave while it is told.
  const std::vector<TransactionListener*> listeners = listeners_;
  if (ended) listeners_.clear();
  for (TransactionListener* listener : listeners)
    listener->OnRolledBack();
}

void Session::Join(TransactionListener* listener) {
  if (std::ranges::find(listeners_, listener) == listeners_.end()) listeners_.push_back(listener);
}

void Session::Leave(TransactionListener* listener) noexcept {
  std::erase(listeners_, listener);
}

WriteScope::WriteScope(Session& session, bool severalStatements)
    : session_(session), own_(!session.Active()), mark_(!own_ && severalStatements) {
  session_.CheckAlive();
  if (own_) session_.Begin();
  if (mark_) session_.PushMark();
}

WriteScope::~WriteScope() {
  if (done_) return;
  if (own_ && session_.Active()) session_.Rollback();
  if (mark_) session_.DropToMark();
}

void WriteScope::Done(TransactionListener* listener) {
  if (mark_) session_.ReleaseMark();
  mark_ = false;
  if (own_) {
    session_.Commit();
    if (listener != nullptr) listener->OnCommitted();
  } else if (listener != nullptr) {
    session_.Join(listener);
  }
  done_ = true;
}

ReadScope::ReadScope(Session& session) : session_(session), own_(!session.Db().InTransaction()) {
  session_.CheckAlive();
  if (own_) session_.Db().Execute("BEGIN");
}

ReadScope::~ReadScope() {
  if (!own_) return;
  try {
    session_.Db().Execute("COMMIT");
  } catch (const std::exception&) {
    // Nothing was written; SQLite ends a failed read by itself.
  }
}

}  // namespace QvPlatform::detail
