#include "platform/dbset/write_group_state.h"

#include <optional>
#include <utility>

#include "platform/storage/sqlite.h"

namespace QvPlatform::detail {

WriteGroupState::WriteGroupState(std::vector<GroupMember*> members,
                                 std::vector<std::shared_ptr<TableStore>> stores)
    : members_(std::move(members)),
      stores_(std::move(stores)),
      transaction_(BeginTransaction(stores_)) {}

WriteGroupState::~WriteGroupState() = default;

void WriteGroupState::LockAndRefresh() {
  try {
    transaction_->BeforeWrite();
  } catch (const SqliteError& error) {
    if (!error.IsReadOnly()) throw;
  }
  for (GroupMember* member : members_)
    member->Refresh();
}

namespace {

CommitOutcome OutcomeOf(const std::vector<TableStore*>& changed) {
  std::optional<CommitOutcome> all;
  for (TableStore* store : changed) {
    const CommitOutcome outcome = store->Outcome();
    if (all.value_or(outcome) != outcome) return CommitOutcome::kUnknown;
    all = outcome;
  }
  return all.value_or(CommitOutcome::kUndone);
}

}  // namespace

void WriteGroupState::Commit() {
  std::vector<TableStore*> changed;
  for (const auto& store : stores_) {
    if (store->TakesPart()) changed.push_back(store.get());
  }
  outcome_ = CommitOutcome::kUnknown;
  try {
    transaction_->Commit();
  } catch (...) {
    transaction_->Undo();
    outcome_ = OutcomeOf(changed);
    throw;
  }
  outcome_ = CommitOutcome::kCommitted;
}

void WriteGroupState::End() noexcept {
  transaction_.reset();
  for (GroupMember* member : std::exchange(members_, {}))
    member->LeaveGroup();
}

void WriteGroupState::TellEnd() noexcept {
  if (outcome_ == CommitOutcome::kCommitted) return TellDone();
  if (outcome_ == CommitOutcome::kUndone) TellUndone(0);
}

void WriteGroupState::TellDone() noexcept {
  for (const Follower& follower : std::exchange(followers_, {}))
    RunQuietly(follower.done);
}

void WriteGroupState::TellUndone(std::size_t first) noexcept {
  while (followers_.size() > first) {
    const Follower follower = std::move(followers_.back());
    followers_.pop_back();
    RunQuietly(follower.undone);
  }
}

void WriteGroupState::RunQuietly(const std::function<void()>& action) noexcept {
  try {
    if (action) action();
  } catch (...) {
    return;
  }
}

}  // namespace QvPlatform::detail
