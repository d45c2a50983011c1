#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <csignal>
#include <functional>
#include <memory>
#include <utility>

#include "platform/dbset/write_group.h"
#include "platform/storage/resource_session.h"
#include "tests/platform/dbset/table_fixture.h"

namespace {

using namespace QvPlatform;
using namespace platform_tests;
using testing::ElementsAre;
using testing::IsEmpty;

/// Takes the steps in a group of their own, which is committed or left.
void InGroup(const std::vector<TQvDataSet*>& sets, bool commit,
             const std::function<void()>& steps) {
  TQvWriteGroup group(sets);
  steps();
  if (commit) group.Commit();
}
constexpr bool kCommitted = true;
constexpr bool kLeft = false;

/// The tables of one folder or container.
class Groups : public testing::TestWithParam<QvDataBufferType> {
 protected:
  Groups() {
    for (const char* name : {"a", "b", "c"})
      MakeTable(Name(name), GetParam());
  }
  std::string Name(const std::string& table) const {
    const bool contained = GetParam() == QvDataBufferType::kResource;
    return folder_.Path(contained ? "refs.qvdb." + table : table + ".dat");
  }
  Table Open(const std::string& table) const { return Table(Name(table), GetParam()); }
  std::vector<std::string> Stored(const std::string& table) const { return Open(table).Names(); }

