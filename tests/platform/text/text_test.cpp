#include "platform/text/text.h"

#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <random>
#include <vector>

namespace {

using namespace QvPlatform;

/// Sets the user's locale for one test.
class LocaleScope {
 public:
  explicit LocaleScope(const std::string& name) { SetUserLocale(name); }
  ~LocaleScope() { SetUserLocale("en-US"); }
  LocaleScope(const LocaleScope&) = delete;
  LocaleScope& operator=(const LocaleScope&) = delete;
};

TEST(Trimming, TakesBlanksAndControlCharactersOffBothEndsOnly) {
  EXPECT_EQ(TrimView(" \t\r\n\x01 a b \x1F"), "a b");
  EXPECT_EQ(TrimView(std::string_view("\0x\0", 3)), "x");
  EXPECT_EQ(TrimView(" \t "), "");
  // A no-break space is a character, and the bytes of UTF-8 are no control characters.
  EXPECT_EQ(TrimView("\xC2\xA0"), "\xC2\xA0");
  EXPECT_TRUE(IsBlank(""));
  EXPECT_FALSE(IsBlank(" x "));
}

TEST(UpperCasing, FollowsTheUsersLanguage) {
  const struct {
    const char* locale;
    const char* text;
    const char* upper;
  } rows[] = {{"en-US", "wgs 84 / utm zone 32n", "WGS 84 / UTM ZONE 32N"},
              {"de_DE.UTF-8", "straße äöü", "STRASSE ÄÖÜ"},
              {"tr-TR", "istanbul ı", "İSTANBUL I"},
              {"tr_TR.UTF-8", "istanbul", "İSTANBUL"},
              {"az_AZ", "bakı i", "BAKI İ"},
              {"el_GR", "ελλάς", "ΕΛΛΑΣ"},
              {"ru_RU", "пулково", "ПУЛКОВО"},
              {"C", "abc é", "ABC É"},
              {"en-US", "a\xFFz", "A\xEF\xBF\xBDZ"},
              {"en-US", "é\xC3", "É\xEF\xBF\xBD"}};
  for (const auto& row : rows) {
    const LocaleScope locale(row.locale);
    EXPECT_EQ(UpperCase(row.text), row.upper) << row.locale;
  }
}

TEST(UpperCasing, GrowsWithTheResult) {
  std::string text;
  std::string upper;
  for (int i = 0; i < 5000; ++i) {
    text += "ΐ";  // One letter, whose upper case is three.
    upper += "\u0399\u0308\u0301";
  }
  EXPECT_EQ(UpperCase(text), upper);
}

TEST(FoldedNames, AreEqualWhateverTheirCaseAndTheBlanksAroundThem) {
  EXPECT_EQ(FoldName("  Zone  1 krüger\t"), "ZONE  1 KRÜGER");
}

TEST(Collation, SortsAsReadersOfTheLanguageDo) {
  const LocaleScope locale("sv-SE");
  EXPECT_LT(CollationKey("a"), CollationKey("B"));
  EXPECT_LT(CollationKey("B"), CollationKey("c"));
  // Swedish has its own letters at the end, German sorts them with their base letters.
  EXPECT_LT(CollationKey("zebra"), CollationKey("ärta"));
  const unsigned version = UserLocaleVersion();
  const LocaleScope german("de-DE");
  EXPECT_NE(UserLocaleVersion(), version);
  EXPECT_LT(CollationKey("ärta"), CollationKey("zebra"));
}

TEST(Collation, OfNoLanguageIsThatOfPeopleAndHasNoLimitOfLength) {
  const LocaleScope locale("POSIX");
  EXPECT_LT(CollationKey("apple"), CollationKey("Banana"));
  const std::string text(100000, 'x');
  EXPECT_LT(CollationKey(text), CollationKey(text + "a"));
}

TEST(NumberTexts, AreTheShortestInTheirNotation) {
  for (const char* text : {"6378137", "100000", "0.9996", "0.0001", "0.0000001", "9.9e-08", "1e+16",
                           "-0.1", "0", "298.257223563", "9007199254740992"}) {
    double value = 0;
    EXPECT_TRUE(TextToDouble(text, &value));
    EXPECT_EQ(DoubleToText(value), text);
  }
  EXPECT_EQ(DoubleToText(-INFINITY) + DoubleToText(INFINITY) + DoubleToText(NAN), "-infinfnan");
}

TEST(NumberTexts, ReadBackAsTheSameDouble) {
  std::mt19937_64 random(20240131);
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t bits = random();
    const auto value = std::bit_cast<double>(bits);
    if (!std::isfinite(value)) continue;
    double back = 0;
    ASSERT_TRUE(TextToDouble(DoubleToText(value), &back)) << DoubleToText(value);
    ASSERT_EQ(back, value);
  }
}

