#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/storage/sqlite.h"
#include "platform/storage/waiting.h"
#include "tests/platform/dbset/table_fixture.h"

namespace {

using namespace QvPlatform;
using namespace platform_tests;
using detail::Connection;
using testing::AllOf;
using testing::HasSubstr;

TEST(Messages, TellTheFileAndTheCauseInWordsOfTheUser) {
  const FileTable file;
  const std::string path = file.buffer.StreamName;
  TimedWaiter none(std::chrono::milliseconds(0));
  const WaiterScope scope(none);
  const auto write = [](Connection connection, const std::string& before) {
    connection.Execute(before);
    connection.Execute("CREATE TABLE t (b); INSERT INTO t VALUES (zeroblob(100000))");
  };
  Connection writer = Connection::OpenFile(path);
  const struct {
    const char* cause;
    std::function<void()> steps;
  } rows[] = {
      {"the disk is full", [&] { write(Connection::OpenFile(path), "PRAGMA max_page_count = 1"); }},
      {"read-only", [&] { write(Connection::OpenReadOnly(path), ""); }},
      {"another program is writing",
       [&] {
         writer.Execute("BEGIN IMMEDIATE");
         write(Connection::OpenFile(path), "");
       }},
      {"cannot be opened: No such file",
       [&] {
         std::filesystem::remove(path);
         write(Connection::OpenFile(path), "");
       }},
      {"is no database, or is damaged", [&] {
         WriteFile(path, std::string(5000, 'x'));
         write(Connection::OpenFile(path), "");
       }}};
  for (const auto& row : rows) {
    try {
      row.steps();
      ADD_FAILURE() << row.cause;
    } catch (const detail::SqliteError& error) {
      EXPECT_THAT(error.what(), AllOf(testing::StartsWith("\"" + path + "\": "),
                                      HasSubstr(row.cause), HasSubstr(", SQLite ")));
    }
  }
}

}  // namespace
