#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>

#include "platform/dbset/data_set_observer.h"
#include "platform/dbset/data_source.h"
#include "platform/dbset/write_group.h"
#include "tests/platform/dbset/table_fixture.h"
#include "tests/platform/storage/test_folder.h"

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
  Notices() {
    MakeTable(path_);
    table_ = std::make_unique<Table>(path_);
    source_ = std::make_unique<TDataSource>(&table_->set);
    source_->AddObserver(&listener_);
  }
  ~Notices() override { source_->RemoveObserver(&listener_); }

  TestFolder folder_;
  const std::string path_ = folder_.Path("t.dat");
  Listener listener_;
  std::unique_ptr<Table> table_;
  std::unique_ptr<TDataSource> source_;
};

TEST_F(Notices, TellEachChangeWithItsPlace) {
  table_->Add("b", 1);
  EXPECT_THAT(listener_.Take(), ElementsAre("+0", "@0"));
  table_->Add("a", 1);
  EXPECT_THAT(listener_.Take(), ElementsAre("+0", "@0"));
  table_->set.Edit();
  table_->set.Fields(kCode).SetInteger(2);
  EXPECT_THAT(listener_.Take(), IsEmpty()) << "nothing is stored yet";
  table_->set.Post();
  EXPECT_THAT(listener_.Take(), ElementsAre("=0"));
  table_->set.Edit();
  table_->set.Fields(kName).SetString("c");
  table_->set.Post();
  EXPECT_THAT(listener_.Take(), ElementsAre("-0", "+1", "@1"));
  table_->set.First();
  table_->set.First();
  EXPECT_THAT(listener_.Take(), ElementsAre("@0"));
  table_->set.Delete();
  EXPECT_THAT(listener_.Take(), ElementsAre("-0", "@0"));
  table_->set.Close();
  table_->set.Open();
  EXPECT_THAT(listener_.Take(), ElementsAre("reset", "reset"));
}

TEST_F(Notices, AreHeldBackWhileControlsAreDisabled) {
  for (const char* name : {"a", "b"})
    table_->Add(name, 1);
  listener_.Take();
  table_->set.DisableControls();
  table_->set.DisableControls();
  static_cast<void>(table_->Names());
  table_->set.First();
  table_->set.EnableControls();
  EXPECT_TRUE(table_->set.ControlsDisabled());
  EXPECT_THAT(listener_.Take(), IsEmpty());
  table_->set.EnableControls();
  EXPECT_THAT(listener_.Take(), ElementsAre("@0"));
  table_->set.DisableControls();
  table_->set.Next();
  table_->set.First();
  table_->set.EnableControls();
  EXPECT_THAT(listener_.Take(), IsEmpty()) << "the cursor is where it was";
  table_->set.DisableControls();
  table_->Add("c", 1);
  table_->set.EnableControls();
  EXPECT_THAT(listener_.Take(), ElementsAre("reset"));
  table_->set.EnableControls();
  EXPECT_FALSE(table_->set.ControlsDisabled()) << "one too many does nothing";
}

TEST_F(Notices, PassByASourceThatIsDisabled) {
  source_->SetEnabled(false);
  table_->Add("a", 1);
  EXPECT_THAT(listener_.Take(), IsEmpty());
  source_->SetEnabled(true);
  source_->SetEnabled(true);
  EXPECT_THAT(listener_.Take(), ElementsAre("reset"));
}

TEST_F(Notices, LetObserversComeAndGoMeanwhile) {
  Listener second;
  Listener third;
  source_->AddObserver(&second);
  listener_.then = [&] {
    source_->RemoveObserver(&second);
    source_->AddObserver(&third);
  };
  table_->Add("a", 1);
  listener_.then = nullptr;
  EXPECT_THAT(second.Take(), IsEmpty());
  third.Take();
  source_->RemoveObserver(&third);
  auto other = std::make_unique<TDataSource>(&table_->set);
  other->AddObserver(&third);
  listener_.then = [&] { other.reset(); };
  table_->Add("b", 1);
  EXPECT_THAT(third.Take(), IsEmpty()) << "its source is gone";
  listener_.then = nullptr;
}

TEST_F(Notices, EndWithTheDataSet) {
  table_.reset();
  EXPECT_EQ(source_->DataSet(), nullptr);
  source_->SetEnabled(false);
  source_->SetEnabled(true);
}

TEST_F(Notices, TellOnceWhatAGroupUndid) {
  table_->Add("a", 1);
  {
    TQvWriteGroup group({&table_->set});
    table_->Add("b", 1);
    table_->Add("c", 1);
    listener_.Take();
  }
  EXPECT_THAT(listener_.Take(), ElementsAre("reset"));
}

}  // namespace
