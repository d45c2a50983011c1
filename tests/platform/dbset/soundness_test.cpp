#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <random>

#include "platform/dbset/file_group.h"
#include "platform/dbset/file_store.h"
#include "platform/dbset/open_table_store.h"
#include "platform/dbset/write_group.h"
#include "platform/storage/container.h"
#include "platform/storage/file_stream.h"
#include "platform/storage/resource_session.h"
#include "tests/platform/dbset/table_fixture.h"

namespace {

using namespace QvPlatform;
using namespace platform_tests;
using testing::AllOf;
using testing::HasSubstr;

/// Runs SQL on a file past the table engine, as any other program would.
void Tamper(const std::string& path, const std::string& sql) {
  detail::Connection::OpenLogged(path).Execute(sql);
}

/// The reason why a table does not open; empty if it does.
std::string Refusal(const std::string& path,
                    QvDataBufferType type = QvDataBufferType::dtFileStream) {
  try {
    const Table table(path, type);
    return {};
  } catch (const StorageError& error) {
    return error.what();
  }
}

class Opening : public testing::Test {
 protected:
  Opening() {
    MakeTable(path_);
    Table table(path_);
    TQvWriteGroup group({&table.set});
    for (int i = 0; i < 300; ++i)
      table.Add("record " + std::to_string(i), i);
    group.Commit();
  }

  TestFolder folder_;
  const std::string path_ = folder_.Path("unit.dat");
};

TEST_F(Opening, RefusesWhatIsNoTable) {
  WriteFile(folder_.Path("text.dat"), "name;factor\nmetre;1\n" + std::string(5000, ' '));
  WriteFile(folder_.Path("short.dat"), "metre");
  WriteFile(folder_.Path("empty.dat"), "");
  WriteFile(folder_.Path("other.dat"), "");
  Tamper(folder_.Path("other.dat"), "CREATE TABLE records (a)");
  Save<TQvResourceSession>(folder_.Path("c.qvdb.a"), "x");
  constexpr auto kFile = QvDataBufferType::dtFileStream;
  constexpr auto kResource = QvDataBufferType::kResource;
  const struct {
    const char* name;
    QvDataBufferType type;
    const char* reason;
  } rows[] = {{"text.dat", kFile, "/text.dat\" is no table file"},
              {"short.dat", kFile, "is no table file"},
              {"empty.dat", kFile, "is empty"},
              {"none.dat", kFile, "no such file"},
              {"", kFile, "folder"},
              {"other.dat", kFile, "another program's database"},
              {"c.qvdb", kFile, "another program's database"},
              {"c.qvdb.a", kResource, "no record table"},
              {"c.qvdb.b", kResource, "no such resource"},
              {"d.qvdb.b", kResource, "no such container"}};
  for (const auto& row : rows)
    EXPECT_THAT(Refusal(folder_.Path(row.name), row.type), HasSubstr(row.reason)) << row.name;
  EXPECT_EQ(ReadFile(folder_.Path("empty.dat")), "");
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("none.dat")));
}

TEST_F(Opening, RefusesATableThatIsCutShort) {
  const std::string whole = ReadFile(path_);
  ASSERT_GT(whole.size(), 16384U);
  for (const std::size_t size :
       {whole.size() - 1, whole.size() - 4096, whole.size() / 2, std::size_t{4096},
        std::size_t{4095}, std::size_t{100}, std::size_t{99}, std::size_t{17}, std::size_t{1}}) {
    WriteFile(folder_.Path("cut.dat"), whole.substr(0, size));
    EXPECT_NE(Refusal(folder_.Path("cut.dat")), "") << size;
  }
}

TEST_F(Opening, NeverCrashesOnDamageAndNeverReadsOtherRecords) {
  const std::string whole = ReadFile(path_);
  const std::vector<std::string> names = Table(path_).Names();
  std::mt19937 random(99);
  int refused = 0;
  for (int i = 0; i < 400; ++i) {
    std::string damaged = whole;
    for (int bytes = 0; bytes < 8; ++bytes) {
      damaged[random() % damaged.size()] = static_cast<char>(random());
    }
    WriteFile(folder_.Path("bad.dat"), damaged);
    std::filesystem::remove(folder_.Path("bad.dat-journal"));
    try {
      ASSERT_EQ(Table(folder_.Path("bad.dat")).Names(), names) << i;
    } catch (const StorageError&) {
      ++refused;
    }
  }
  EXPECT_GT(refused, 0);
}

