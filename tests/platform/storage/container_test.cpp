#include "platform/storage/container.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/storage/file_stream.h"
#include "platform/storage/resource_session.h"
#include "platform/storage/sqlite.h"
#include "tests/platform/dbset/table_fixture.h"

namespace {

using namespace QvPlatform;
using namespace platform_tests;
using testing::HasSubstr;

using Session = TQvResourceSession;

TEST(Containers, AreMadeByTheirFirstResource) {
  const TestFolder folder;
  const std::string name = folder.Path("refs.qvdb.Heights.Alps");
  EXPECT_FALSE(Session::Exists(name));
  {
    Session stream;
    ASSERT_TRUE(stream.Open(name, QvOpenMode::kCreate)) << stream.LastError();
    stream.Write("text", 4);
  }
  EXPECT_EQ(folder.FileCount(), 0U) << "nothing was committed";
  Save<Session>(name, "text");
  {
    Session stream;
    ASSERT_TRUE(stream.Open(name, QvOpenMode::kCreate));
    stream.Write("new", 3);
    stream.Close();
  }
  EXPECT_TRUE(Session::Exists(name));
  EXPECT_EQ(Load<Session>(name), "text");
  EXPECT_EQ(folder.FileCount(), 1U) << "the journal goes with the change";
  EXPECT_TRUE(Session::Delete(name));
  EXPECT_FALSE(Session::Delete(name));
  EXPECT_FALSE(Session::Exists(name));
}

TEST(Containers, HoldLargeResourcesAndReadNoMixtureOfTwo) {
  const TestFolder folder;
  std::string bytes(20000001, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<char>(i * 7 / 3);
  const std::string name = folder.Path("c.qvdb.large");
  Save<Session>(name, bytes);
  EXPECT_TRUE(Load<Session>(name) == bytes);
  Session reader;
  ASSERT_TRUE(reader.Open(name, QvOpenMode::kRead));
  Save<Session>(name, "");
  EXPECT_THROW(reader.ReadAll(), StorageError) << "it was replaced meanwhile";
  EXPECT_EQ(Load<Session>(name), "");
  EXPECT_TRUE(Session::Exists(name));
}

TEST(ContainerNames, AreSplitBehindTheContainersFile) {
  const TestFolder folder;
  // Dots in front of the container's own name, in its folder and in the resource's name.
  std::filesystem::create_directory(folder.Path("v1.2"));
  const std::string path = folder.Path("v1.2/my.refs.QVDB");
  Save<Session>(path + ".a.qvdb.b", "1");
  Save<Session>(path + ".a", "2");
  EXPECT_TRUE(std::filesystem::is_regular_file(path));
  EXPECT_EQ(Load<Session>(path + ".a.qvdb.b"), "1");
  EXPECT_EQ(Load<Session>(path + ".A"), "2") << "case of ASCII letters does not count";
  // A folder of its stem does not stand in its way.
  std::filesystem::create_directory(folder.Path("v1.2/my.refs"));
  EXPECT_EQ(Load<Session>(path + ".a"), "2");
  // A container keeps working under a name without the ending.
  std::filesystem::rename(path, folder.Path("v1.2/plain"));
  EXPECT_EQ(Load<Session>(folder.Path("v1.2/plain.a")), "2");
  // A copy beside its original is a container of its own.
  std::filesystem::copy_file(folder.Path("v1.2/plain"), folder.Path("v1.2/plain.old"));
  EXPECT_EQ(Load<Session>(folder.Path("v1.2/plain.old.a")), "2");
  Save<Session>(folder.Path("v1.2/plain.old.a"), "3");
  EXPECT_EQ(Load<Session>(folder.Path("v1.2/plain.a")), "2");
}

TEST(ContainerNames, ThatLeadToSomethingElseAreRefusedWithTheReason) {
  const TestFolder folder;
  std::filesystem::create_directory(folder.Path("dir.qvdb"));
  WriteFile(folder.Path("text.qvdb"), "no container");
  WriteFile(folder.Path("empty.qvdb"), "");
  Session stream;
  for (const auto& [name, reason] : {std::pair{"dir.qvdb.a", "folder"},
                                     {"text.qvdb.a", "another kind"},
                                     {"empty.qvdb.a", "another kind"},
                                     {"none.a", "no such container"},
                                     {"none", "no such container"},
                                     {"new.qvdb.", "no such container"}}) {
    for (const QvOpenMode mode : {QvOpenMode::kRead, QvOpenMode::kCreate}) {
      EXPECT_FALSE(stream.Open(folder.Path(name), mode)) << name;
      EXPECT_THAT(stream.LastError(), HasSubstr(reason)) << name;
    }
    EXPECT_FALSE(Session::Exists(folder.Path(name)));
    EXPECT_FALSE(Session::Delete(folder.Path(name)));
  }
  EXPECT_FALSE(stream.Open(folder.Path("none/new.qvdb.a"), QvOpenMode::kCreate));
  EXPECT_FALSE(stream.Open(folder.Path("c.qvdb.qv_blobs"), QvOpenMode::kCreate)) << "reserved";
  EXPECT_FALSE(stream.Open(folder.Path("c.qvdb.sqlite_master"), QvOpenMode::kCreate)) << "reserved";
  EXPECT_EQ(ReadFile(folder.Path("text.qvdb")), "no container");
  EXPECT_EQ(folder.FileCount(), 3U);
}

TEST(TablesInContainers, TravelAsTableFilesAndBack) {
  FileTable file;
  for (const char* name : {"metre", "foot", "fathom"})
    file.Add(name, 1);
  file.set.Last();
  file.set.Delete();
  const std::string resource = file.Path("c.qvdb.unit");
  Save<Session>(resource, ReadFile(file.buffer.StreamName));
  Table inside(resource, QvDataBufferType::kResource);
  EXPECT_THAT(inside.Names(), testing::ElementsAre("fathom", "foot"));
  // The key of the deleted record stays used up, and keys stay what they were.
  EXPECT_EQ(inside.Key("foot"), 2);
  EXPECT_EQ(inside.Add("yard", 2), 4);

  const std::string back = file.Path("back.dat");
  Save<TQvFileStream>(back, Load<Session>(resource));
  Table outside(back);
  EXPECT_THAT(outside.Names(), testing::ElementsAre("fathom", "foot", "yard"));
  EXPECT_EQ(outside.Key("yard"), 4);
  EXPECT_EQ(outside.Add("chain", 3), 5);
}

TEST(TablesInContainers, AreFoundAnewWhenTheContainerIsReplaced) {
  const TestFolder folder;
  MakeTable(folder.Path("c.qvdb.unit"), QvDataBufferType::kResource);
  Table table(folder.Path("c.qvdb.unit"), QvDataBufferType::kResource);
  table.Add("a", 1);
  MakeTable(folder.Path("d.qvdb.unit"), QvDataBufferType::kResource);
  std::filesystem::rename(folder.Path("d.qvdb"), folder.Path("c.qvdb"));
  EXPECT_THROW(table.Add("b", 1), StorageError);
  table.set.Cancel();
  table.Reopen();
  EXPECT_EQ(table.set.RecordCount(), 0);
}

TEST(TablesInContainers, AreWhatCountsAsATableOnly) {
  const FileTable file;
  const std::string whole = ReadFile(file.buffer.StreamName);
  const std::string cut = whole.substr(0, whole.size() - 5);
  const std::string name = file.Path("c.qvdb.Backup.unit_1");
  Save<Session>(name, cut);
  EXPECT_TRUE(Load<Session>(name) == cut) << "a damaged image stays the bytes that it is";
  EXPECT_THROW(Table(name, QvDataBufferType::kResource), StorageError);
  Save<Session>(name, whole);
  Table table(name, QvDataBufferType::kResource);
  EXPECT_EQ(table.Add("a", 1), 1);
  Save<Session>(name, whole);
  table.Reopen();
  EXPECT_EQ(table.set.RecordCount(), 0) << "the table was replaced by an empty one";
  EXPECT_EQ(table.Add("b", 1), 1);
  EXPECT_TRUE(Session::Exists(name));
  EXPECT_TRUE(Session::Delete(name));
  EXPECT_FALSE(Session::Exists(name));
}

TEST(Containers, TakeInTheLogOfAnOlderProgramAndReadNoOther) {
  const TestFolder folder;
  const std::string path = folder.Path("c.qvdb");
  MakeTable(path + ".unit", QvDataBufferType::kResource);
  const std::string before = ReadFile(path);
  // An older program that is killed with its last change in the log.
  EXPECT_EQ(ExitOfChild([&] {
              detail::Connection older = detail::Connection::OpenLogged(path);
              older.Execute("PRAGMA journal_mode = WAL; CREATE TABLE late (i)");
              _exit(0);
              return 0;
            }),
            0);
  const std::string log = ReadFile(path + "-wal");
  ASSERT_NE(log.size(), 0U);
  const auto late = [&path] {
    return detail::Container::Open(path)->Transactions().Db().QueryInteger(
        "SELECT count(*) FROM sqlite_master WHERE name = 'late'");
  };
  EXPECT_EQ(late(), 1);
  EXPECT_EQ(folder.FileCount(), 1U) << "the log is in";
  WriteFile(path, before);
  WriteFile(path + "-wal", log);
  EXPECT_EQ(late(), 0) << "a copy took the place of the file, and the log is none of its own";
}

TEST(TablesInContainers, AreOrdinaryTablesToOtherReaders) {
  const TestFolder folder;
  MakeTable(folder.Path("c.qvdb.unit"), QvDataBufferType::kResource);
  Table(folder.Path("c.qvdb.unit"), QvDataBufferType::kResource).Add("metre", 9001);
  detail::Connection reader = detail::Connection::OpenReadOnly(folder.Path("c.qvdb"));
  EXPECT_EQ(reader.QueryInteger("SELECT CODE FROM unit WHERE NAME = 'metre'"), 9001);
  EXPECT_THROW(reader.Execute("DELETE FROM unit"), StorageError);
}

}  // namespace
