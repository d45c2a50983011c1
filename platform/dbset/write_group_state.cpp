#include "platform/dbset/write_group_state.h"

#include <utility>

namespace QvPlatform::detail {

WriteGroupState::WriteGroupState(std::vector<GroupMember*> members,
                                 std::unique_ptr<StoreTransaction> transaction)
    : members_(std::move(members)), transaction_(std::move(transaction)) {}

WriteGroupState::~WriteGroupState() = default;

void WriteGroupState::End() noexcept {
  transaction_.reset();
  for (GroupMember* member : std::exchange(members_, {}))
    member->LeaveGroup();
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
