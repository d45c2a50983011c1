#include <fcntl.h>
#include <gtest/gtest.h>

#include "platform/storage/sqlite.h"
#include "platform/storage/waiting.h"
#include "tests/platform/dbset/table_fixture.h"

namespace {

using namespace QvPlatform;
using namespace platform_tests;
using detail::Connection;

/// Rounds of each writer; REFFRAME_LOCK_ROUNDS asks for more.
int Rounds() {
  const char* const wish = std::getenv("REFFRAME_LOCK_ROUNDS");
  return wish != nullptr ? std::atoi(wish) : 30;
}

/// What a file dialog does to each file that it shows.
void Touch(const std::string& path) {
  close(open(path.c_str(), O_RDONLY | O_CLOEXEC));
}

/// Writes one row a round, and has the file opened and closed at every stage of its transactions.
int WriteRows(const std::string& path) {
  TimedWaiter patient(std::chrono::minutes(5));
  const WaiterScope scope(patient);
  Connection connection = Connection::OpenFile(path);
  const int rounds = Rounds();
  for (int i = 0; i < rounds; ++i) {
    for (const char* sql :
         {"SELECT count(*) FROM n", "BEGIN IMMEDIATE", "INSERT INTO n SELECT max(i) + 1 FROM n",
          "UPDATE total SET rows = rows + 1", "COMMIT"}) {
      connection.Execute(sql);
      Touch(path);
    }
  }
  return 0;
}

TEST(Locks, OutliveEveryCloseOfTheFileInTheProcess) {
  const FileTable file;
  const std::string path = file.Path("n.dat");
  std::filesystem::copy_file(file.buffer.StreamName, path);
  Connection held = Connection::OpenFile(path);
  held.Execute(
      "CREATE TABLE n (i INTEGER PRIMARY KEY); CREATE TABLE total (rows INTEGER);"
      "INSERT INTO n VALUES (0); INSERT INTO total VALUES (0)");
  const pid_t one = StartChild([&path] { return WriteRows(path); });
  const pid_t other = StartChild([&path] { return WriteRows(path); });
  EXPECT_EQ(WriteRows(path), 0);
  EXPECT_EQ(ExitOf(one), 0);
  EXPECT_EQ(ExitOf(other), 0);
  const std::int64_t written = std::int64_t{3} * Rounds();
  EXPECT_EQ(held.QueryInteger("SELECT max(i) FROM n"), written);
  EXPECT_EQ(held.QueryInteger("SELECT rows FROM total"), written);
  EXPECT_EQ(held.QueryText("PRAGMA integrity_check"), "ok");
}

TEST(Locks, AreThoseOfOtherPrograms) {
  const FileTable file;
  const std::string path = file.buffer.StreamName;
  // A process of its own, since a connection with the locks of a process counts for all of it.
  const auto isFree = [&path](const char* sql) {
    return ExitOfChild([&] {
             TimedWaiter none(std::chrono::milliseconds(0));
             const WaiterScope scope(none);
             Connection::OpenLogged(path).Execute(sql);
             return 0;
           }) == 0;
  };
  Connection held = Connection::OpenFile(path);
  const struct {
    const char* state;
    bool canRead;
    bool canWrite;
  } rows[] = {{"SELECT 1", true, true},
              {"BEGIN; SELECT count(*) FROM qv_fields", true, true},
              {"BEGIN IMMEDIATE", true, false},
              {"BEGIN EXCLUSIVE", false, false}};
  for (const auto& row : rows) {
    held.Execute(row.state);
    EXPECT_EQ(isFree("SELECT count(*) FROM qv_fields"), row.canRead) << row.state;
    EXPECT_EQ(isFree("BEGIN IMMEDIATE"), row.canWrite) << row.state;
    if (held.InTransaction()) held.Execute("COMMIT");
  }
  EXPECT_TRUE(isFree("BEGIN EXCLUSIVE"));
}

}  // namespace
