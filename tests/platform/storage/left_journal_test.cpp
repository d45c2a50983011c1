#include "platform/storage/left_journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/storage/database_recovery.h"
#include "platform/storage/sqlite.h"
#include "tests/platform/dbset/table_fixture.h"

namespace {

using namespace QvPlatform;
using namespace platform_tests;
using detail::Connection;
using testing::AllOf;
using testing::HasSubstr;

constexpr const char* kCount = "SELECT count(*) FROM n";

/// A file of ten rows with the journal of a writer that was killed in the middle of a change.
class LeftJournals : public testing::Test {
 protected:
  LeftJournals() {
    std::filesystem::copy_file(table_.buffer.StreamName, table_.Path("writing"));
    Connection writer = Connection::OpenFile(table_.Path("writing"));
    writer.Execute("CREATE TABLE n (i); PRAGMA cache_size = 1");
    const std::string rows =
        "WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM s WHERE i < ";
    writer.Execute("INSERT INTO n " + rows + "10) SELECT zeroblob(3000) FROM s");
    // Page 1 is touched first; then there is no room left in memory, and pages go out early.
    writer.Execute("BEGIN; CREATE TABLE m (i); DELETE FROM n");
    writer.Execute("INSERT INTO n " + rows + "90) SELECT zeroblob(2000) FROM s");
    std::filesystem::copy_file(table_.Path("writing"), path_);
    std::filesystem::copy_file(table_.Path("writing-journal"), journal_);
    writer.Execute("COMMIT");
  }

  /// Appends the name of a super-journal as SQLite does.
  void NameSuperJournal(const std::string& name) {
    const auto number = [](std::uint32_t value) {
      std::string bytes;
      for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift & 0xFF);
      return bytes;
    };
    std::uint32_t sum = 0;
    for (const char c : name)
      sum += static_cast<std::uint32_t>(static_cast<signed char>(c));
    const std::string bytes = ReadFile(journal_);
    WriteFile(journal_, bytes + number(0x40000000 / 4096 + 1) + name +
                            number(static_cast<std::uint32_t>(name.size())) + number(sum) +
                            bytes.substr(0, 8));
  }
  /// Why the file is not opened; "" if it is.
  std::string Refusal() {
    try {
      Connection connection = Connection::OpenFile(path_);
      rows_ = connection.QueryInteger(kCount);
      return "";
    } catch (const StorageError& error) {
      return error.what();
    }
  }

  FileTable table_;
  std::string path_ = table_.Path("n.dat");
  std::string journal_ = table_.Path("n.dat-journal");
  std::int64_t rows_ = 0;
};

TEST_F(LeftJournals, OfTheFileAreRolledBack) {
  ASSERT_NE(ReadFile(path_).size(), 0U);
  EXPECT_EQ(Refusal(), "");
  EXPECT_EQ(rows_, 10);
  EXPECT_FALSE(std::filesystem::exists(journal_));
}

TEST_F(LeftJournals, OfAnotherStateAreRefused) {
  const std::string journal = ReadFile(journal_);
  EXPECT_EQ(Refusal(), "");
  for (const char* sql : {"DELETE FROM n", "INSERT INTO n VALUES (1)"})
    Connection::OpenFile(path_).Execute(sql);
  const std::string other = ReadFile(table_.buffer.StreamName);
  for (const std::string& content : {ReadFile(path_), other, std::string()}) {
    WriteFile(path_, content);
    WriteFile(journal_, journal);
    EXPECT_THAT(Refusal(), AllOf(HasSubstr(path_), HasSubstr(journal_), HasSubstr("recover")));
    EXPECT_TRUE(ReadFile(path_) == content && ReadFile(journal_) == journal)
        << "nothing is touched";
  }
}

