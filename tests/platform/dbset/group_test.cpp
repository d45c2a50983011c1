#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>
#include <memory>
#include <optional>

#include "platform/dbset/write_group.h"
#include "platform/storage/resource_session.h"
#include "tests/platform/dbset/table_fixture.h"
#include "tests/platform/storage/test_folder.h"

namespace {

using namespace QvPlatform;
using namespace platform_tests;
using testing::ElementsAre;
using testing::IsEmpty;

enum class Form { kFiles, kContainer };

class Groups : public testing::TestWithParam<Form> {
 protected:
  Groups() {
    for (const char* name : {"a", "b", "c"})
      MakeTable(Name(name), Type());
  }
  QvDataBufferType Type() const {
    return GetParam() == Form::kFiles ? QvDataBufferType::dtFileStream
                                      : QvDataBufferType::kResource;
  }
  std::string Name(const std::string& table) const {
    return folder_.Path(GetParam() == Form::kFiles ? table + ".dat" : "refs.qvdb." + table);
  }
  Table Open(const std::string& table) const { return Table(Name(table), Type()); }
  std::vector<std::string> Stored(const std::string& table) const { return Open(table).Names(); }

  /// Runs the steps in a process of their own, which ends at once behind them.
  static void RunAndDie(const std::function<void()>& steps) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      steps();
      _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }

  TestFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(Forms, Groups, testing::Values(Form::kFiles, Form::kContainer),
                         [](const auto& row) {
                           return std::string(row.param == Form::kFiles ? "Files" : "Container");
                         });

TEST_P(Groups, StoreAllOfTheirChanges) {
  Table a = Open("a");
  Table b = Open("b");
  a.Add("old", 1);
  {
    TQvWriteGroup group({&a.set, &b.set, &a.set});
    EXPECT_EQ(a.Add("x", 1), 2) << "keys are final inside of the group";
    EXPECT_EQ(b.Add("y", 1), 1);
    a.GoTo(1);
    a.set.Delete();
    group.Commit();
  }
  EXPECT_THAT(Stored("a"), ElementsAre("x"));
  EXPECT_THAT(Stored("b"), ElementsAre("y"));
  a.Reopen();
  EXPECT_THAT(a.Names(), ElementsAre("x"));
}

TEST_P(Groups, UndoAllOfTheirChangesWhenTheyAreLeft) {
  Table a = Open("a");
  Table b = Open("b");
  a.Add("old", 1);
  b.Add("other", 1);
  const int kept = a.Add("kept", 1);
  {
    TQvWriteGroup group({&a.set, &b.set});
    a.Rename(1, "changed");
    a.Add("x", 1);
    b.set.Delete();
    a.GoTo(kept);
    EXPECT_EQ(a.set.RecordCount(), 3);
  }
  EXPECT_EQ(a.set.Fields(kKey).AsInteger(), kept) << "the cursor stays on its record";
  EXPECT_THAT(a.Names(), ElementsAre("kept", "old"));
  EXPECT_THAT(b.Names(), ElementsAre("other"));
  EXPECT_THAT(Stored("a"), ElementsAre("kept", "old"));
  EXPECT_THAT(Stored("b"), ElementsAre("other"));
  EXPECT_EQ(a.Add("next", 1), 3) << "a key that was undone was never given";
  a.Reopen();
  EXPECT_EQ(a.set.RecordCount(), 3);
}

TEST_P(Groups, InsideOthersEndWithTheOuterOne) {
  Table a = Open("a");
  Table b = Open("b");
  {
    TQvWriteGroup outer({&a.set, &b.set});
    {
      TQvWriteGroup inner({&a.set});
      a.Add("inner", 1);
      inner.Commit();
    }
    b.Add("outer", 1);
  }
  EXPECT_THAT(Stored("a"), IsEmpty());
  EXPECT_THAT(a.Names(), IsEmpty());
  TQvWriteGroup outer({&a.set, &b.set});
  a.Add("first", 1);
  {
    TQvWriteGroup inner({&a.set, &b.set});
    a.Add("undone", 1);
    b.Add("undone", 1);
  }
  EXPECT_THAT(a.Names(), ElementsAre("first")) << "the inner group alone is undone";
  EXPECT_THAT(b.Names(), IsEmpty());
  {
    TQvWriteGroup inner({&b.set});
    b.Add("second", 1);
    inner.Commit();
  }
  outer.Commit();
  EXPECT_THAT(Stored("a"), ElementsAre("first"));
  EXPECT_THAT(Stored("b"), ElementsAre("second"));
}

TEST_P(Groups, TellWhatLiesBesideTheTablesHowTheyEnd) {
  Table a = Open("a");
  std::vector<std::string> told;
  const auto follow = [&told](TQvWriteGroup& group, const std::string& name) {
    group.AtEnd([&told, name] { told.push_back(name + " done"); },
                [&told, name] {
                  told.push_back(name + " undone");
                  throw std::runtime_error("is dropped");
                });
  };
  {
    TQvWriteGroup outer({&a.set});
    follow(outer, "first");
    {
      TQvWriteGroup kept({&a.set});
      follow(kept, "kept");
      kept.Commit();
    }
    {
      TQvWriteGroup left({&a.set});
      follow(left, "left");
      {
        TQvWriteGroup innermost({&a.set});
        follow(innermost, "innermost");
        innermost.Commit();
      }
    }
    EXPECT_THAT(told, ElementsAre("innermost undone", "left undone"));
    told.clear();
    a.Add("x", 1);
    outer.Commit();
  }
  EXPECT_THAT(told, ElementsAre("first done", "kept done"));
  told.clear();
  {
    TQvWriteGroup outer({&a.set});
    follow(outer, "first");
    follow(outer, "second");
    outer.AtEnd({}, {});
    a.Add("y", 1);
  }
  EXPECT_THAT(told, ElementsAre("second undone", "first undone"));
  EXPECT_THAT(Stored("a"), ElementsAre("x"));
}

TEST_P(Groups, TakeNoFurtherDataSetsInside) {
  Table a = Open("a");
  Table b = Open("b");
  TQvWriteGroup outer({&a.set});
  a.Add("x", 1);
  EXPECT_THROW(TQvWriteGroup({&a.set, &b.set}), std::logic_error);
  outer.Commit();
  EXPECT_THAT(Stored("a"), ElementsAre("x"));
}

TEST_P(Groups, CanBeRepeatedOverChangingSetsAndReopenings) {
  Table a = Open("a");
  Table b = Open("b");
  Table c = Open("c");
  for (int i = 0; i < 6; ++i) {
    std::vector<TQvDataSet*> sets = {&a.set, &b.set};
    if (i % 2 == 0) sets.push_back(&c.set);
    TQvWriteGroup group(sets);
    a.Add("a" + std::to_string(i), i);
    b.Add("b" + std::to_string(i), i);
    if (i % 2 == 0) c.Add("c" + std::to_string(i), i);
    group.Commit();
    if (i == 3) b.Reopen();
  }
  EXPECT_EQ(Stored("a").size(), 6U);
  EXPECT_EQ(Stored("b").size(), 6U);
  EXPECT_EQ(Stored("c").size(), 3U);
}

TEST_P(Groups, LetATableBeReopenedInside) {
  Table a = Open("a");
  Table b = Open("b");
  {
    TQvWriteGroup group({&a.set, &b.set});
    a.Add("x", 1);
    a.Reopen();
    EXPECT_THAT(a.Names(), ElementsAre("x"));
    a.Add("y", 1);
    b.Add("z", 1);
    b.set.Close();
    group.Commit();
  }
  EXPECT_THAT(Stored("a"), ElementsAre("x", "y"));
  b.set.Open();
  EXPECT_THAT(b.Names(), ElementsAre("z"));
  {
    TQvWriteGroup group({&a.set, &b.set});
    b.Add("undone", 1);
    b.set.Close();
  }
  b.set.Open();
  EXPECT_THAT(b.Names(), ElementsAre("z"));
}

TEST_P(Groups, SurviveTheEndOfOneOfTheirDataSets) {
  auto a = std::make_unique<Table>(Name("a"), Type());
  Table b = Open("b");
  {
    TQvWriteGroup group({&a->set, &b.set});
    a->Add("x", 1);
    b.Add("y", 1);
    a.reset();
    group.Commit();
  }
  EXPECT_THAT(Stored("a"), ElementsAre("x"));
  EXPECT_THAT(Stored("b"), ElementsAre("y"));
}

TEST_P(Groups, KeepARefusedChangePendingAndTheOthersDone) {
  Table a = Open("a");
  TQvWriteGroup group({&a.set});
  a.Add("x", 1);
  a.Add("y", 1);
  a.set.Edit();
  a.set.Fields(kKey).SetInteger(1);
  EXPECT_THROW(a.set.Post(), DataSetError);
  EXPECT_EQ(a.set.State(), DataSetState::kEdit);
  a.set.Fields(kKey).SetInteger(8);
  a.set.Post();
  group.Commit();
  EXPECT_EQ(Open("a").Key("y"), 8);
}

TEST_P(Groups, LeaveNothingOfThemselvesWhenTheirProcessDies) {
  const auto steps = [this](bool commit) {
    // Left to the system as they are, like after a kill.
    auto* a = new Table(Name("a"), Type());
    auto* b = new Table(Name("b"), Type());
    auto* group = new TQvWriteGroup({&a->set, &b->set});
    // More than the page cache holds, so that part of it has reached the files.
    const std::string note(9000, 'n');
    for (int i = 0; i < 400; ++i) {
      a->Add(note, 1);
      b->Add(note, 1);
    }
    if (commit) group->Commit();
  };
  Table before = Open("a");
  before.Add("old", 1);
  before.set.Close();
  RunAndDie([&steps] { steps(false); });
  EXPECT_THAT(Stored("a"), ElementsAre("old"));
  EXPECT_THAT(Stored("b"), IsEmpty());
  RunAndDie([&steps] { steps(true); });
  EXPECT_EQ(Stored("a").size(), 401U);
  EXPECT_EQ(Stored("b").size(), 400U);
}

TEST(GroupsOfContainers, ShareTheirStoreWithStreams) {
  const TestFolder folder;
  MakeTable(folder.Path("refs.qvdb.a"), QvDataBufferType::kResource);
  Table a(folder.Path("refs.qvdb.a"), QvDataBufferType::kResource);
  const std::string blob = folder.Path("refs.qvdb.Heights.Alps");
  {
    TQvWriteGroup group({&a.set});
    a.Add("x", 1);
    Save<TQvResourceSession>(blob, "heights");
    EXPECT_EQ(Load<TQvResourceSession>(blob), "heights");
  }
  EXPECT_FALSE(TQvResourceSession::Exists(blob)) << "undone with the group";
  TQvWriteGroup group({&a.set});
  a.Add("x", 1);
  Save<TQvResourceSession>(blob, "heights");
  group.Commit();
  EXPECT_EQ(Load<TQvResourceSession>(blob), "heights");
}

TEST(GroupsOfContainers, UndoWhatAnotherDataSetWroteMeanwhile) {
  const TestFolder folder;
  for (const char* name : {"refs.qvdb.a", "refs.qvdb.b"}) {
    MakeTable(folder.Path(name), QvDataBufferType::kResource);
  }
  Table a(folder.Path("refs.qvdb.a"), QvDataBufferType::kResource);
  Table b(folder.Path("refs.qvdb.b"), QvDataBufferType::kResource);
  {
    TQvWriteGroup group({&a.set});
    a.Add("x", 1);
    b.Add("y", 1);
  }
  EXPECT_THAT(b.Names(), IsEmpty()) << "what it shows is what is stored";
  b.Reopen();
  EXPECT_THAT(b.Names(), IsEmpty());
}

TEST(GroupsOfFiles, DoNotDieHalfWrittenAtAnyMoment) {
  // The last steps of a commit over two files run in the child while the parent kills it.
  const TestFolder folder;
  MakeTable(folder.Path("a.dat"));
  MakeTable(folder.Path("b.dat"));
  for (int round = 0; round < 12; ++round) {
    std::array<int, 2> commits{};
    ASSERT_EQ(pipe(commits.data()), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      Table a(folder.Path("a.dat"));
      Table b(folder.Path("b.dat"));
      for (;;) {
        TQvWriteGroup group({&a.set, &b.set});
        a.Add("n", 1);
        b.Add("n", 1);
        group.Commit();
        static_cast<void>(!write(commits[1], "x", 1));
      }
    }
    close(commits[1]);
    char byte = 0;
    EXPECT_EQ(read(commits[0], &byte, 1), 1) << "the child came to no commit";
    close(commits[0]);
    usleep(static_cast<useconds_t>(round * 1300));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    Table a(folder.Path("a.dat"));
    Table b(folder.Path("b.dat"));
    ASSERT_EQ(a.set.RecordCount(), b.set.RecordCount()) << "round " << round;
  }
  EXPECT_GE(Table(folder.Path("a.dat")).set.RecordCount(), 12);
}

TEST(GroupsOfFiles, HaveALimit) {
  const TestFolder folder;
  std::vector<std::unique_ptr<Table>> tables;
  std::vector<TQvDataSet*> sets;
  for (int i = 0; i < 12; ++i) {
    const std::string name = folder.Path("t" + std::to_string(i) + ".dat");
    MakeTable(name);
    tables.push_back(std::make_unique<Table>(name));
    sets.push_back(&tables.back()->set);
  }
  EXPECT_THROW(TQvWriteGroup{sets}, std::logic_error);
  sets.pop_back();
  TQvWriteGroup group(sets);
  for (const auto& table : tables) {
    if (table != tables.back()) table->Add("x", 1);
  }
  group.Commit();
  EXPECT_EQ(Table(folder.Path("t10.dat")).set.RecordCount(), 1);
}

TEST(GroupsOfFiles, DoNotMixWithContainers) {
  const TestFolder folder;
  MakeTable(folder.Path("a.dat"));
  MakeTable(folder.Path("c.qvdb.a"), QvDataBufferType::kResource);
  MakeTable(folder.Path("d.qvdb.a"), QvDataBufferType::kResource);
  Table file(folder.Path("a.dat"));
  Table c(folder.Path("c.qvdb.a"), QvDataBufferType::kResource);
  Table d(folder.Path("d.qvdb.a"), QvDataBufferType::kResource);
  EXPECT_THROW(TQvWriteGroup({&file.set, &c.set}), std::logic_error);
  EXPECT_THROW(TQvWriteGroup({&d.set, &c.set}), std::logic_error);
  TQvWriteGroup nothing({nullptr});
  nothing.Commit();
}

TEST(GroupsOfFiles, LetGoOfAFileThatIsClosed) {
  const TestFolder folder;
  for (const char* name : {"a.dat", "b.dat", "c.dat"})
    MakeTable(folder.Path(name));
  Table a(folder.Path("a.dat"));
  Table b(folder.Path("b.dat"));
  Table c(folder.Path("c.dat"));
  // The third one stays open, and was once in a group with the others.
  const std::vector<std::vector<TQvDataSet*>> groups = {{&a.set, &b.set, &c.set}, {&a.set, &b.set}};
  for (const auto& sets : groups) {
    TQvWriteGroup group(sets);
    a.Add("x", 1);
    group.Commit();
  }
  a.set.Close();
  a.buffer.Close();
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code error;
    EXPECT_NE(std::filesystem::read_symlink(entry.path(), error), folder.Path("a.dat"));
  }
  TQvWriteGroup group({&b.set});
  b.Add("y", 1);
  group.Commit();
}

}  // namespace
