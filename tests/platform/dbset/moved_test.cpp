#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/dbset/read_group.h"
#include "platform/dbset/write_group.h"
#include "platform/storage/sqlite.h"
#include "tests/platform/dbset/table_fixture.h"

namespace {

using namespace QvPlatform;
using namespace platform_tests;
using testing::ElementsAre;
using testing::HasSubstr;
using Strings = std::vector<std::string>;

/// Two data sets over one table, each as another program has it.
class TwoPrograms : public TestFolder, public testing::TestWithParam<bool> {
 protected:
  static std::string Made(const std::string& name, QvDataBufferType type) {
    MakeTable(name, type);
    return name;
  }

  const QvDataBufferType type_ =
      GetParam() ? QvDataBufferType::kResource : QvDataBufferType::dtFileStream;
  const std::string name_ = Made(Path(GetParam() ? "c.qvdb.unit" : "unit.dat"), type_);
  Table mine_{name_, type_};
  Table theirs_{name_, type_};
};

INSTANTIATE_TEST_SUITE_P(Forms, TwoPrograms, testing::Bool());

TEST_P(TwoPrograms, SeeEachOthersChangesInsideAGroup) {
  mine_.Add("b", 1);
  EXPECT_EQ(theirs_.Key("b"), 0);
  {
    TQvWriteGroup group({&theirs_.set});
    EXPECT_GT(theirs_.Key("b"), 0) << "looked up behind the lock";
    theirs_.Add("a", 2);
    group.Commit();
  }
  EXPECT_TRUE(mine_.set.HasMoved());
  EXPECT_TRUE(mine_.set.Refresh());
  EXPECT_THAT(mine_.Names(), ElementsAre("a", "b"));
  EXPECT_FALSE(mine_.set.HasMoved());
  EXPECT_FALSE(mine_.set.Refresh());
}

TEST_P(TwoPrograms, KeepTheirPlaceAndTheirChangeWhenTheyRefresh) {
  const int a = mine_.Add("a", 1);
  const int m = mine_.Add("m", 2);
  mine_.Add("z", 3);
  theirs_.set.Refresh();
  theirs_.GoTo(m);
  theirs_.set.Edit();
  theirs_.set.FieldByName("NOTE").SetString("typed");
  mine_.GoTo(a);
  mine_.set.Delete();
  mine_.Add("b", 4);
  mine_.Rename(mine_.Key("z"), "c");
  ASSERT_TRUE(theirs_.set.Refresh());
  EXPECT_EQ(theirs_.set.State(), DataSetState::kEdit);
  EXPECT_EQ(theirs_.set.FieldByName("NOTE").AsString(), "typed");
  theirs_.set.Post();
  EXPECT_EQ(theirs_.set.FieldByName("AUTOKEY").AsInteger(), m);
  EXPECT_THAT(theirs_.Names(), ElementsAre("b", "c", "m"));
}

TEST_P(TwoPrograms, ChangeNoRecordThatTheOtherHasRemoved) {
  const int a = mine_.Add("a", 1);
  mine_.Add("b", 2);
  theirs_.set.Refresh();
  theirs_.GoTo(a);
  theirs_.set.Edit();
  mine_.GoTo(a);
  mine_.set.Delete();
  theirs_.set.Refresh();
  EXPECT_THROW(theirs_.set.Post(), StaleRecordError);
  EXPECT_THAT(theirs_.Names(), ElementsAre("b"));
}

TEST_P(TwoPrograms, KeepNotesAndKeysBesideTheRecords) {
  const int key = mine_.Add("a", 1);
  mine_.set.SetNote(key, "source", "first");
  mine_.set.SetNote(key, "source", "second");
  EXPECT_EQ(theirs_.set.Note(key, "source"), "second");
  EXPECT_EQ(theirs_.set.Note(key, "other"), std::nullopt);
  mine_.set.RaiseLastKey(40);
  mine_.GoTo(key);
  mine_.set.Delete();
  EXPECT_EQ(theirs_.set.Note(key, "source"), std::nullopt) << "goes with its record";
  theirs_.set.Refresh();
  EXPECT_EQ(theirs_.Add("b", 2), 41);
  EXPECT_EQ(mine_.set.LastKey(), 41);
}

TEST_P(TwoPrograms, ReadOneMomentWhileNobodyCommits) {
  mine_.Add("a", 1);
  const TQvReadGroup moment({&theirs_.set});
  EXPECT_THAT(theirs_.Names(), ElementsAre("a"));
}

/// Runs SQL on a file past the table engine.
void Tamper(const std::string& path, const std::string& sql) {
  detail::Connection::OpenFile(path).Execute(sql);
}

TEST(Sums, TellWhatIsNotWhatWasWritten) {
  const TestFolder folder;
  const std::string path = folder.Path("unit.dat");
  MakeTable(path);
  {
    Table table(path);
    for (const char* name : {"a", "b", "c"})
      table.Add(name, 7);
  }
  const std::string whole = ReadFile(path);
  const struct {
    const char* sql;
    const char* reason;
  } rows[] = {{"UPDATE records SET CODE = 8 WHERE AUTOKEY = 2", "record 2 is damaged"},
              {"UPDATE records SET NOTE = '' WHERE AUTOKEY = 2", "record 2 is damaged"},
              {"UPDATE records SET ROW_VERSION = 9 WHERE AUTOKEY = 3", "record 3 is damaged"},
              {"UPDATE records SET AUTOKEY = 9 WHERE AUTOKEY = 3", "record 9 is damaged"},
              {"UPDATE records SET ROW_SUM = NULL WHERE AUTOKEY = 1", "record 1 is damaged"},
              {"DELETE FROM records WHERE AUTOKEY = 2", "records are missing"},
              {"DELETE FROM qv_state", "state of its table is gone"},
              {"DROP TABLE qv_state", "qv_state"},
              {"ALTER TABLE qv_notes ADD COLUMN more TEXT", "not made as it has to be"}};
  for (const auto& row : rows) {
    WriteFile(path, whole);
    Tamper(path, row.sql);
    try {
      const Table table(path);
      ADD_FAILURE() << row.sql;
    } catch (const StorageError& error) {
      EXPECT_THAT(error.what(), HasSubstr(row.reason)) << row.sql;
    }
  }
}

TEST(Sums, AreVerifiedWhenATableIsRefreshed) {
  FileTable table;
  table.Add("a", 1);
  table.Add("b", 2);
  Tamper(table.buffer.StreamName,
         "DELETE FROM records WHERE NAME = 'a'; UPDATE qv_state SET changes = changes + 1");
  EXPECT_THROW(table.set.Refresh(), StorageError);
  EXPECT_THAT(table.Names(), ElementsAre("a", "b"));
}

/// Puts a table file back into the layout that had no checksums.
void MakeOlder(const std::string& path) {
  Tamper(path,
         "ALTER TABLE records DROP COLUMN ROW_SUM; DROP TABLE qv_state; DROP TABLE qv_notes; "
         "PRAGMA user_version = 1");
}

TEST(Sums, ComeToAnOlderTableWithItsFirstChange) {
  const TestFolder folder;
  const std::string path = folder.Path("unit.dat");
  MakeTable(path);
  int key = 0;
  {
    Table table(path);
    key = table.Add("a", 7);
    table.Add("b", 8);
  }
  MakeOlder(path);
  const std::string older = ReadFile(path);
  {
    Table table(path);
    EXPECT_THAT(table.Names(), ElementsAre("a", "b"));
    EXPECT_EQ(table.set.Note(key, "source"), std::nullopt);
    {
      const TQvWriteGroup undone({&table.set});
      table.Rename(key, "x");
    }
    EXPECT_THAT(table.Names(), ElementsAre("a", "b"));
  }
  EXPECT_EQ(ReadFile(path), older) << "reading and undoing leave the file as it was";
  Table table(path);
  table.Rename(key, "c");
  table.GoTo(table.Key("b"));
  table.set.Delete();
  EXPECT_EQ(detail::Connection::OpenFile(path).QueryInteger("PRAGMA user_version"), 2);
  EXPECT_THAT(Table(path).Names(), ElementsAre("c"));
}

TEST(Groups, TellWhichFilesWereChangedTogether) {
  const TestFolder folder;
  const Strings paths = {folder.Path("a.dat"), folder.Path("b.dat"), folder.Path("c.dat")};
  for (const std::string& path : paths)
    MakeTable(path);
  Table a(paths[0]);
  Table b(paths[1]);
  Table c(paths[2]);
  for (int number = 1; number <= 2; ++number) {
    TQvWriteGroup group({&a.set, &b.set, &c.set});
    a.Add("x", number);
    c.Add("y", number);
    group.Commit();
    EXPECT_EQ(c.set.LastGroup().number, number);
  }
  EXPECT_THAT(a.set.LastGroup().files, ElementsAre("a.dat", "c.dat"));
  EXPECT_EQ(b.set.LastGroup().number, 0);
  c.Add("alone", 3);
  EXPECT_EQ(c.set.LastGroup().number, 2);
}

}  // namespace
