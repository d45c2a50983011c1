#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>

#include "platform/dbset/write_group.h"
#include "platform/storage/file_stream.h"
#include "platform/storage/resource_session.h"
#include "tests/platform/dbset/table_fixture.h"
#include "tests/platform/storage/test_folder.h"

namespace {

using namespace QvPlatform;
using namespace platform_tests;
using testing::ElementsAre;
using testing::HasSubstr;

/// Runs SQL on a file past the table engine.
void Tamper(const std::string& path, const std::string& sql) {
  sqlite3* handle = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &handle), SQLITE_OK);
  char* message = nullptr;
  const int code = sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, &message);
  EXPECT_EQ(code, SQLITE_OK) << (message != nullptr ? message : "");
  sqlite3_free(message);
  sqlite3_close(handle);
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
  EXPECT_THAT(Refusal(folder_.Path("text.dat")), HasSubstr("\"text.dat\" is no table file"));
  WriteFile(folder_.Path("short.dat"), "metre");
  EXPECT_THAT(Refusal(folder_.Path("short.dat")), HasSubstr("is no table file"));
  WriteFile(folder_.Path("empty.dat"), "");
  EXPECT_THAT(Refusal(folder_.Path("empty.dat")), HasSubstr("is empty"));
  EXPECT_EQ(ReadFile(folder_.Path("empty.dat")), "");
  EXPECT_THAT(Refusal(folder_.Path("none.dat")), HasSubstr("no such file"));
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("none.dat")));
  EXPECT_THAT(Refusal(folder_.Path()), HasSubstr("folder"));
  Tamper(folder_.Path("other.dat"), "CREATE TABLE records (a)");
  EXPECT_THAT(Refusal(folder_.Path("other.dat")), HasSubstr("another program's database"));
  Save<TQvResourceSession>(folder_.Path("c.qvdb.a"), "x");
  EXPECT_THAT(Refusal(folder_.Path("c.qvdb")), HasSubstr("another program's database"));
  EXPECT_THAT(Refusal(folder_.Path("c.qvdb.a"), QvDataBufferType::kResource),
              HasSubstr("no record table"));
  EXPECT_THAT(Refusal(folder_.Path("c.qvdb.b"), QvDataBufferType::kResource),
              HasSubstr("no such resource"));
  EXPECT_THAT(Refusal(folder_.Path("d.qvdb.b"), QvDataBufferType::kResource),
              HasSubstr("no such container"));
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

TEST_F(Opening, NeverCrashesOnDamage) {
  const std::string whole = ReadFile(path_);
  std::mt19937 random(99);
  int refused = 0;
  for (int i = 0; i < 400; ++i) {
    std::string damaged = whole;
    for (int bytes = 0; bytes < 8; ++bytes) {
      damaged[random() % damaged.size()] = static_cast<char>(random());
    }
    WriteFile(folder_.Path("bad.dat"), damaged);
    std::filesystem::remove(folder_.Path("bad.dat-journal"));
    if (!Refusal(folder_.Path("bad.dat")).empty()) ++refused;
  }
  EXPECT_GT(refused, 0);
}

struct TamperRow {
  const char* title;
  const char* sql;
  const char* reason;
};

void PrintTo(const TamperRow& row, std::ostream* out) {
  *out << row.title;
}

class TamperedTables : public Opening, public testing::WithParamInterface<TamperRow> {};

TEST_P(TamperedTables, AreRefusedWithTheReason) {
  ASSERT_NO_FATAL_FAILURE(Tamper(path_, GetParam().sql));
  EXPECT_THAT(Refusal(path_), HasSubstr(GetParam().reason));
  EXPECT_THAT(Refusal(path_), HasSubstr("unit.dat"));
}

INSTANTIATE_TEST_SUITE_P(
    Tables, TamperedTables,
    testing::Values(
        TamperRow{"NoDescription", "DROP TABLE qv_fields", "no description"},
        TamperRow{"EmptyDescription", "DELETE FROM qv_fields", "no description"},
        TamperRow{"MissingField", "DELETE FROM qv_fields WHERE position = 2", "lacks the desc"},
        TamperRow{"UnknownType", "UPDATE qv_fields SET type = 9 WHERE position = 3", "wrongly"},
        TamperRow{"OtherType", "UPDATE qv_fields SET type = 3 WHERE position = 3", "does not fit"},
        TamperRow{"BadName", "UPDATE qv_fields SET name = 'A\"; --' WHERE position = 3", "wrongly"},
        TamperRow{"SecondKey", "UPDATE qv_fields SET required = 2 WHERE position = 1", "reserved"},
        TamperRow{"TwiceTheName", "UPDATE qv_fields SET name = 'name' WHERE position = 3", "twice"},
        TamperRow{"OtherColumn", "ALTER TABLE records RENAME COLUMN CODE TO KODE", "does not fit"},
        TamperRow{"MoreColumns", "ALTER TABLE records ADD COLUMN EXTRA TEXT", "does not fit"},
        TamperRow{"NoRecords", "DROP TABLE records", "does not fit"},
        TamperRow{"ATrigger",
                  "CREATE TRIGGER t AFTER INSERT ON records BEGIN DELETE FROM records; END",
                  "does not fit"},
        TamperRow{"AnIndex", "CREATE INDEX i ON records (abs(CODE))", "does not fit"},
        TamperRow{"AView", "DROP TABLE records; CREATE VIEW records AS SELECT 1", "does not fit"},
        TamperRow{"OtherVersion", "PRAGMA user_version = 2", "another version"},
        TamperRow{"OtherMark", "PRAGMA application_id = 7", "another program"},
        TamperRow{"ALog", "PRAGMA journal_mode = WAL", "log beside it"},
        TamperRow{"TooGreatANumber", "UPDATE records SET CODE = 3000000000 WHERE AUTOKEY = 7",
                  "wrong kind in its field \"CODE\""}),
    [](const auto& row) { return std::string(row.param.title); });