TEST_F(Opening, RefusesATamperedTableWithTheReason) {
  const struct {
    const char* sql;
    const char* reason;
  } rows[] = {
      {"DROP TABLE qv_fields", "no description"},
      {"DELETE FROM qv_fields", "no description"},
      {"DELETE FROM qv_fields WHERE position = 2", "lacks the desc"},
      {"UPDATE qv_fields SET type = 9 WHERE position = 3", "wrongly"},
      {"UPDATE qv_fields SET type = 3 WHERE position = 3", "does not fit"},
      {"UPDATE qv_fields SET name = 'A\"; --' WHERE position = 3", "wrongly"},
      {"UPDATE qv_fields SET required = 2 WHERE position = 1", "reserved"},
      {"UPDATE qv_fields SET name = 'name' WHERE position = 3", "twice"},
      {"ALTER TABLE records RENAME COLUMN CODE TO KODE", "does not fit"},
      {"ALTER TABLE records ADD COLUMN EXTRA TEXT", "does not fit"},
      {"DROP TABLE records", "does not fit"},
      {"CREATE TRIGGER t AFTER INSERT ON records BEGIN DELETE FROM records; END", "does not fit"},
      {"CREATE INDEX i ON records (abs(CODE))", "does not fit"},
      {"DROP TABLE records; CREATE VIEW records AS SELECT 1", "does not fit"},
      {"PRAGMA user_version = 3", "another version"},
      {"PRAGMA application_id = 7", "another program"},
      {"PRAGMA journal_mode = WAL", "log beside it"},
      {"UPDATE records SET CODE = 3000000000 WHERE AUTOKEY = 7",
       "wrong kind in its field \"CODE\""}};
  const std::string whole = ReadFile(path_);
  for (const auto& row : rows) {
    WriteFile(path_, whole);
    Tamper(path_, row.sql);
    EXPECT_THAT(Refusal(path_), AllOf(HasSubstr(row.reason), HasSubstr("unit.dat"))) << row.sql;
  }
}

TEST_F(Opening, LeavesNoTrace) {
  const std::string before = ReadFile(path_);
  {
    Table table(path_);
    table.set.Last();
    EXPECT_EQ(folder_.FileCount(), 1U);
  }
  EXPECT_EQ(folder_.FileCount(), 1U);
  EXPECT_TRUE(ReadFile(path_) == before);
}

TEST_F(Opening, WorksWhereNothingCanBeWritten) {
  Save<TQvResourceSession>(folder_.Path("c.qvdb.unit"), ReadFile(path_));
  chmod(folder_.Path().c_str(), 0555);
  chmod(path_.c_str(), 0444);
  chmod(folder_.Path("c.qvdb").c_str(), 0444);
  // Rights do not bind the superuser, so the child is somebody else.
  const int exit = ExitOfChild([this] {
    constexpr uid_t kNobody = 65534;
    if (geteuid() == 0 && setuid(kNobody) != 0) return 2;
    Table file(path_);
    Table resource(folder_.Path("c.qvdb.unit"), QvDataBufferType::kResource);
    int refused = 0;
    for (Table* table : {&file, &resource}) {
      if (table->set.RecordCount() != 300) return 3;
      try {
        table->Add("x", 1);
      } catch (const StorageError&) {
        ++refused;
      }
    }
    TQvResourceSession stream;
    return refused == 2 && !stream.Open(folder_.Path("c.qvdb.x"), QvOpenMode::kCreate) ? 0 : 1;
  });
  chmod(folder_.Path().c_str(), 0755);
  EXPECT_EQ(exit, 0);
}

TEST_F(Opening, FindsWhatAnotherProcessStored) {
  Table table(path_);
  table.set.Close();
  EXPECT_EQ(ExitOfChild([this] {
              Table(path_).Rename(1, "a new name");
              return 0;
            }),
            0);
  table.set.Open();
  EXPECT_EQ(table.Key("a new name"), 1);
}

