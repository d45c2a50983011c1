#include <algorithm>
#include <stdexcept>
#include <utility>

#include "platform/dbset/data_set_impl.h"

namespace QvPlatform {

namespace {

std::unique_ptr<detail::StoreTransaction> TransactionOf(const std::vector<DataSetImpl*>& members) {
  std::vector<std::shared_ptr<detail::TableStore>> stores;
  stores.reserve(members.size());
  for (const DataSetImpl* member : members)
    stores.push_back(member->Store());
  return detail::BeginTransaction(stores);
}

/// The group that the data sets are in already, null if none of them is in one.
std::shared_ptr<WriteGroupState> OuterGroup(const std::vector<DataSetImpl*>& members) {
  std::shared_ptr<WriteGroupState> outer;
  for (const DataSetImpl* member : members) {
    if (member->Group() != nullptr) outer = member->Group();
  }
  const bool shared = std::ranges::all_of(
      members, [&outer](const DataSetImpl* member) { return member->Group() == outer; });
  if (!shared) {
    throw std::logic_error("a group of changes inside another may hold no further data sets");
  }
  return outer;
}

// What lies beside the tables stays behind where it cannot be cleared away.
void RunQuietly(const std::function<void()>& action) noexcept {
  try {
    if (action) action();
  } catch (...) {
    return;
  }
}

}  // namespace

WriteGroupState::WriteGroupState(std::vector<DataSetImpl*> members)
    : members_(std::move(members)), transaction_(TransactionOf(members_)) {}

WriteGroupState::~WriteGroupState() = default;

void WriteGroupState::End() noexcept {
  transaction_.reset();
  for (DataSetImpl* member : std::exchange(members_, {}))
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

struct TQvWriteGroup::Impl {
  /// Null for a group of nothing.
  std::shared_ptr<WriteGroupState> state;
  /// Number of the first follower that belongs to this group or to one inside of it.
  std::size_t firstFollower = 0;
  bool outermost = false;
  bool committed = false;
};

TQvWriteGroup::TQvWriteGroup(const std::vector<TQvDataSet*>& dataSets)
    : impl_(std::make_unique<Impl>()) {
  std::vector<DataSetImpl*> members;
  for (TQvDataSet* dataSet : dataSets) {
    // A closed data set can post nothing.
    if (dataSet == nullptr || !dataSet->GetActive()) continue;
    DataSetImpl* member = dataSet->impl_.get();
    if (std::ranges::find(members, member) == members.end()) members.push_back(member);
  }
  if (members.empty()) return;
  impl_->state = OuterGroup(members);
  if (impl_->state != nullptr) {
    impl_->state->Transaction().PushLevel();
    impl_->firstFollower = impl_->state->FollowerCount();
    return;
  }
  impl_->state = std::make_shared<WriteGroupState>(members);
  impl_->outermost = true;
  for (DataSetImpl* member : members)
    member->EnterGroup(impl_->state);
}

TQvWriteGroup::~TQvWriteGroup() {
  if (impl_->state == nullptr || impl_->committed) return;
  if (impl_->outermost) {
    impl_->state->End();
  } else {
    impl_->state->Transaction().UndoLevel();
  }
  impl_->state->TellUndone(impl_->firstFollower);
}

void TQvWriteGroup::Commit() {
  if (impl_->state == nullptr || impl_->committed) return;
  if (!impl_->outermost) {
    impl_->state->Transaction().ReleaseLevel();
    impl_->committed = true;
    return;
  }
  // Committed or undone, the group is over.
  impl_->committed = true;
  try {
    impl_->state->Transaction().Commit();
  } catch (...) {
    impl_->state->End();
    impl_->state->TellUndone(0);
    throw;
  }
  impl_->state->End();
  impl_->state->TellDone();
}

void TQvWriteGroup::AtEnd(std::function<void()> done, std::function<void()> undone) {
  if (impl_->state != nullptr) {
    impl_->state->AddFollower({std::move(done), std::move(undone)});
  } else {
    RunQuietly(done);
  }
}

}  // namespace QvPlatform
