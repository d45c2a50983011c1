#include "platform/storage/file_stream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/storage/crc32.h"
#include "tests/platform/storage/test_folder.h"

namespace {

using namespace QvPlatform;
using namespace platform_tests;
using testing::HasSubstr;

TEST(FileStreams, GiveBackWhatWasWritten) {
  const TestFolder folder;
  const std::string bytes = std::string("a\0b\r\n", 5) + std::string(3000000, 'x');
  Save<TQvFileStream>(folder.Path("f"), bytes);
  EXPECT_EQ(Load<TQvFileStream>(folder.Path("f")), bytes);
  EXPECT_EQ(folder.FileCount(), 1U);
}

TEST(FileStreams, KeepTheOldContentUntilCommit) {
  const TestFolder folder;
  const std::string path = folder.Path("f");
  WriteFile(path, "old");
  for (const bool closed : {true, false}) {
    {
      TQvFileStream stream;
      ASSERT_TRUE(stream.Open(path, QvOpenMode::kCreate));
      stream.Write("new", 3);
      EXPECT_EQ(ReadFile(path), "old");
      if (closed) {
        stream.Close();
        EXPECT_THROW(stream.Commit(), StorageError);
      }
    }
    EXPECT_EQ(ReadFile(path), "old") << (closed ? "closed" : "destroyed") << " without commit";
    EXPECT_EQ(folder.FileCount(), 1U);
  }
}

TEST(FileStreams, KeepTheRightsAndTheLinkOfWhatTheyReplace) {
  const TestFolder folder;
  WriteFile(folder.Path("real"), "old");
  chmod(folder.Path("real").c_str(), 0640);
  std::filesystem::create_symlink("real", folder.Path("link"));
  Save<TQvFileStream>(folder.Path("link"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("link")));
  EXPECT_EQ(ReadFile(folder.Path("real")), "new");
  struct stat status {};
  ASSERT_EQ(stat(folder.Path("real").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST(FileStreams, TellWhyTheyDoNotOpen) {
  const TestFolder folder;
  WriteFile(folder.Path("file"), "x");
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  TQvFileStream stream;
  EXPECT_FALSE(stream.Open(folder.Path("none"), QvOpenMode::kRead));
  EXPECT_THAT(stream.LastError(), HasSubstr("none"));
  for (const std::string& name : {folder.Path(), folder.Path("pipe")}) {
    EXPECT_FALSE(stream.Open(name, QvOpenMode::kRead)) << "nor does it wait at a pipe";
    EXPECT_FALSE(stream.Open(name, QvOpenMode::kCreate));
  }
  for (const std::string& name : {folder.Path("file/below"), folder.Path("no/folder"),
                                  std::string("/proc/refframe"), std::string("/dev/full")})
    EXPECT_FALSE(stream.Open(name, QvOpenMode::kCreate)) << name;
  EXPECT_FALSE(std::filesystem::exists(folder.Path("no"))) << "reading and writing make no folders";
  EXPECT_THROW(stream.Write("x", 1), StorageError);
  EXPECT_EQ(folder.FileCount(), 2U);
}

TEST(FileStreams, RemoveWhatKilledWritersLeft) {
  const TestFolder folder;
  const auto begin = [&folder](const char* name, TQvFileStream& stream) {
    return stream.Open(folder.Path(name), QvOpenMode::kCreate) ? 0 : 1;
  };
  TQvFileStream alive;
  ASSERT_EQ(begin("alive", alive), 0);
  // The user's own, whatever it is called.
  WriteFile(folder.Path(".refframe-notes.new"), "mine");
  EXPECT_EQ(ExitOfChild([&] {
              TQvFileStream stream;
              const int result = begin("killed", stream);
              _exit(result);
              return 0;
            }),
            0);
  EXPECT_EQ(folder.FileCount(), 3U);
  EXPECT_EQ(ExitOfChild([&] {
              TQvFileStream next;
              // A folder is looked through once a process, and known by its spelling.
              return begin("./next", next);
            }),
            0);
  EXPECT_EQ(folder.FileCount(), 2U);
  alive.Commit();
  EXPECT_TRUE(std::filesystem::exists(folder.Path("alive")));
}

TEST(Checksums, AreThoseOfTheStandard) {
  EXPECT_EQ(Crc32("123456789"), 0xCBF43926U);
  EXPECT_EQ(Crc32(""), 0U);
}

}  // namespace