TEST_F(LeftJournals, ReachNothingOutsideOfTheirPlace) {
  const std::string victim = table_.Path("victim");
  const TestFolder elsewhere;
  const std::string far = elsewhere.Path("n.dat-mj01234596A");
  const std::string near = path_ + "-mj01234596A";
  const std::string whole = ReadFile(journal_);
  for (const std::string& name : {victim, far, near}) {
    // In the last case the name is a good one, and the file of that name leads out.
    WriteFile(name, elsewhere.Path("x-journal") + '\0');
    WriteFile(elsewhere.Path("x-journal"), "precious");
    WriteFile(journal_, whole);
    NameSuperJournal(name);
    const std::string before = ReadFile(path_);
    EXPECT_NE(Refusal(), "") << name;
    EXPECT_EQ(ReadFile(name), elsewhere.Path("x-journal") + '\0');
    EXPECT_EQ(ReadFile(elsewhere.Path("x-journal")), "precious");
  }
}

TEST_F(LeftJournals, ThatAreNoFilesAreRefusedWithoutWaiting) {
  const std::function<void()> kinds[] = {
      [this] { std::filesystem::create_symlink(path_, journal_); },
      [this] { std::filesystem::create_directory(journal_); },
      [this] { ASSERT_EQ(mkfifo(journal_.c_str(), 0600), 0); }};
  for (const auto& make : kinds) {
    std::filesystem::remove(journal_);
    make();
    EXPECT_THAT(Refusal(), HasSubstr(journal_));
  }
}

TEST_F(LeftJournals, OfALiveWriterAreItsOwn) {
  EXPECT_EQ(Refusal(), "");
  Connection alive = Connection::OpenFile(path_);
  alive.Execute("BEGIN IMMEDIATE");
  WriteFile(journal_, "\xd9 something that is being written");
  NameSuperJournal("/elsewhere/x-mj000000900");
  EXPECT_EQ(detail::JudgeLeftJournal(path_), detail::JournalFault::kNone);
  alive.Execute("COMMIT");
}

TEST_F(LeftJournals, OfAMovedChangeAreFinishedOrTakenBack) {
  const std::string interrupted = ReadFile(path_);
  const std::string finished = ReadFile(table_.Path("writing"));
  const std::string journal = ReadFile(journal_);
  const std::string here = table_.Path("n.dat-mj01234596A");
  const struct {
    const char* name;
    const std::string* content;
    bool superJournalCame;
    std::int64_t rows;
    bool setAside;
  } rows[] = {
      {"taken back with its super-journal", &interrupted, true, 10, false},
      {"taken back, for the file was not written to its end", &interrupted, false, 10, false},
      {"finished", &finished, false, 90, false},
      {"taken back as a whole, though this file was written", &finished, true, 10, false},
      {"another file's", nullptr, false, 0, true}};
  const std::string other = ReadFile(table_.buffer.StreamName);
  for (const auto& row : rows) {
    WriteFile(path_, row.content != nullptr ? *row.content : other);
    WriteFile(journal_, journal);
    NameSuperJournal("/gone/n.dat-mj01234596A");
    if (row.superJournalCame) WriteFile(here, "");
    EXPECT_THAT(Refusal(), HasSubstr("recover")) << row.name;
    WriteFile(path_ + "-mj00000090F", "left before a journal named it");
    int steps = 0;
    for (int run = 0; run < 2; ++run)
      detail::RecoverDatabase(table_.Path(), [&steps](const std::string&) { ++steps; });
    EXPECT_EQ(steps, 2) << row.name << ", and the other super-journal goes";
    if (row.setAside) {
      EXPECT_TRUE(ReadFile(path_) == other);
    } else {
      EXPECT_EQ(Refusal(), "") << row.name;
      EXPECT_EQ(rows_, row.rows) << row.name;
    }
    EXPECT_EQ(std::filesystem::exists(journal_ + ".left"), row.setAside) << row.name;
    EXPECT_FALSE(std::filesystem::exists(journal_) || std::filesystem::exists(here)) << row.name;
  }
}

}  // namespace
