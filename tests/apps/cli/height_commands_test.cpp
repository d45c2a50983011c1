// Heights at the command line: files in, files and lines out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/apps/cli/command_line_fixture.h"

namespace refframe_tests {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kNad27 = "'name:NAD27 geodetic'";
constexpr const char* kUtm = "'name:NAD27 / UTM 17N'";

class Heights : public CommandLine {
 protected:
  // Three columns from west to east, two rows from the north down.
  Heights() {
    Put("heights.txt",
        "40 41 -82 -81 1 0.5\n-31.500\t-31.250\t-31.000\t\n-30.500\t-30.250\t-30.000\t\n");
  }

  [[nodiscard]] std::string Work(const std::string& command, const std::string& plane,
                                 const std::string& target, const std::string& rest) const {
    return Printed("heights " + command + " DB --source @heights.txt --plane " + plane +
                   " --target " + target + " " + rest);
  }
};

TEST_F(Heights, AreToldAndShown) {
  const std::string info = Printed("heights info @heights.txt");
  EXPECT_EQ(info.substr(0, info.find("CRC")),
            "North: 41\nSouth: 40\nEast: -81\nWest: -82\nCell north-south: 1\nCell east-west: 0.5\n"
            "Nodes north-south: 2\nNodes east-west: 3\nLeast: -31.500\nGreatest: -30.000\n");
  EXPECT_EQ(Say("heights view-as-text @heights.txt").out,
            "\t-82\t-81.5\t-81\n41\t-31.500\t-31.250\t-31.000\n40\t-30.500\t-30.250\t-30.000\n");
  EXPECT_EQ(Say("heights view-as-text @heights.txt --step 2").out,
            "\t-82\t-81\n41\t-31.500\t-31.000\n");
  EXPECT_EQ(Say("heights view-as-text @heights.txt --window 40.5 -50 -81.5 -90").out,
            "\t-82\t-81.5\n40\t-30.500\t-30.250\n");
  EXPECT_THAT(Say("heights view-as-text @heights.txt --window 50 45 1 0").err,
              HasSubstr("no node of the table lies in the window"));
}

TEST_F(Heights, AreInterpolatedOntoADerivedGridOrTheOneThatIsGiven) {
  EXPECT_THAT(Work("interpolate", kNad27, kNad27, "-o @same.txt"),
              AllOf(StartsWith("North: 41\n"), HasSubstr("Least: -31.500\n")));
  EXPECT_EQ(Get("same.txt"), Get("heights.txt"));

  EXPECT_THAT(Work("interpolate", kNad27, kUtm, "-o @plane.txt"),
              HasSubstr("Cell north-south: 100000\nCell east-west: 40000\n"));
  EXPECT_EQ(Say("heights info @plane.txt").status, 0);

  (void)Work("interpolate", kNad27, kNad27, "-o @given.txt --grid 40.5 40.5 -81.5 -81.75 0.1 0.25");
  EXPECT_EQ(Say("heights view-as-text @given.txt").out,
            "\t-81.75\t-81.5\n40.5\t-30.875\t-30.750\n");
}

TEST_F(Heights, AreApproximatedByAConstant) {
  EXPECT_EQ(Work("approximate", kNad27, kNad27, "--errors @errors.txt"),
            "Offset: -30.75 metre\nRMS error: 0.54 metre\nMax error: 0.75 metre\n");
  EXPECT_THAT(Say("heights info @errors.txt").out, HasSubstr("Least: -0.750\nGreatest: 0.750\n"));
}

TEST_F(Heights, RefuseWhatCannotBeDone) {
  Put("words.txt", "a table of words");
  const struct {
    const char* line;
    int status;
    const char* err;
  } rows[] = {
      {"heights", 2, "subcommand"},
      {"heights info", 2, "FILE"},
      {"heights info @missing.txt", 1, "@missing.txt"},
      {"heights info @words.txt", 1, "@words.txt: it does not hold a table of heights"},
      {"heights view-as-text @heights.txt --step 0", 2, "step"},
      {"heights interpolate DB --target 4 -o @out.txt", 2, "either --source"},
      {"heights interpolate DB --source @heights.txt --target 4 -o @out.txt", 2, "go together"},
      {"heights interpolate DB --source @heights.txt --plane 4 --source-system 4 --target 4 -o "
       "@out.txt",
       2, "either --source"},
      {"heights interpolate DB --source @heights.txt --plane 4 --target 4", 2, "output"},
      {"heights interpolate DB --source @heights.txt --plane 99 --target 4 -o @out.txt", 1,
       "there is no reference system \"99\""},
      {"heights interpolate DB --source @heights.txt --plane 4 --target 3 -o @out.txt", 1,
       "does not follow"},
      {"heights interpolate DB --source @heights.txt --plane 4 --target 4 -o @out.txt --grid 1 2 3 "
       "4 5 x",
       1, "no grid can be made of 1 2 3 4 5 x"},
      {"heights interpolate DB --source-system 4 --target 4 -o @out.txt --grid 1 0 1 0 1 1", 1,
       "has no height system"},
      {"heights approximate DB --source-system 4 --target 4", 1, "does not follow"},
  };
  for (const auto& row : rows)
    Expect({row.line, row.status, "", row.err});
}

TEST_F(Heights, ShowTheirProgressToAPerson) {
  const Outcome outcome =
      Say("heights interpolate DB --source @heights.txt --plane 4 --target 4 -o "
          "@same.txt",
          "", true);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.err, AllOf(HasSubstr("Loading geoid undulation data: 100 %"),
                                 HasSubstr("Recalculating geoid undulation data: 1 blocks")));
}

}  // namespace
}  // namespace refframe_tests
