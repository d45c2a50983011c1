// The text of height tables: what is read, what is refused, and that not one digit is wrong.

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cfloat>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstring>
#include <functional>
#include <random>

#include "platform/data/height_table_numbers.h"
#include "platform/data/height_table_reader.h"
#include "platform/data/height_table_writer.h"

namespace {

using QvRefSystem::FormatHeightTable;
using QvRefSystem::HeightTableInLines;
using QvRefSystem::kHeightHeaderFormat;
using QvRefSystem::kHeightValueFormat;
using QvRefSystem::ParseHeightTable;
using QvRefSystem::TProgressInterface;
using Table = QvCommonUtils::T2DTable<double>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

bool Parses(std::string_view text) {
  Table table;
  return ParseHeightTable(&table, text, nullptr);
}

std::string Formatted(const Table& table, const char* valueFormat = kHeightValueFormat) {
  std::string text;
  return FormatHeightTable(&table, &text, kHeightHeaderFormat, valueFormat, nullptr) ? text : "no";
}

/// A grid of heights as smooth as a geoid.
void Fill(Table* table) {
  for (unsigned i = 0; i < table->CountX; ++i) {
    for (unsigned j = 0; j < table->CountY; ++j)
      table->Set(i, j, std::round(45e3 * std::sin(i * 0.11 + 1) * std::cos(j * 0.07)) / 1000);
  }
}

TEST(HeightTableText, ReadsAGridFromTheNorthDown) {
  const std::string numbers[] = {"54", "55", "36", "38", "1", "1", "1", "2", "3", "4", "5.5", "-6"};
  const struct {
    const char* name;
    std::string before;
    std::string between;
    std::string after;
  } rows[] = {
      {"one line", "", " ", ""},
      {"a line for each number", "", "\n", "\n"},
      {"line ends of two bytes", "", "\r\n", "\r\n"},
      {"runs of all separators", " \t\r\n", "\n \t\r", " \r\n\t"},
      {"a byte order mark", "\xEF\xBB\xBF", " ", "\n"},
      {"a zero byte at the end", "", " ", std::string(1, '\0')},
      {"more than was told", "", " ", " 7 and no number"},
  };
  for (const auto& row : rows) {
    std::string text = row.before;
    for (const std::string& number : numbers)
      text += number + (&number == std::end(numbers) - 1 ? row.after : row.between);
    Table table;
    ASSERT_TRUE(ParseHeightTable(&table, text, nullptr)) << row.name;
    EXPECT_EQ(table.CountX, 3U) << row.name;
    EXPECT_EQ(table.CountY, 2U);
    const double expected[2][3] = {{4, 5.5, -6}, {1, 2, 3}};
    for (unsigned j = 0; j < 2; ++j) {
      for (unsigned i = 0; i < 3; ++i)
        EXPECT_EQ(table.Get(i, j), expected[j][i]) << row.name << " " << i << " " << j;
    }
    EXPECT_EQ(table.MinValue, -6);
    EXPECT_EQ(table.MaxValue, 5.5);
    EXPECT_EQ(table.South(), 54);
    EXPECT_EQ(table.North(), 55);
    EXPECT_EQ(table.West(), 36);
    EXPECT_EQ(table.East(), 38);
    EXPECT_EQ(table.CrcValid, 1);
    const std::uint32_t crc = table.Crc;
    table.Set(0, 0, table.Get(0, 0));
    EXPECT_TRUE(table.ComputeCrc());
    EXPECT_EQ(table.Crc, crc) << row.name;
  }
}

TEST(HeightTableText, CountsNodesByTheNearestCell) {
  Table single;
  ASSERT_TRUE(ParseHeightTable(&single, "54 54 36 36 1 1 17.5", nullptr));
  EXPECT_EQ(single.CountX * single.CountY, 1U);
  EXPECT_EQ(single.Get(0, 0), 17.5);
  Table shortened;
  ASSERT_TRUE(ParseHeightTable(&shortened, "10 11.4 0 1 1 1 1 2 3 4", nullptr));
  EXPECT_EQ(shortened.CountY, 2U);
  EXPECT_EQ(shortened.North(), 11);
  Table dense;
  ASSERT_TRUE(ParseHeightTable(&dense, "0.0 2.0 0.0 2.0 1.0 1.0 1 2 3 4 5 6 7 8 9", nullptr))
      << "no shorter text has as many";
  EXPECT_EQ(dense.Get(2, 0), 9);
  Table rounded;
  ASSERT_TRUE(ParseHeightTable(&rounded, "0 0.999999 0 0 0.333333333 9 1 2 3 4", nullptr));
  EXPECT_EQ(rounded.CountY, 4U);
}

TEST(HeightTableText, IsRefusedBeforeMemoryIsTaken) {
  const char* const texts[] = {
      "", " \n", "54 55 36 38 1", "54 55 36 38 1 x 1 2 3 4 5 6", "55 54 36 38 1 1 1 2 3 4 5 6",
      "54 55 38 36 1 1 1 2 3 4 5 6", "54 55 36 38 0 1 1 2 3 4 5 6", "54 55 36 38 1 -0 1 2 3 4 5 6",
      "54 55 36 38 -1 1 1 2 3 4 5 6", "54 54 36 36 -1 -1 1", "0 1 0 1 -1e-300 1 1 2 3 4",
      "nan 55 36 38 1 1 1 2 3 4 5 6", "54 inf 36 38 1 1 1 2 3 4 5 6", "0 1 0 1 inf inf 1 2 3 4",
      "0 1 0 1 1 nan 1 2 3 4", "-1e308 1e308 0 1 1 1 1 2 3 4", "0 1e999 0 1 1 1 1 2 3 4",
      // Counts: beyond 32 bits on an axis, beyond 64 bits together, beyond what the text can hold.
      "0 4294967296 0 0 1 1 1 2", "0 1 0 1 1e-300 1 1 2", "0 1 0 1 5e-324 1 1 2",
      "0 4294967294 0 4294967294 1 1 1 2", "0 65535 0 65535 1 1 1 2", "0 99999 0 99999 1 1 1 2",
      "0 1 0 1 1 1 1 2 3", "0 2147483647 0 1 1 1 1 2 3 4"};
  for (const char* text : texts) {
    Table table;
    table.Resize(1, 1, 1, 1, 0, 0);
    EXPECT_FALSE(ParseHeightTable(&table, text, nullptr)) << text;
    // The table that stood there was not even cleared.
    EXPECT_EQ(table.CountX, 1U) << text;
  }
  EXPECT_FALSE(ParseHeightTable(nullptr, "54 54 36 36 1 1 17.5", nullptr));
}

TEST(HeightTableText, IsRefusedWithAValueThatIsNone) {
  const std::string head = "0 0 0 1 1 1 1.500 ";
  for (const char* value : {"1.5", "-1.500", "+1.5", "1e2", "1.", ".5", "-.5", "123456789012345678",
                            "0.0000000000000000000000000000000000001", "-0", "00012.5"}) {
    EXPECT_TRUE(Parses(head + value)) << value;
    EXPECT_TRUE(Parses(head + value + "\t\n                    ")) << value;
  }
  for (const char* value :
       {"",   "x",        "1,5",       "1.5x",  "1.5.5", "1-5", "--1",       "+-1",   "++1",
        "-",  "+",        ".",         "-.",    "nan",   "inf", "-infinity", "1e999", "0x10",
        "1e", "1.500\v2", "1\xC2\xA0", "1_000", "1.5-",  "é",   "\x7F",      "1/2",   "1:2"}) {
    EXPECT_FALSE(Parses(head + value)) << value;
    EXPECT_FALSE(Parses(head + value + "\t\n                    ")) << value;
  }
  EXPECT_FALSE(Parses(head + std::string("1\0", 2) + "2                   "));
}

struct Reader {
  double value = -1;
  bool read = false;
};

/// What the standard library reads, and nothing that is not finite.
Reader Standard(std::string_view token) {
  Reader result;
  const auto [stop, error] =
      std::from_chars(token.data(), token.data() + token.size(), result.value);
  result.read =
      error == std::errc() && stop == token.data() + token.size() && std::isfinite(result.value);
  return result;
}

TEST(HeightTableText, ReadsTheNearestDouble) {
  std::mt19937_64 random(20240229);
  std::string text;
  std::vector<double> expected;
  char token[64];
  constexpr std::string_view kLetters = "0123456789012345678901234567890123456789....--+eE";
  for (int turn = 0; turn < 600'000; ++turn) {
    int size = 0;
    const double bits = std::bit_cast<double>(random());
    const int whole = static_cast<int>(random() % 200'000'000) - 100'000'000;
    const int digits = static_cast<int>(random() % 18);
    switch (turn % 6) {
      case 0:
        size = std::snprintf(token, sizeof token, "%.3f", whole / 1e5);
        break;
      case 1:
        size = std::snprintf(token, sizeof token, "%.*f", digits % 9, whole / 1e6);
        break;
      case 2:
        size = std::snprintf(token, sizeof token, "%.*g", digits, bits);
        break;
      case 3:  // half way between two doubles near 2^53, and beside it
        size = std::snprintf(token, sizeof token, "%llu.%03u", (1ULL << 53) + random() % 4096,
                             static_cast<unsigned>(random() % 1000));
        break;
      case 4:
        size = std::snprintf(token, sizeof token, "-0.%0*llu", digits + 1,
                             static_cast<unsigned long long>(random()));
        break;
      default:
        for (size = 0; size < 1 + static_cast<int>(random() % 12); ++size)
          token[size] = kLetters[random() % kLetters.size()];
    }
    const std::string_view view(token, static_cast<std::size_t>(size));
    const Reader standard = Standard(view);
    double value = -1;
    const bool plus = view.front() == '+' && size > 1 && view[1] != '-';
    ASSERT_EQ(QvRefSystem::detail::ReadNumber(view, &value),
              plus ? Standard(view.substr(1)).read : standard.read)
        << view;
    if (!standard.read) continue;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(standard.value))
        << view;
    text.append(view).append(1, " \t\n\r"[random() % 4]);
    if (random() % 50 == 0) text += "\r\n";
    expected.push_back(standard.value);
  }
  // The same tokens as a run, where the fast path takes what it can.
  std::vector<double> values(expected.size());
  QvRefSystem::detail::TokenReader reader(text);
  ASSERT_TRUE(reader.Read(values.data(), values.size()));
  EXPECT_GT(values.size(), 500'000U);
  EXPECT_EQ(std::memcmp(values.data(), expected.data(), values.size() * sizeof(double)), 0);
  double none = 0;
  EXPECT_FALSE(reader.Read(&none, 1));
}

/// Doubles that rounding to three decimals might get wrong.
double Hostile(std::mt19937_64& random, int turn) {
  const auto whole =
      static_cast<double>(static_cast<std::int64_t>(random() % 20'000'000) - 10'000'000);
  switch (turn % 8) {
    case 0:
      return whole / 1000;
    case 1:  // as near to the middle of two thousandths as doubles come, on either side
      return std::nextafter((whole + 0.5) / 1000, random() % 2 == 0 ? kInfinity : -kInfinity);
    case 2:
      return (whole + 0.5) / 1000;
    case 3:  // exact halves of a thousandth: multiples of 1/16 whose fourth decimal is a 5
      return whole / 16;
    case 4:  // about the borders of the digit groups
      return std::nextafter(std::pow(10, static_cast<int>(random() % 12)) - 0.0005,
                            random() % 2 == 0 ? kInfinity : -kInfinity) *
             (random() % 2 == 0 ? 1 : -1);
    case 5:
      return whole * std::exp2(static_cast<int>(random() % 60) - 30);
    case 6:
      return std::ldexp(whole, -1060 + static_cast<int>(random() % 20));
    default:
      for (;;) {
        const double any = std::bit_cast<double>(random());
        if (std::isfinite(any)) return any;
      }
  }
}

TEST(HeightTableText, WritesWhatPrintfWrites) {
  std::mt19937_64 random(7);
  char expected[400];
  char written[QvRefSystem::detail::kThreeDecimalsSpace];
  const double fixed[] = {0.0,     -0.0,   0.0005,    -0.0005,    0.0015,         0.0625,
                          0.1875,  0.9995, 0.99951,   -0.0004999, 999999998.9996, 999999999,
                          5e-324,  1e9,    999.99951, 1e15 + .5,  DBL_MAX,        -DBL_MAX,
                          DBL_MIN, 4e15,   -1e22};
  for (int turn = 0; turn < 1'200'000 + static_cast<int>(std::size(fixed)); ++turn) {
    const double value =
        turn < static_cast<int>(std::size(fixed)) ? fixed[turn] : Hostile(random, turn);
    // The longest numbers take printf long.
    if (std::fabs(value) > 1e30 && turn % 64 > 7) continue;
    const int size = std::snprintf(expected, sizeof expected, "%.3lf", value);
    const char* end = QvRefSystem::detail::WriteThreeDecimals(value, written);
    ASSERT_EQ(std::string_view(written, static_cast<std::size_t>(end - written)),
              std::string_view(expected, static_cast<std::size_t>(size)));
  }
}

TEST(HeightTableText, ComesBackFromManyRowsAndColumns) {
  // Around the widths at which rows are moved in blocks and in bundles.
  for (const auto& [countX, countY] :
       {std::pair(1U, 1U), std::pair(1U, 200U), std::pair(200U, 1U), std::pair(7U, 65U),
        std::pair(8U, 64U), std::pair(9U, 63U), std::pair(4100U, 70U), std::pair(33'000U, 9U)}) {
    Table table;
    table.Resize(countX, countY, 0.25, 0.5, -180, -90);
    Fill(&table);
    const std::string text = Formatted(table);
    Table read;
    ASSERT_TRUE(ParseHeightTable(&read, text, nullptr)) << countX << " by " << countY;
    ASSERT_EQ(read.CountX, countX);
    ASSERT_EQ(read.CountY, countY);
    ASSERT_TRUE(table.ComputeCrc());
    EXPECT_EQ(read.Crc, table.Crc) << countX << " by " << countY;
    EXPECT_EQ(read.MinValue, table.MinValue);
    EXPECT_EQ(read.MaxValue, table.MaxValue);
    EXPECT_EQ(read.Get(countX / 2, countY / 3), table.Get(countX / 2, countY / 3));
    // One line in the place of many, as a text comes out of a tree.
    std::string line = text;
    std::ranges::replace_if(
        line, [](char c) { return c == '\t' || c == '\n'; }, ' ');
    Table ofLine;
    ASSERT_TRUE(ParseHeightTable(&ofLine, line, nullptr));
    EXPECT_EQ(ofLine.Crc, table.Crc);
    EXPECT_EQ(HeightTableInLines(line), text);
  }
}

// The checksum in a tree is that of the lines of the file, so that no token may change.
TEST(HeightTableText, IsLaidInLinesTokenByToken) {
  EXPECT_EQ(HeightTableInLines(" 0 1.0\t0 +1\r\n1 1e0  1.50 2 x 4 5"),
            "0 1.0 0 +1 1 1e0\n1.50\t2\t\nx\t4\t\n5\t");
  EXPECT_EQ(HeightTableInLines("0 0 0 1 1 1 7 8"), "0 0 0 1 1 1\n7\t8\t\n");
  for (const char* text : {"", "0 0 0 1 1", "0 0 0 1 1 1", "0 0 0 1 1 1 7", "0 0 1 0 1 1 7 8"})
    EXPECT_EQ(HeightTableInLines(text), std::nullopt) << text;
}

TEST(HeightTableText, IsWrittenInAnyFormatOfPrintf) {
  Table table;
  table.Resize(2, 1, 1.0 / 3, 1, 36, 54);
  table.Set(0, 0, 0.0625);
  table.Set(1, 0, -1234.5);
  const std::string head = "54 54 36 36.3333333333 1 0.333333333333\n";
  const struct {
    const char* format;
    std::string row;
  } rows[] = {
      {"%.3lf", "0.062\t-1234.500\t\n"},
      {"%.3f", "0.062\t-1234.500\t\n"},
      {"%.0lf", "0\t-1234\t\n"},
      {"%+09.2f", "+00000.06\t-01234.50\t\n"},
      {"%g", "0.0625\t-1234.5\t\n"},
      {"%.17le", "6.25000000000000000e-02\t-1.23450000000000000e+03\t\n"},
      {"%a", "0x1p-4\t-0x1.34ap+10\t\n"},
      {"%%%.1f", "%0.1\t%-1234.5\t\n"},
      {"%600.1f", std::string(597, ' ') + "0.1\t" + std::string(593, ' ') + "-1234.5\t\n"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(Formatted(table, row.format), head + row.row) << row.format;
  for (const char* format : {"", "1", "%", "%%", "%d", "%s", "%n", "%*f", "%.*f", "%f %f", "%Lf",
                             "%.3", "%lf%", "%99999f", "%.99999f", "%hf", "%f%s", "%%%", "%1$f"}) {
    EXPECT_EQ(Formatted(table, format), "no") << format;
    std::string text = "old";
    EXPECT_FALSE(FormatHeightTable(&table, &text, format, kHeightValueFormat, nullptr)) << format;
    EXPECT_EQ(text, "");
  }
}

TEST(HeightTableText, IsNotWrittenIfNobodyCouldReadIt) {
  const std::function<void(Table*)> spoils[] = {
      [](Table* table) { table->Set(0, 0, kNan); },
      [](Table* table) { table->Set(8, 2, kInfinity); },
      [](Table* table) { table->Set(4, 1, -kInfinity); },
      [](Table* table) { table->OriginX = kNan; },
      [](Table* table) { table->CellY = kInfinity; },
      [](Table* table) { table->Clear(); },
  };
  for (const auto& spoil : spoils) {
    Table table;
    table.Resize(9, 3, 1, 1, 36, 54);
    EXPECT_NE(Formatted(table), "no");
    spoil(&table);
    EXPECT_EQ(Formatted(table), "no");
    EXPECT_EQ(Formatted(table, "%g"), "no");
  }
}

TEST(HeightTableText, IsTheSameUnderEveryLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  const char* found = nullptr;
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "ru_RU.UTF-8"}) {
    if (found == nullptr) found = std::setlocale(LC_ALL, name);
  }
  if (found == nullptr) GTEST_SKIP() << "this system has no locale with a comma";
  Table table;
  table.Resize(2, 1, 0.5, 1, 36, 54);
  table.Set(1, 0, -1.5);
  const std::string fast = Formatted(table);
  const std::string any = Formatted(table, "%g");
  const bool read = Parses(fast) && Parses("0 0 0 1 1 1 1.5e0 12345678901234567890.5");
  std::setlocale(LC_ALL, before.c_str());
  EXPECT_EQ(fast, "54 54 36 36.5 1 0.5\n0.000\t-1.500\t\n");
  EXPECT_EQ(any, "54 54 36 36.5 1 0.5\n0\t-1.5\t\n");
  EXPECT_TRUE(read);
}

/// A progress that counts, cancels at a step, or throws there.
struct Course {
  int max = -1;
  int steps = 0;
  int cancelAt = -1;
  int throwAt = -1;
} course;

int CountStep() {
  ++course.steps;
  if (course.steps == course.throwAt) throw std::runtime_error("no more");
  return course.steps == course.cancelAt ? 1 : 0;
}

TEST(HeightTableText, TellsItsCourseAndIsCancelled) {
  Table table;
  table.Resize(3, 5, 1, 1, 36, 54);
  Fill(&table);
  TProgressInterface progress;
  progress.Next = CountStep;
  progress.SetMax = [](int count) { course.max = count; };
  course = {};
  std::string text;
  ASSERT_TRUE(FormatHeightTable(&table, &text, kHeightHeaderFormat, kHeightValueFormat, &progress));
  EXPECT_EQ(course.max, 5);
  EXPECT_EQ(course.steps, 4);
  course = {};
  Table read;
  ASSERT_TRUE(ParseHeightTable(&read, text, &progress));
  EXPECT_EQ(course.max, 15 + 6 + 5);
  EXPECT_EQ(course.steps, course.max);

  for (const int at : {1, 4}) {
    std::string refused;
    course = {.cancelAt = at};
    EXPECT_FALSE(
        FormatHeightTable(&table, &refused, kHeightHeaderFormat, kHeightValueFormat, &progress));
    EXPECT_EQ(course.steps, at);
    EXPECT_EQ(refused, "");
    course = {.throwAt = at};
    EXPECT_FALSE(
        FormatHeightTable(&table, &refused, kHeightHeaderFormat, kHeightValueFormat, &progress));
  }
  for (const int at : {1, 6, 7, 10, 26}) {
    course = {.cancelAt = at};
    EXPECT_FALSE(ParseHeightTable(&read, text, &progress));
    EXPECT_EQ(course.steps, at);
    course = {.throwAt = at};
    EXPECT_FALSE(ParseHeightTable(&read, text, &progress));
  }
  // Each function may be missing.
  for (TProgressInterface partial : {TProgressInterface{}, TProgressInterface{.Next = CountStep},
                                     TProgressInterface{.SetMax = progress.SetMax}}) {
    course = {};
    EXPECT_TRUE(ParseHeightTable(&read, text, &partial));
    EXPECT_TRUE(
        FormatHeightTable(&table, &text, kHeightHeaderFormat, kHeightValueFormat, &partial));
  }
}

}  // namespace
