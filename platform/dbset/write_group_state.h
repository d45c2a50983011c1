#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "platform/dbset/store_transaction.h"

namespace QvPlatform::detail {

/// A data set, as the group sees it that it is in.
class GroupMember {
 public:
  /// Somebody else may have changed the table: the member brings its rows up to date. Throws
  /// StorageError.
  virtual bool Refresh() = 0;
  /// The group is over, whether it was committed or undone.
  virtual void LeaveGroup() = 0;

 protected:
  ~GroupMember() = default;
};

/// What the data sets of a write group share: its transaction, and who waits for its end.
class WriteGroupState {
 public:
  /// The members are not owned; one that goes while the group is open has to be forgotten.
  WriteGroupState(std::vector<GroupMember*> members,
                  std::vector<std::shared_ptr<TableStore>> stores);
  ~WriteGroupState();
  WriteGroupState(const WriteGroupState&) = delete;
  WriteGroupState& operator=(const WriteGroupState&) = delete;

  /// Takes the locks of a writer and brings all members up to date, so that what is looked up from
  /// now on still holds when it is written. Where the store cannot be written the members are only
  /// brought up to date, and the first change is refused. Throws StorageError.
  void LockAndRefresh();
  /// Commits. Throws StorageError; what has become of the changes is told by Outcome.
  void Commit();
  /// How the group has ended. Nothing is known of changes that were neither found nor found undone
  /// after a commit has failed.
  [[nodiscard]] CommitOutcome Outcome() const { return outcome_; }
  /// The transaction, until End.
  [[nodiscard]] StoreTransaction& Transaction() { return *transaction_; }
  /// Passes by a member that is destroyed while the group is open.
  void Forget(GroupMember* member) { std::erase(members_, member); }
  /// Ends the transaction, undoing what was not committed, and sets the members free.
  void End() noexcept;

  /// What is to happen beside the tables when the group ends; either may be empty.
  struct Follower {
    /// Runs after the commit of the outermost group.
    std::function<void()> done;
    /// Runs after the group that added it, or one around, was undone.
    std::function<void()> undone;
  };
  /// Appends a follower, behind those of the groups around and inside.
  void AddFollower(Follower follower) { followers_.push_back(std::move(follower)); }
  /// How many followers there are so far, which is the number of the next one.
  [[nodiscard]] std::size_t FollowerCount() const { return followers_.size(); }
  /// Tells the followers how the group has ended, if that is known. What lies beside the tables
  /// stays behind otherwise, since an orphan does less harm than a loss.
  void TellEnd() noexcept;
  /// Tells all followers in their order that the group is committed, and forgets them.
  void TellDone() noexcept;
  /// Tells those from the given number on that they are undone, the last one first, and forgets
  /// them.
  void TellUndone(std::size_t first) noexcept;

  /// Runs an action, if there is one, and drops what it throws: what lies beside the tables stays
  /// behind where it cannot be cleared away.
  static void RunQuietly(const std::function<void()>& action) noexcept;

 private:
  std::vector<Follower> followers_;
  std::vector<GroupMember*> members_;
  std::vector<std::shared_ptr<TableStore>> stores_;
  std::unique_ptr<StoreTransaction> transaction_;
  CommitOutcome outcome_ = CommitOutcome::kUndone;
};

}  // namespace QvPlatform::detail