 private:
  const TestFolder folder_;
};

/// Two of them are open.
class OpenGroups : public Groups {
 protected:
  Table a_ = Open("a");
  Table b_ = Open("b");
};

std::string FormName(const testing::TestParamInfo<QvDataBufferType>& row) {
  return row.param == QvDataBufferType::kResource ? "Container" : "Files";
}
const auto kForms = testing::Values(QvDataBufferType::dtFileStream, QvDataBufferType::kResource);
INSTANTIATE_TEST_SUITE_P(Forms, Groups, kForms, FormName);
INSTANTIATE_TEST_SUITE_P(Forms, OpenGroups, kForms, FormName);

TEST_P(OpenGroups, StoreAllOfTheirChanges) {
  a_.Add("old", 1);
  InGroup({&a_.set, &b_.set, &a_.set}, kCommitted, [this] {
    EXPECT_EQ(a_.Add("x", 1), 2) << "keys are final inside of the group";
    EXPECT_EQ(b_.Add("y", 1), 1);
    a_.GoTo(1);
    a_.set.Delete();
    Table c = Open("c");
    EXPECT_THROW(TQvWriteGroup({&a_.set, &c.set}), std::logic_error) << "takes no further ones in";
  });
  EXPECT_THAT(Stored("a"), ElementsAre("x"));
  EXPECT_THAT(Stored("b"), ElementsAre("y"));
  a_.Reopen();
  EXPECT_THAT(a_.Names(), ElementsAre("x"));
}

TEST_P(OpenGroups, UndoAllOfTheirChangesWhenTheyAreLeft) {
  a_.Add("old", 1);
  b_.Add("other", 1);
  const int kept = a_.Add("kept", 1);
  InGroup({&a_.set, &b_.set}, kLeft, [this, kept] {
    a_.Rename(1, "changed");
    a_.Add("x", 1);
    b_.set.Delete();
    a_.GoTo(kept);
    EXPECT_EQ(a_.set.RecordCount(), 3);
  });
  EXPECT_EQ(a_.set.Fields(kKey).AsInteger(), kept) << "the cursor stays on its record";
  EXPECT_THAT(a_.Names(), ElementsAre("kept", "old"));
  EXPECT_THAT(b_.Names(), ElementsAre("other"));
  EXPECT_THAT(Stored("a"), ElementsAre("kept", "old"));
  EXPECT_THAT(Stored("b"), ElementsAre("other"));
  EXPECT_EQ(a_.Add("next", 1), 3) << "a key that was undone was never given";
  a_.Reopen();
  EXPECT_EQ(a_.set.RecordCount(), 3);
}

TEST_P(OpenGroups, InsideOthersEndWithTheOuterOne) {
  InGroup({&a_.set, &b_.set}, kLeft, [this] {
    InGroup({&a_.set}, kCommitted, [this] { a_.Add("inner", 1); });
    b_.Add("outer", 1);
  });
  EXPECT_THAT(Stored("a"), IsEmpty());
  EXPECT_THAT(a_.Names(), IsEmpty());
  InGroup({&a_.set, &b_.set}, kCommitted, [this] {
    a_.Add("first", 1);
    InGroup({&a_.set, &b_.set}, kLeft, [this] {
      a_.Add("undone", 1);
      b_.Add("undone", 1);
    });
    EXPECT_THAT(a_.Names(), ElementsAre("first")) << "the inner group alone is undone";
    EXPECT_THAT(b_.Names(), IsEmpty());
    InGroup({&b_.set}, kCommitted, [this] { b_.Add("second", 1); });
  });
  EXPECT_THAT(Stored("a"), ElementsAre("first"));
  EXPECT_THAT(Stored("b"), ElementsAre("second"));
}

TEST_P(OpenGroups, TellWhatLiesBesideTheTablesHowTheyEnd) {
  std::vector<std::string> told;
  const auto follow = [&told](TQvWriteGroup& group, const std::string& name) {
    group.AtEnd([&told, name] { told.push_back(name + " done"); },
                [&told, name] {
                  told.push_back(name + " undone");
                  throw std::runtime_error("is dropped");
                });
  };
  for (const bool commit : {true, false}) {
    {
      TQvWriteGroup outer({&a_.set});
      follow(outer, "first");
      outer.AtEnd({}, {});
      {
        TQvWriteGroup kept({&a_.set});
        follow(kept, "kept");
        kept.Commit();
      }
      {
        TQvWriteGroup left({&a_.set});
        follow(left, "left");
        TQvWriteGroup innermost({&a_.set});
        follow(innermost, "innermost");
        innermost.Commit();
      }
      EXPECT_THAT(std::exchange(told, {}), ElementsAre("innermost undone", "left undone"));
      a_.Add("x", 1);
      if (commit) outer.Commit();
    }
    EXPECT_THAT(std::exchange(told, {}), commit ? ElementsAre("first done", "kept done")
                                                : ElementsAre("kept undone", "first undone"));
  }
  EXPECT_THAT(Stored("a"), ElementsAre("x"));
}

TEST_P(OpenGroups, LetATableBeReopenedInside) {
  InGroup({&a_.set, &b_.set}, kCommitted, [this] {
    a_.Add("x", 1);
    a_.Reopen();
    EXPECT_THAT(a_.Names(), ElementsAre("x"));
    a_.Add("y", 1);
    b_.Add("z", 1);
    b_.set.Close();
  });
  EXPECT_THAT(Stored("a"), ElementsAre("x", "y"));
  b_.set.Open();
  EXPECT_THAT(b_.Names(), ElementsAre("z"));
  InGroup({&a_.set, &b_.set}, kLeft, [this] {
    b_.Add("undone", 1);
    b_.set.Close();
  });
  b_.set.Open();
  EXPECT_THAT(b_.Names(), ElementsAre("z"));
}

TEST_P(OpenGroups, SurviveTheEndOfOneOfTheirDataSets) {
  auto c = std::make_unique<Table>(Name("c"), GetParam());
  InGroup({&c->set, &b_.set}, kCommitted, [this, &c] {
    c->Add("x", 1);
    b_.Add("y", 1);
    c.reset();
  });
  EXPECT_THAT(Stored("c"), ElementsAre("x"));
  EXPECT_THAT(Stored("b"), ElementsAre("y"));
}

TEST_P(OpenGroups, TakeNothingMoreOnceTheStoreHasRolledThemBack) {
  std::signal(SIGXFSZ, SIG_IGN);
  const auto inner = [](Table& table) {
    InGroup({&table.set}, kCommitted, [&table] { table.Add("x", 1); });
  };
  const auto outer = [&] {
    rlimit usual{};
    getrlimit(RLIMIT_FSIZE, &usual);
    const rlimit nothing{0, usual.rlim_max};
    setrlimit(RLIMIT_FSIZE, &nothing);
    EXPECT_THROW(inner(a_), std::runtime_error) << "no file may grow";
    setrlimit(RLIMIT_FSIZE, &usual);
    EXPECT_THROW(inner(b_), StorageError);
  };
  EXPECT_THROW(InGroup({&a_.set, &b_.set}, kCommitted, outer), StorageError);
  EXPECT_THAT(Stored("a"), IsEmpty());
  EXPECT_THAT(Stored("b"), IsEmpty());
}

TEST_P(OpenGroups, KeepARefusedChangePendingAndTheOthersDone) {
  InGroup({&a_.set}, kCommitted, [this] {
    a_.Add("x", 1);
    a_.Add("y", 1);
    EXPECT_THROW(a_.Change(kKey, 1), DataSetError);
    EXPECT_EQ(a_.set.State(), DataSetState::kEdit);
    a_.Change(kKey, 8);
  });
  EXPECT_EQ(Open("a").Key("y"), 8);
}

TEST_P(Groups, LeaveNothingOfThemselvesWhenTheirProcessDies) {
  Open("a").Add("old", 1);
  for (const bool commit : {false, true}) {
    const int exit = ExitOfChild([this, commit] {
      // Left to the system as they are, like after a kill.
      auto* a = new Table(Name("a"), GetParam());
      auto* b = new Table(Name("b"), GetParam());
      auto* group = new TQvWriteGroup({&a->set, &b->set});
      // More than the page cache holds, so that part of it has reached the files.
      const std::string note(9000, 'n');
      for (int i = 0; i < 400; ++i) {
        a->Add(note, 1);
        b->Add(note, 1);
      }
      if (commit) group->Commit();
      return 0;
    });
    ASSERT_EQ(exit, 0);
    EXPECT_EQ(Stored("a").size(), commit ? 401U : 1U);
    EXPECT_EQ(Stored("b").size(), commit ? 400U : 0U);
  }
}

TEST(GroupsOfContainers, TakeStreamsAndOtherDataSetsWithThem) {
  const TestFolder folder;
  for (const char* name : {"refs.qvdb.a", "refs.qvdb.b"})
    MakeTable(folder.Path(name), QvDataBufferType::kResource);
  Table a(folder.Path("refs.qvdb.a"), QvDataBufferType::kResource);
  Table b(folder.Path("refs.qvdb.b"), QvDataBufferType::kResource);
  const std::string blob = folder.Path("refs.qvdb.Heights.Alps");
  for (const bool commit : {false, true}) {
    InGroup({&a.set}, commit, [&] {
      a.Add("x", 1);
      b.Add("y", 1);
      Save<TQvResourceSession>(blob, "heights");
      EXPECT_EQ(Load<TQvResourceSession>(blob), "heights");
    });
    EXPECT_EQ(TQvResourceSession::Exists(blob), commit);
    EXPECT_EQ(b.set.RecordCount(), commit ? 1 : 0) << "what it shows is what is stored";
    b.Reopen();
    EXPECT_EQ(b.set.RecordCount(), commit ? 1 : 0);
  }
}

TEST(GroupsOfFiles, DoNotDieHalfWrittenAtAnyMoment) {
  // The last steps of a commit over two files run in the child while the parent kills it.
  const TestFolder folder;
  for (const char* name : {"a.dat", "b.dat"})
    MakeTable(folder.Path(name));
  for (int round = 0; round < 12; ++round) {
    std::array<int, 2> commits{};
    ASSERT_EQ(pipe(commits.data()), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      Table a(folder.Path("a.dat"));
      Table b(folder.Path("b.dat"));
      for (;;) {
        InGroup({&a.set, &b.set}, kCommitted, [&a, &b] {
          a.Add("n", 1);
          b.Add("n", 1);
        });
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
  std::vector<std::unique_ptr<FileTable>> tables;
  std::vector<TQvDataSet*> sets;
  for (int i = 0; i < 12; ++i) {
    tables.push_back(std::make_unique<FileTable>());
    sets.push_back(&tables.back()->set);
  }
  EXPECT_THROW(TQvWriteGroup{sets}, std::logic_error);
  sets.pop_back();
  TQvWriteGroup group(sets);
  for (std::size_t i = 0; i < sets.size(); ++i)
    tables[i]->Add("x", 1);
  group.Commit();
  EXPECT_EQ(Table(tables[10]->buffer.StreamName).set.RecordCount(), 1);
}

TEST(GroupsOfFiles, DoNotMixWithContainers) {
  FileTable file;
  for (const char* name : {"c.qvdb.a", "d.qvdb.a"})
    MakeTable(file.Path(name), QvDataBufferType::kResource);
  Table c(file.Path("c.qvdb.a"), QvDataBufferType::kResource);
  Table d(file.Path("d.qvdb.a"), QvDataBufferType::kResource);
  EXPECT_THROW(TQvWriteGroup({&file.set, &c.set}), std::logic_error);
  EXPECT_THROW(TQvWriteGroup({&d.set, &c.set}), std::logic_error);
  TQvWriteGroup nothing({nullptr});
  nothing.Commit();
}

TEST(GroupsOfFiles, LetGoOfAFileThatIsClosed) {
  FileTable a;
  FileTable b;
  FileTable c;
  // The third one stays open, and was once in a group with the others.
  const std::vector<std::vector<TQvDataSet*>> groups = {{&a.set, &b.set, &c.set}, {&a.set, &b.set}};
  for (const auto& sets : groups)
    InGroup(sets, kCommitted, [&a] { a.Add("x", 1); });
  a.set.Close();
  a.buffer.Close();
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code error;
    EXPECT_NE(std::filesystem::read_symlink(entry.path(), error), a.buffer.StreamName);
  }
  for (const bool both : {false, true}) {
    if (both) a.set.Open();
    InGroup({&a.set, &b.set}, kCommitted, [&] {
      b.Add("y", 1);
      if (both) a.Add("z", 1);
    });
  }
  EXPECT_EQ(Table(a.buffer.StreamName).set.RecordCount(), 3);
  EXPECT_EQ(Table(b.buffer.StreamName).set.RecordCount(), 2);
}

}  // namespace
