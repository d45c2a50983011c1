#include "platform/dbset/write_group.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "platform/dbset/data_set.h"
#include "platform/dbset/data_set_impl.h"
#include "platform/dbset/write_group_state.h"
#include "platform/storage/session.h"

namespace QvPlatform {

using detail::WriteGroupState;

namespace {

/// How often a group is begun anew because files were replaced meanwhile.
constexpr int kMostBeginnings = 3;

std::shared_ptr<WriteGroupState> StateOf(const std::vector<DataSetImpl*>& members) {
  std::vector<std::shared_ptr<detail::TableStore>> stores;
  stores.reserve(members.size());
  for (DataSetImpl* member : members) {
    member->ReattachIfReplaced();
    stores.push_back(member->Store());
  }
  return std::make_shared<WriteGroupState>(
      std::vector<detail::GroupMember*>(members.begin(), members.end()), std::move(stores));
}

/// Puts the data sets into a new group that holds the locks.
std::shared_ptr<WriteGroupState> Begin(const std::vector<DataSetImpl*>& members) {
  for (int beginning = 1;; ++beginning) {
    std::shared_ptr<WriteGroupState> state = StateOf(members);
    for (DataSetImpl* member : members)
      member->EnterGroup(state);
    try {
      state->LockAndRefresh();
      return state;
    } catch (const detail::FileReplacedError&) {
      state->End();
      if (beginning == kMostBeginnings) throw;
    } catch (...) {
      state->End();
      throw;
    }
  }
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

}  // namespace

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
  impl_->state = Begin(members);
  impl_->outermost = true;
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
    impl_->state->Commit();
  } catch (...) {
    impl_->state->End();
    impl_->state->TellEnd();
    throw;
  }
  impl_->state->End();
  impl_->state->TellEnd();
}

void TQvWriteGroup::AtEnd(std::function<void()> done, std::function<void()> undone) {
  if (impl_->state != nullptr) {
    impl_->state->AddFollower({std::move(done), std::move(undone)});
  } else {
    WriteGroupState::RunQuietly(done);
  }
}

}  // namespace QvPlatform
