#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <clocale>
#include <limits>

#include "platform/data/string_tree.h"

namespace QvCommonUtils {
namespace {

using ::testing::ElementsAre;

struct FormatCase {
  const char* format;
  double value;
  const char* text;
};

TEST(ValueToStringTest, FormatsAsPrintfDoes) {
  const FormatCase cases[] = {
      {"%.12lg", 0.0174532925199433, "0.0174532925199"},
      {"%.3lf", -9999, "-9999.000"},
      {"%.3lf", 0.0005, "0.001"},
      {"%.0f", 2.5, "2"},
      {"%g", 1e-7, "1e-07"},
      {"%e", 12345.678, "1.234568e+04"},
      {"%.3e", 0, "0.000e+00"},
      {"%G", 1e-7, "1E-07"},
      {"%8.2f|", 3.14159, "    3.14|"},
      {"%-8.2fm", 3.14159, "3.14    m"},
      {"%+.1f%%", 3.14159, "+3.1%"},
      {"%%%.1f", 3.14159, "%3.1"},
      {"%05.1f", 3.14159, "003.1"},
  };
  for (const FormatCase& row : cases)
    EXPECT_EQ(ValueToString(row.value, row.format), row.text);
  EXPECT_EQ(ValueToString(-std::numeric_limits<double>::max(), "%.999f").size(), 1310U);
}

TEST(ValueToStringTest, OtherFormatsAreRefused) {
  for (const char* format : {"", "text", "%d", "%s", "%", "%.3", "%lf %lf", "%Lf", "%*f", "%.*f",
                             "%n%f", "%f%n", "%.12345f", "%99999f", "%llf"}) {
    EXPECT_THROW(static_cast<void>(ValueToString(1.0, format)), std::invalid_argument) << format;
  }
}

TEST(ValueToStringTest, TheLocaleOfTheProcessDoesNotMatter) {
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8"}) {
    if (std::setlocale(LC_NUMERIC, name) != nullptr) break;
  }
  EXPECT_EQ(ValueToString(0.5), "0.5");
  EXPECT_EQ(ValueToString(0.5, "%.2f"), "0.50");
  EXPECT_EQ(ValueToString(0.5, "%5.2f"), " 0.50");
  double value = 0;
  EXPECT_TRUE(ValueFromString(" 2.5", &value));
  EXPECT_EQ(value, 2.5);
  std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(SplitStringTest, GivesOnePieceMoreThanSeparators) {
  EXPECT_THAT(SplitString("", ';'), ElementsAre(""));
  EXPECT_THAT(SplitString("a", ';'), ElementsAre("a"));
  EXPECT_THAT(SplitString("a;b;;c;", ';'), ElementsAre("a", "b", "", "c", ""));
}

}  // namespace
}  // namespace QvCommonUtils
