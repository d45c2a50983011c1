// Points in, points out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/geocore/point_lines.h"
#include "tests/apps/cli/command_line_fixture.h"

namespace refframe_tests {
namespace {

using testing::HasSubstr;

// The systems of the fixture: 4 is geodetic on NAD27, 5 the UTM zone 17 on it, 1 a site grid.
class Transformation : public CommandLine {};

TEST_F(Transformation, AnswersEachLineByOne) {
  const Outcome there =
      Say("transform DB 4 name:'NAD27 geodetic'", "# points\n 43.5 -81 12.5\r\n\n43.5\t-81\n");
  EXPECT_EQ(there.out,
            "# points\n43.5000000000000 -81.0000000000000 12.5000000\n\n"
            "43.5000000000000 -81.0000000000000\n");
  EXPECT_EQ(there.status, 0);
}

TEST_F(Transformation, SaysWhichPointsFailAndWhy) {
  const Outcome outcome =
      Say("transform DB 4 5", "91 -81\n43.5 east\n43.5\n1 2 3 4\n0 -81 1\n1e999 2\n");
  EXPECT_EQ(outcome.out,
            "* the latitude is beyond a pole\n* not a number: east\n* fewer than two numbers\n"
            "* more than three numbers\n500000.0000000 0.0000000 1.0000000\n"
            "* not a number: 1e999\n");
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(Transformation, WritesTheNotationOfTheTarget) {
  const Outcome outcome = Say("transform DB 5 4 --show-notation", "500000 0 2\n");
  EXPECT_EQ(outcome.out, "0\u00B000'00.00000\"N 81\u00B000'00.00000\"W 2.0000\n");
}

TEST_F(Transformation, MovesMorePointsThanABlockHolds) {
  std::string lines;
  for (int i = 0; i < 20000; ++i)
    lines += "0 -81\n";
  const Outcome outcome = Say("transform DB 4 5", lines);
  EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 20000);
  EXPECT_EQ(outcome.out.find("500000.0000000 0.0000000\n", outcome.out.size() - 25),
            outcome.out.size() - 25);
  EXPECT_EQ(Say("transform DB 4 5 --line-by-line", lines).out, outcome.out);
}

TEST_F(Transformation, RefusesSystemsThatDoNotMeet) {
  const Outcome outcome = Say("transform DB 4 1", "1 2\n");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err, HasSubstr("a local system meets only its equals"));
  EXPECT_EQ(Say("transform DB 4", "").status, 2);
  EXPECT_THAT(Say("transform DB 4 epsg:1", "").err, HasSubstr("epsg:1"));
}

TEST_F(Transformation, ListsTheGeoidsOfTheMachine) {
  EXPECT_THAT(Printed("geoids"), HasSubstr("5773\tEGM96 height\n"));
}

}  // namespace
}  // namespace refframe_tests