TEST(ReadingNumbers, TakesTheDecimalSeparatorOfTheUserAndNoOther) {
  const struct {
    const char* locale;
    const char* separator;
    const char* text;
    double value;  // 0 if refused
    const char* written;
  } rows[] = {{"en-US", ".", "-1.25", -1.25, "-1.25"},
              {"en-US", ".", "1,25", 0, ""},
              {"en-US", ".", "1,000.5", 0, ""},
              {"de-DE", ",", "1,25", 1.25, "1,25"},
              {"de-DE", ",", "1.25", 0, ""},
              {"de-DE", ",", "1.000,5", 0, ""},
              {"de-DE", ",", "1,2,5", 0, ""},
              {"C", ".", "2.5e-9", 2.5e-9, "2.5e-09"},
              {"de-DE", ",", "2,5e-9", 2.5e-9, "2,5e-09"}};
  for (const auto& row : rows) {
    const LocaleScope locale(row.locale);
    EXPECT_EQ(DecimalSeparator(), row.separator);
    double value = 0;
    EXPECT_EQ(UserTextToDouble(row.text, &value), row.value != 0) << row.locale << row.text;
    EXPECT_EQ(value, row.value) << row.locale << " " << row.text;
    if (row.value != 0) {
      EXPECT_EQ(DoubleToUserText(value), row.written);
    }
  }
}

TEST(ReadingNumbers, TakesOneSignAndBlanksAroundAndElseLeavesTheResultAlone) {
  double value = 0;
  EXPECT_TRUE(TextToDouble(" +1.5e3\t", &value));
  EXPECT_EQ(value, 1500);
  EXPECT_TRUE(TextToDouble(".5", &value));
  EXPECT_EQ(value, 0.5);
  for (const char* text : {"", " ", "+", "-", "+-1", "--1", "inf", "nan", "1e400", "-1e999",
                           "1e-400", "1,5", "1.5x", "1 2", "0x10", "١"})
    EXPECT_FALSE(TextToDouble(text, &value)) << text;
  EXPECT_EQ(value, 0.5);
  int integer = 0;
  EXPECT_TRUE(TextToInteger(" +2147483647 ", &integer));
  for (const char* text : {"", "2147483648", "-2147483649", "1.0", "+-1", "1e3"})
    EXPECT_FALSE(TextToInteger(text, &integer)) << text;
  EXPECT_EQ(integer, 2147483647);
  std::int64_t wide = 0;
  EXPECT_TRUE(TextToInteger64("-9223372036854775808", &wide));
  EXPECT_FALSE(TextToInteger64("9223372036854775808", &wide));
}

TEST(Numbers, DoNotFollowTheProcessLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  bool found = false;
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "ru_RU.UTF-8"}) {
    found = found || std::setlocale(LC_ALL, name) != nullptr;
  }
  if (!found) GTEST_SKIP() << "no locale with a decimal comma is installed";
  double value = 0;
  const bool read = TextToDouble("1.5", &value);
  const std::string text = DoubleToText(2.5);
  std::setlocale(LC_ALL, before.c_str());
  EXPECT_TRUE(read);
  EXPECT_EQ(value, 1.5);
  EXPECT_EQ(text, "2.5");
}

TEST(Escapes, AreUndoneByDecoding) {
  const std::string text = "a\tb\nc\rd\\e\\t";
  EXPECT_EQ(Encode(text), "a\\tb\\nc\\rd\\\\e\\\\t");
  std::mt19937 random(7);
  const std::string letters = "tnr\\\t\n\r x";
  for (int i = 0; i < 2000; ++i) {
    std::string any;
    for (auto n = random() % 12; n > 0; --n)
      any += letters[random() % letters.size()];
    ASSERT_EQ(Decode(Encode(any)), any);
    ASSERT_EQ(Encode(any).find_first_of("\t\n\r"), std::string::npos);
  }
}

TEST(Escapes, ThatAreUnknownOrCutStandForThemselves) {
  EXPECT_EQ(Decode("\\x\\"), "\\x\\");
  EXPECT_EQ(Decode("\\\\t"), "\\t");
}

TEST(Utf8, IsToldFromOtherBytes) {
  EXPECT_TRUE(IsUtf8("plain"));
  EXPECT_TRUE(IsUtf8("Ω é 𝄞"));
  // Cut, overlong, surrogate, beyond the last character, and a Latin-1 letter.
  for (const char* bytes : {"\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "Gr\374ger"}) {
    EXPECT_FALSE(IsUtf8(bytes)) << bytes;
  }
}

TEST(Moments, CountDaysOfLocalTime) {
  const double now = CurrentMoment();
  const std::time_t whole = std::time(nullptr);
  std::tm local{};
  localtime_r(&whole, &local);
  const double ofDay = (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec;
  // 2020-01-01 is day 43831 of the count.
  EXPECT_GT(now, 43831);
  EXPECT_NEAR(std::fmod(now, 1.0) * 86400, ofDay, 3);
}

}  // namespace
