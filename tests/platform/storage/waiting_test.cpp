#include "platform/storage/waiting.h"

#include <gtest/gtest.h>

#include "platform/storage/sqlite.h"
#include "tests/platform/dbset/table_fixture.h"

namespace {

using namespace QvPlatform;
using namespace platform_tests;
using std::chrono::milliseconds;

/// Says no at its eighth question, and remembers the longest pause between two.
class Impatient final : public Waiter {
 public:
  bool KeepWaiting(milliseconds waited) override {
    longest = std::max(longest, waited - last);
    last = waited;
    return ++asked < 8;
  }
  int asked = 0;
  milliseconds last{0};
  milliseconds longest{0};
};

TEST(Waiting, IsDecidedByTheWaiterOfTheScope) {
  const FileTable file;
  detail::Connection writer = detail::Connection::OpenFile(file.buffer.StreamName);
  detail::Connection other = detail::Connection::OpenFile(file.buffer.StreamName);
  writer.Execute("BEGIN IMMEDIATE");
  Impatient waiter;
  try {
    const WaiterScope scope(waiter);
    EXPECT_EQ(&CurrentWaiter(), &waiter);
    other.Execute("BEGIN IMMEDIATE");
    FAIL() << "the file is locked";
  } catch (const detail::SqliteError& error) {
    EXPECT_TRUE(error.IsLocked());
  }
  EXPECT_EQ(waiter.asked, 8) << "it is not asked again when it has said no";
  EXPECT_LT(waiter.longest, milliseconds(200));
  EXPECT_NE(&CurrentWaiter(), &waiter);
  writer.Execute("COMMIT");
  other.Execute("BEGIN IMMEDIATE");
}

}  // namespace
