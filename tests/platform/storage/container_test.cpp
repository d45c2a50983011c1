#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "platform/dbset/data_set.h"
#include "platform/storage/file_stream.h"
#include "platform/storage/resource_session.h"
#include "platform/storage/stream.h"
#include "tests/platform/dbset/table_fixture.h"
#include "tests/platform/storage/test_folder.h"

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
    stream.Close();
  }
  EXPECT_EQ(folder.FileCount(), 0U) << "nothing was committed";
  Save<Session>(name, "text");
  EXPECT_TRUE(Session::Exists(name));
  EXPECT_EQ(Load<Session>(name), "text");
  EXPECT_EQ(folder.FileCount(), 1U) << "the log goes with the last user";
  EXPECT_TRUE(Session::Delete(name));
  EXPECT_FALSE(Session::Delete(name));
  EXPECT_FALSE(Session::Exists(name));
}

TEST(Containers, HoldLargeResources) {
  const TestFolder folder;
  std::string bytes;
  bytes.resize(20000001);
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<char>(i * 7 / 3);
  const std::string name = folder.Path("c.qvdb.large");
  Save<Session>(name, bytes);
  EXPECT_TRUE(Load<Session>(name) == bytes);
  Save<Session>(name, "");
  EXPECT_EQ(Load<Session>(name), "");
  EXPECT_TRUE(Session::Exists(name));
}

TEST(Containers, RefuseToReadWhatWasReplacedMeanwhile) {
  const TestFolder folder;
  const std::string name = folder.Path("c.qvdb.a");
  Save<Session>(name, std::string(600000, 'a'));
  Session reader;
  ASSERT_TRUE(reader.Open(name, QvOpenMode::kRead));
  Save<Session>(name, std::string(600000, 'b'));
  EXPECT_THROW(reader.ReadAll(), StorageError) << "half of each would be neither";
}

TEST(Containers, ForgetWhatWasNotCommitted) {
  const TestFolder folder;
  const std::string name = folder.Path("c.qvdb.a");
  Save<Session>(name, "old");
  {
    Session writer;
    ASSERT_TRUE(writer.Open(name, QvOpenMode::kCreate));
    writer.Write("new", 3);
  }
  EXPECT_EQ(Load<Session>(name), "old");
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
  struct Row {
    const char* name;
    const char* reason;
  };
  for (const Row& row : {Row{"dir.qvdb.a", "folder"}, Row{"text.qvdb.a", "another kind"},
                         Row{"empty.qvdb.a", "another kind"}, Row{"none.a", "no such container"},
                         Row{"none", "no such container"}, Row{"new.qvdb.", "no such container"}}) {
    for (const QvOpenMode mode : {QvOpenMode::kRead, QvOpenMode::kCreate}) {
      Session stream;
      EXPECT_FALSE(stream.Open(folder.Path(row.name), mode)) << row.name;
      EXPECT_THAT(stream.LastError(), HasSubstr(row.reason)) << row.name;
    }
    EXPECT_FALSE(Session::Exists(folder.Path(row.name)));
    EXPECT_FALSE(Session::Delete(folder.Path(row.name)));
  }
  Session stream;
  EXPECT_FALSE(stream.Open(folder.Path("none/new.qvdb.a"), QvOpenMode::kCreate));
  EXPECT_FALSE(stream.Open(folder.Path("c.qvdb.qv_blobs"), QvOpenMode::kCreate)) << "reserved";
  EXPECT_FALSE(stream.Open(folder.Path("c.qvdb.sqlite_master"), QvOpenMode::kCreate)) << "reserved";
  EXPECT_EQ(ReadFile(folder.Path("text.qvdb")), "no container");
  EXPECT_EQ(folder.FileCount(), 3U);
}

