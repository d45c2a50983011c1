#include "platform/xini/ini_file.h"

#include <gtest/gtest.h>

#include "platform/storage/file_stream.h"
#include "tests/platform/storage/test_folder.h"

namespace QvPlatform {
namespace {

using platform_tests::TestFolder;
using platform_tests::WriteFile;

TQvIniFileManager Ini(const std::string& content) {
  const TestFolder folder;
  WriteFile(folder.Path("f.ini"), content);
  TQvFileStream stream;
  EXPECT_TRUE(stream.Open(folder.Path("f.ini"), QvOpenMode::kRead));
  return TQvIniFileManager(&stream);
}

TEST(IniFile, FindsValuesInTheirSections) {
  const struct {
    const char* what;
    const char* content;
    const char* value;
  } rows[] = {
      {"plain", "[CoordSystem]\nName=a b\n", "a b"},
      {"blanks and line ends of other systems", " [ coordsystem ] \r\n NAME = a b \r\n", "a b"},
      {"a byte order mark", "\xEF\xBB\xBF[CoordSystem]\nName=x", "x"},
      {"the first of two", "[CoordSystem]\nName=x\nName=y", "x"},
      {"another section", "[Other]\nName=x\n[CoordSystem]\nName=y", "y"},
      {"ahead of any section", "Name=x\n[CoordSystem]\n", "(none)"},
      {"remarks", "[CoordSystem]\n;Name=x\n#Name=y\nnonsense\nName=z", "z"},
      {"an equals sign in the value", "[CoordSystem]\nName=a=b", "a=b"},
      {"nothing", "", "(none)"},
      {"a bracket alone", "[\n[CoordSystem]\nName=x", "x"}};
  for (const auto& row : rows)
    EXPECT_EQ(Ini(row.content).ReadString("CoordSystem", "Name").value_or("(none)"), row.value)
        << row.what;
}

TEST(IniFile, ReadsNumbersInAnyLocaleAndElseTheDefault) {
  const std::pair<const char*, double> rows[] = {
      {"4500000.5", 4500000.5}, {"-1e3", -1000}, {"", 7}, {"1,5", 7}, {"12 m", 7}, {"1e999", 7}};
  for (const auto& [text, value] : rows)
    EXPECT_EQ(Ini(std::string("[s]\nx=") + text).ReadDouble("s", "x", 7), value) << text;
}

// The base64 rows are the test vectors of RFC 4648, section 10.
TEST(IniFile, ReadsBytesInHexadecimalAndInBase64) {
  const std::pair<const char*, const char*> good[] = {
      {"666f6F", "foo"}, {"66 6f 6f", "foo"}, {"41ff", "A\xff"},      {"Zg==", "f"},
      {"Zm8=", "fo"},    {"Zm9v", "foo"},     {"Zm9vYmFy", "foobar"}, {"", ""}};
  for (const auto& [text, bytes] : good)
    EXPECT_EQ(Ini(std::string("[s]\nx=") + text).ReadBinary("s", "x"), bytes) << text;
  for (const char* text : {"Zm9", "Zh==", "Zm=v", "=", "666f6", "Zm9v!mFy"})
    EXPECT_EQ(Ini(std::string("[s]\nx=") + text).ReadBinary("s", "x"), std::nullopt) << text;
}

TEST(IniFile, AHugeFileIsRefused) {
  EXPECT_THROW(Ini(std::string(kLargestIniFile + 1, ' ')), StorageError);
  EXPECT_NO_THROW(Ini(std::string(kLargestIniFile, ' ')));
}

}  // namespace
}  // namespace QvPlatform