TEST_F(Opening, LeavesNoTrace) {
  const std::string before = ReadFile(path_);
  const std::size_t files = folder_.FileCount();
  {
    Table table(path_);
    table.set.Last();
    EXPECT_EQ(folder_.FileCount(), files);
  }
  EXPECT_EQ(folder_.FileCount(), files);
  EXPECT_TRUE(ReadFile(path_) == before);
}

TEST_F(Opening, WorksWhereNothingCanBeWritten) {
  // Rights do not bind the superuser, so the child is somebody else.
  Save<TQvResourceSession>(folder_.Path("c.qvdb.unit"), ReadFile(path_));
  chmod(folder_.Path().c_str(), 0555);
  chmod(path_.c_str(), 0444);
  chmod(folder_.Path("c.qvdb").c_str(), 0444);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    constexpr uid_t kNobody = 65534;
    if (geteuid() == 0 && setuid(kNobody) != 0) _exit(2);
    Table file(path_);
    Table resource(folder_.Path("c.qvdb.unit"), QvDataBufferType::kResource);
    const bool all = file.set.RecordCount() == 300 && resource.set.RecordCount() == 300;
    bool refused = false;
    try {
      file.Add("x", 1);
    } catch (const StorageError&) {
      refused = true;
    }
    try {
      resource.Add("x", 1);
      refused = false;
    } catch (const StorageError&) {
    }
    TQvResourceSession stream;
    refused = refused && !stream.Open(folder_.Path("c.qvdb.x"), QvOpenMode::kCreate);
    _exit(all && refused ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  chmod(folder_.Path().c_str(), 0755);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(Opening, FindsWhatAnotherProcessStored) {
  Table table(path_);
  table.set.Close();
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    Table other(path_);
    other.Rename(1, "a new name");
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  table.set.Open();
  EXPECT_EQ(table.Key("a new name"), 1);
}

TEST_F(Opening, FindsAFileThatWasPutInPlaceOfTheOld) {
  Table table(path_);
  table.set.Close();
  MakeTable(folder_.Path("new.dat"));
  std::filesystem::rename(folder_.Path("new.dat"), path_);
  table.set.Open();
  EXPECT_EQ(table.set.RecordCount(), 0);
}

TEST_F(Opening, UndoesWhatAKilledWriterLeft) {
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    auto* table = new Table(path_);
    auto* group = new TQvWriteGroup({&table->set});
    for (int i = 0; i < 2000; ++i)
      table->Add(std::string(5000, 'x'), 1);
    static_cast<void>(group);
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_TRUE(std::filesystem::exists(path_ + "-journal")) << "the child wrote nothing yet";
  Table table(path_);
  EXPECT_EQ(table.set.RecordCount(), 300);
  EXPECT_FALSE(std::filesystem::exists(path_ + "-journal"));
}

TEST_F(Opening, IsNotMisledByTheJournalOfAReplacedFile) {
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    auto* table = new Table(path_);
    auto* group = new TQvWriteGroup({&table->set});
    for (int i = 0; i < 2000; ++i)
      table->Add(std::string(5000, 'x'), 1);
    static_cast<void>(group);
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_TRUE(std::filesystem::exists(path_ + "-journal"));
  MakeTable(path_);
  EXPECT_EQ(Table(path_).set.RecordCount(), 0);
}

TEST_F(Opening, DoesNotLoseChangesToAFileThatWasReplacedMeanwhile) {
  Table table(path_);
  MakeTable(path_);
  EXPECT_THROW(table.Add("x", 1), StorageError) << "it would have gone into the removed file";
  EXPECT_EQ(table.set.State(), DataSetState::kInsert);
  table.set.Cancel();
  table.Reopen();
  EXPECT_EQ(table.set.RecordCount(), 0);
  EXPECT_EQ(table.Add("x", 1), 1);
}

TEST_F(Opening, KeepsItsLocksWhenTheFileIsReadBesides) {
  // Closing any descriptor of a file drops the locks of the process on it.
  Table table(path_);
  TQvWriteGroup group({&table.set});
  table.Add("x", 1);
  EXPECT_FALSE(Load<TQvFileStream>(path_).empty());
  // A lock is seen from another process only. Of SQLite's lock bytes this is the writer's.
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    constexpr off_t kReservedByte = 0x40000001;
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = kReservedByte;
    lock.l_len = 1;
    const int descriptor = open(path_.c_str(), O_RDWR);
    _exit(fcntl(descriptor, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 0) << "another writer came in";
  group.Commit();
}

TEST_F(Opening, ReportsAStoreThatIsLocked) {
  sqlite3* handle = nullptr;
  ASSERT_EQ(sqlite3_open(path_.c_str(), &handle), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(handle, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  Table table(path_);
  EXPECT_EQ(table.set.RecordCount(), 300) << "readers do not wait for a writer";
  EXPECT_THROW(table.Add("x", 1), StorageError);
  EXPECT_EQ(table.set.State(), DataSetState::kInsert) << "the change is still pending";
  sqlite3_exec(handle, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close(handle);
  EXPECT_NO_THROW(table.set.Post());
}

}  // namespace