TEST_F(Opening, UndoesWhatAKilledWriterLeftButNotInAFileThatReplacedIts) {
  for (const bool replaced : {false, true}) {
    ASSERT_EQ(ExitOfChild([this] {
                auto* table = new Table(path_);
                static_cast<void>(new TQvWriteGroup({&table->set}));
                for (int i = 0; i < 2000; ++i)
                  table->Add(std::string(5000, 'x'), 1);
                return 0;
              }),
              0);
    ASSERT_TRUE(std::filesystem::exists(path_ + "-journal")) << "the child wrote nothing yet";
    if (replaced) MakeTable(path_);
    EXPECT_EQ(Table(path_).set.RecordCount(), replaced ? 0 : 300);
    EXPECT_FALSE(std::filesystem::exists(path_ + "-journal"));
  }
}

TEST_F(Opening, FindsAFileThatWasPutInPlaceOfTheOld) {
  Table table(path_);
  MakeTable(path_);
  EXPECT_THROW(table.Add("x", 1), StorageError) << "it would have gone into the removed file";
  EXPECT_EQ(table.set.State(), DataSetState::kInsert);
  table.set.Cancel();
  table.Reopen();
  EXPECT_EQ(table.set.RecordCount(), 0);
  EXPECT_EQ(table.Add("x", 1), 1);
  table.set.Close();
  MakeTable(path_);
  table.set.Open();
  EXPECT_EQ(table.set.RecordCount(), 0);
}

TEST_F(Opening, KeepsItsLocksWhenTheFileIsReadBesides) {
  // Closing any descriptor of a file drops the locks of the process on it.
  Table table(path_);
  TQvWriteGroup group({&table.set});
  table.Add("x", 1);
  EXPECT_FALSE(Load<TQvFileStream>(path_).empty());
  // A lock is seen from another process only. Of SQLite's lock bytes this is the writer's.
  const int exit = ExitOfChild([this] {
    constexpr off_t kReservedByte = 0x40000001;
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = kReservedByte;
    lock.l_len = 1;
    const int descriptor = open(path_.c_str(), O_RDWR);
    return fcntl(descriptor, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK ? 0 : 1;
  });
  EXPECT_EQ(exit, 0) << "another writer came in";
  group.Commit();
}

TEST_F(Opening, ReportsAStoreThatIsLocked) {
  detail::Connection other = detail::Connection::OpenFile(path_);
  other.Execute("BEGIN IMMEDIATE");
  Table table(path_);
  EXPECT_EQ(table.set.RecordCount(), 300) << "readers do not wait for a writer";
  EXPECT_THROW(table.Add("x", 1), StorageError);
  EXPECT_EQ(table.set.State(), DataSetState::kInsert) << "the change is still pending";
  other.Execute("ROLLBACK");
  EXPECT_NO_THROW(table.set.Post());
}

/// How safely the connection writes to the file of a schema, by SQLite's own word.
std::string SafetyOf(detail::Connection& connection, const std::string& schema = "main") {
  return connection.QueryText("PRAGMA " + schema + ".journal_mode") + ' ' +
         connection.QueryText("PRAGMA " + schema + ".synchronous");
}

TEST(WhatIsPosted, IsOnTheMediumBeforePostReturns) {
  const TestFolder folder;
  const std::vector<std::string> paths = {folder.Path("a.dat"), folder.Path("b.dat")};
  for (const std::string& path : paths) {
    MakeTable(path);
    const auto store = detail::OpenTableStore(QvDataBufferType::dtFileStream, path);
    EXPECT_EQ(SafetyOf(dynamic_cast<detail::FileStore&>(*store).Own().Db()), "delete 3") << "EXTRA";
  }
  detail::FileGroup group(paths);
  EXPECT_EQ(SafetyOf(group.Transactions().Db()), "delete 3");
  EXPECT_EQ(SafetyOf(group.Transactions().Db(), "file1"), "delete 3");
  MakeTable(folder.Path("c.qvdb.a"), QvDataBufferType::kResource);
  const Table inside(folder.Path("c.qvdb.a"), QvDataBufferType::kResource);
  const auto container = detail::Container::Open(folder.Path("c.qvdb"));
  EXPECT_EQ(SafetyOf(container->Transactions().Db()), "delete 3");
}

}  // namespace