TEST(ContainerNames, TakeAContainerBesideAFolderOfItsStem) {
  const TestFolder folder;
  std::filesystem::create_directory(folder.Path("data"));
  Save<Session>(folder.Path("data.qvdb.a"), "1");
  EXPECT_EQ(Load<Session>(folder.Path("data.qvdb.a")), "1");
}

TEST(TablesInContainers, TravelAsTableFilesAndBack) {
  const TestFolder folder;
  const std::string file = folder.Path("unit.dat");
  MakeTable(file);
  {
    Table table(file);
    for (const char* name : {"metre", "foot", "fathom"})
      table.Add(name, 1);
    table.set.Last();
    table.set.Delete();
  }
  const std::string image = ReadFile(file);
  const std::string resource = folder.Path("c.qvdb.unit");
  Save<Session>(resource, image);
  Table inside(resource, QvDataBufferType::kResource);
  EXPECT_THAT(inside.Names(), testing::ElementsAre("fathom", "foot"));
  // The key of the deleted record stays used up, and keys stay what they were.
  EXPECT_EQ(inside.Key("foot"), 2);
  EXPECT_EQ(inside.Add("yard", 2), 4);

  const std::string back = folder.Path("back.dat");
  Save<TQvFileStream>(back, Load<Session>(resource));
  Table outside(back);
  EXPECT_THAT(outside.Names(), testing::ElementsAre("fathom", "foot", "yard"));
  EXPECT_EQ(outside.Key("yard"), 4);
  EXPECT_EQ(outside.Add("chain", 3), 5);
}

TEST(TablesInContainers, MayHaveDotsInTheirNames) {
  const TestFolder folder;
  MakeTable(folder.Path("unit.dat"));
  const std::string name = folder.Path("c.qvdb.Backup.unit_1");
  Save<Session>(name, ReadFile(folder.Path("unit.dat")));
  Table table(name, QvDataBufferType::kResource);
  EXPECT_EQ(table.Add("a", 1), 1);
  Save<Session>(name, ReadFile(folder.Path("unit.dat")));
  table.Reopen();
  EXPECT_EQ(table.set.RecordCount(), 0) << "the table was replaced by an empty one";
  EXPECT_EQ(table.Add("b", 1), 1);
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
  const TestFolder folder;
  const std::string file = folder.Path("unit.dat");
  MakeTable(file);
  std::string image = ReadFile(file);
  image.resize(image.size() - 5);
  const std::string name = folder.Path("c.qvdb.unit");
  Save<Session>(name, image);
  EXPECT_TRUE(Load<Session>(name) == image) << "a damaged image stays the bytes that it is";
  EXPECT_THROW(Table(name, QvDataBufferType::kResource), StorageError);
  Save<Session>(name, ReadFile(file));
  EXPECT_EQ(Table(name, QvDataBufferType::kResource).set.RecordCount(), 0);
  EXPECT_TRUE(Session::Exists(name));
  EXPECT_TRUE(Session::Delete(name));
  EXPECT_FALSE(Session::Exists(name));
}

TEST(TablesInContainers, AreOrdinaryTablesToOtherReaders) {
  const TestFolder folder;
  MakeTable(folder.Path("unit.dat"));
  Save<Session>(folder.Path("c.qvdb.unit"), ReadFile(folder.Path("unit.dat")));
  {
    Table table(folder.Path("c.qvdb.unit"), QvDataBufferType::kResource);
    table.Add("metre", 9001);
  }
  sqlite3* handle = nullptr;
  ASSERT_EQ(sqlite3_open(folder.Path("c.qvdb").c_str(), &handle), SQLITE_OK);
  int code = 0;
  const auto store = [](void* out, int, char** values, char**) {
    *static_cast<int*>(out) = std::atoi(values[0]);
    return 0;
  };
  sqlite3_exec(handle, "SELECT CODE FROM unit WHERE NAME = 'metre'", store, &code, nullptr);
  EXPECT_EQ(code, 9001);
  sqlite3_close(handle);
}

}  // namespace
