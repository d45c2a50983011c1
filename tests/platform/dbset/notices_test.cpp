#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>

#include "platform/dbset/data_set_observer.h"
#include "platform/dbset/data_source.h"
#include "platform/dbset/write_group.h"
#include "tests/platform/dbset/table_fixture.h"

namespace {

using namespace QvPlatform;
using namespace platform_tests;

/// Writes down what it is told: rows with "+", "=" and "-", the cursor with "@", and "!" for all.
class Listener : public TDataSetObserver {
 public:
  void OnRowsReset() override { Note("!"); }
  void OnRowInserted(int position) override { Note("+" + std::to_string(position)); }
  void OnRowChanged(int position) override { Note("=" + std::to_string(position)); }
  void OnRowRemoved(int position) override { Note("-" + std::to_string(position)); }
  void OnCurrentMoved(int position) override { Note("@" + std::to_string(position)); }

  std::string Take() { return std::exchange(notes_, {}); }
  std::function<void()> then;

 private:
  void Note(const std::string& note) {
    notes_ += note;
    if (then) then();
  }
  std::string notes_;
};

class Notices : public testing::Test {
 protected:
  Notices() { source_.AddObserver(&listener_); }

  Listener listener_;
  std::unique_ptr<FileTable> table_ = std::make_unique<FileTable>();
  TQvDataSet& set_ = table_->set;
  TDataSource source_{&set_};
};

TEST_F(Notices, TellEachChangeWithItsPlaceUnlessControlsAreDisabled) {
  const struct {
    const char* what;
    std::function<void()> step;
    const char* told;
  } rows[] = {
      {"the first row", [&] { table_->Add("b", 1); }, "+0@0"},
      {"one ahead of it", [&] { table_->Add("a", 1); }, "+0@0"},
      {"a change that is not stored yet", [&] { set_.Edit(); }, ""},
      {"a change in its place", [&] { table_->Change(kCode, 2); }, "=0"},
      {"a change that moves the row", [&] { table_->Change(kName, "c"); }, "-0+1@1"},
      {"a move", [&] { set_.First(); }, "@0"},
      {"a move to where it is", [&] { set_.First(); }, ""},
      {"a row that goes", [&] { set_.Delete(); }, "-0@0"},
      {"closing and opening", [&] { table_->Reopen(); }, "!!"},
      {"disabled: a row", [&] { set_.DisableControls(), table_->Add("b", 1); }, ""},
      {"enabled after that", [&] { set_.EnableControls(); }, "!"},
      {"disabled twice, enabled once",
       [&] { set_.DisableControls(), set_.DisableControls(), set_.Last(), set_.EnableControls(); },
       ""},
      {"enabled again, the cursor elsewhere", [&] { set_.EnableControls(); }, "@1"},
      {"the cursor where it was",
       [&] { set_.DisableControls(), set_.First(), set_.Last(), set_.EnableControls(); }, ""},
      {"enabled once too often", [&] { set_.EnableControls(); }, ""},
      {"a row after that", [&] { table_->Add("a", 1); }, "+0@0"}};
  for (const auto& row : rows) {
    row.step();
    EXPECT_EQ(listener_.Take(), row.told) << row.what;
  }
}

TEST_F(Notices, PassByASourceThatIsDisabled) {
  source_.SetEnabled(false);
  table_->Add("a", 1);
  EXPECT_EQ(listener_.Take(), "");
  source_.SetEnabled(true);
  source_.SetEnabled(true);
  EXPECT_EQ(listener_.Take(), "!");
}

TEST_F(Notices, LetObserversComeAndGoMeanwhile) {
  Listener second;
  Listener third;
  source_.AddObserver(&second);
  listener_.then = [&] {
    source_.RemoveObserver(&second);
    source_.AddObserver(&third);
  };
  table_->Add("a", 1);
  listener_.then = nullptr;
  EXPECT_EQ(second.Take(), "");
  third.Take();
  source_.RemoveObserver(&third);
  auto other = std::make_unique<TDataSource>(&set_);
  other->AddObserver(&third);
  listener_.then = [&] { other.reset(); };
  table_->Add("b", 1);
  EXPECT_EQ(third.Take(), "") << "its source is gone";
  listener_.then = nullptr;
}

TEST_F(Notices, EndWithTheDataSet) {
  table_.reset();
  EXPECT_EQ(source_.DataSet(), nullptr);
  source_.SetEnabled(false);
  source_.SetEnabled(true);
}

TEST_F(Notices, TellOnceWhatAGroupUndid) {
  table_->Add("a", 1);
  {
    TQvWriteGroup group({&set_});
    table_->Add("b", 1);
    table_->Add("c", 1);
    listener_.Take();
  }
  EXPECT_EQ(listener_.Take(), "!");
}

}  // namespace
