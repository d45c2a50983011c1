#include <gmock/gmock.h>
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
using testing::ElementsAre;
using testing::IsEmpty;

/// Writes down what it is told.
class Listener : public TDataSetObserver {
 public:
  void OnRowsReset() override { Note("reset"); }
  void OnRowInserted(int position) override { Note("+" + std::to_string(position)); }
  void OnRowChanged(int position) override { Note("=" + std::to_string(position)); }
  void OnRowRemoved(int position) override { Note("-" + std::to_string(position)); }
  void OnCurrentMoved(int position) override { Note("@" + std::to_string(position)); }

  std::vector<std::string> Take() { return std::exchange(notes_, {}); }
  std::function<void()> then;

 private:
  void Note(const std::string& note) {
    notes_.push_back(note);
    if (then) then();
  }
  std::vector<std::string> notes_;
};

class Notices : public testing::Test {
 protected:
  Notices() { source_.AddObserver(&listener_); }

  Listener listener_;
  std::unique_ptr<FileTable> table_ = std::make_unique<FileTable>();
  TQvDataSet& set_ = table_->set;
  TDataSource source_{&set_};
};

TEST_F(Notices, TellEachChangeWithItsPlace) {
  table_->Add("b", 1);
  EXPECT_THAT(listener_.Take(), ElementsAre("+0", "@0"));
  table_->Add("a", 1);
  EXPECT_THAT(listener_.Take(), ElementsAre("+0", "@0"));
  set_.Edit();
  set_.Fields(kCode).SetInteger(2);
  EXPECT_THAT(listener_.Take(), IsEmpty()) << "nothing is stored yet";
  set_.Post();
  EXPECT_THAT(listener_.Take(), ElementsAre("=0"));
  table_->Change(kName, "c");
  EXPECT_THAT(listener_.Take(), ElementsAre("-0", "+1", "@1"));
  set_.First();
  set_.First();
  EXPECT_THAT(listener_.Take(), ElementsAre("@0"));
  set_.Delete();
  EXPECT_THAT(listener_.Take(), ElementsAre("-0", "@0"));
  set_.Close();
  set_.Open();
  EXPECT_THAT(listener_.Take(), ElementsAre("reset", "reset"));
}

TEST_F(Notices, AreHeldBackWhileControlsAreDisabled) {
  for (const char* name : {"a", "b"})
    table_->Add(name, 1);
  listener_.Take();
  set_.DisableControls();
  set_.DisableControls();
  static_cast<void>(table_->Names());
  set_.First();
  set_.EnableControls();
  EXPECT_TRUE(set_.ControlsDisabled());
  EXPECT_THAT(listener_.Take(), IsEmpty());
  set_.EnableControls();
  EXPECT_THAT(listener_.Take(), ElementsAre("@0"));
  set_.DisableControls();
  set_.Next();
  set_.First();
  set_.EnableControls();
  EXPECT_THAT(listener_.Take(), IsEmpty()) << "the cursor is where it was";
  set_.DisableControls();
  table_->Add("c", 1);
  set_.EnableControls();
  EXPECT_THAT(listener_.Take(), ElementsAre("reset"));
  set_.EnableControls();
  EXPECT_FALSE(set_.ControlsDisabled()) << "one too many does nothing";
}

TEST_F(Notices, PassByASourceThatIsDisabled) {
  source_.SetEnabled(false);
  table_->Add("a", 1);
  EXPECT_THAT(listener_.Take(), IsEmpty());
  source_.SetEnabled(true);
  source_.SetEnabled(true);
  EXPECT_THAT(listener_.Take(), ElementsAre("reset"));
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
  EXPECT_THAT(second.Take(), IsEmpty());
  third.Take();
  source_.RemoveObserver(&third);
  auto other = std::make_unique<TDataSource>(&set_);
  other->AddObserver(&third);
  listener_.then = [&] { other.reset(); };
  table_->Add("b", 1);
  EXPECT_THAT(third.Take(), IsEmpty()) << "its source is gone";
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
  EXPECT_THAT(listener_.Take(), ElementsAre("reset"));
}

}  // namespace
