// The program itself: its exit statuses and its streams.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>

#include "tests/apps/cli/command_line_fixture.h"

namespace refframe_tests {
namespace {

class Program : public CommandLine {
 protected:
  // `redirections` stand behind the words as a shell takes them.
  [[nodiscard]] Outcome Start(const std::string& line, const std::string& redirections = {}) const {
    const std::string command = "'" REFFRAME_PROGRAM "'" + Words(line) + " < /dev/null > '" +
                                Path("out") + "' 2> '" + Path("err") + "' " + redirections;
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Get("out"), Get("err")};
  }
};

TEST_F(Program, ExitsWithItsStatusAndKeepsItsStreamsApart) {
  const struct {
    const char* line;
    int status;
    const char* out;
    const char* err;
  } rows[] = {{"list DB reference-system --search Site", 0,
               "6\tAntenna site\tA system\n1\tSite grid\tA system\n", ""},
              {"info DB ellipsoid name:Bessel", 1, "",
               "refframe: there is no ellipsoid \"name:Bessel\"\n"}};
  for (const auto& row : rows) {
    const Outcome outcome = Start(row.line);
    EXPECT_EQ(outcome.status, row.status) << row.line;
    EXPECT_EQ(outcome.out, row.out) << row.line;
    EXPECT_EQ(outcome.err, row.err) << row.line;
  }
  EXPECT_EQ(Start("--no-such-option").status, 2);
}

TEST_F(Program, DeletesNothingFromAScriptThatDoesNotSayYes) {
  EXPECT_EQ(Start("delete DB reference-system 1").status, 1);
  EXPECT_EQ(CountOf("reference-system"), 6);
  EXPECT_EQ(Start("delete DB reference-system 1 --yes").status, 0);
  EXPECT_EQ(CountOf("reference-system"), 5);
}

TEST_F(Program, FailsWhereItsOutputHasNoRoom) {
  const Outcome outcome = Start("export DB reference-system 5", "> /dev/full");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, testing::HasSubstr("output cannot be written"));
}

}  // namespace
}  // namespace refframe_tests
