#include "platform/xini/ini_file.h"

#include <gtest/gtest.h>

namespace QvPlatform {
namespace {

class TTextStream : public TQvStream {
 public:
  explicit TTextStream(std::string text, std::uint64_t size = 0)
      : text_(std::move(text)), size_(size) {}
  bool Open(const std::string&, QvOpenMode) override { return true; }
  std::size_t Read(void* buffer, std::size_t size) override {
    return text_.copy(static_cast<char*>(buffer), size, std::exchange(at_, text_.size()));
  }
  void Write(const void*, std::size_t) override {}
  std::uint64_t Size() const override { return size_ != 0 ? size_ : text_.size(); }
  void Commit() override {}
  void Close() noexcept override {}

 private:
  std::string text_;
  std::uint64_t size_;
  std::size_t at_ = 0;
};

std::string Text(const std::string& content, const char* section = "CoordSystem",
                 const char* name = "Name") {
  TTextStream stream(content);
  return TQvIniFileManager(&stream).ReadString(section, name).value_or("(none)");
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
    EXPECT_EQ(Text(row.content), row.value) << row.what;
}

TEST(IniFile, ReadsNumbersInAnyLocaleAndElseTheDefault) {
  const std::pair<const char*, double> rows[] = {{"4500000.5", 4500000.5},
                                                 {"-1e3", -1000},
                                                 {"", 7},
                                                 {"1,5", 7},
                                                 {"12 m", 7},
                                                 {"nan", 7},
                                                 {"1e999", 7}};
  for (const auto& [text, value] : rows) {
    TTextStream stream(std::string("[s]\nx=") + text);
    EXPECT_EQ(TQvIniFileManager(&stream).ReadDouble("s", "x", 7), value) << text;
  }
}

// The base64 rows are the test vectors of RFC 4648, section 10.
TEST(IniFile, ReadsBytesInHexadecimalAndInBase64) {
  const std::pair<const char*, std::optional<std::string>> rows[] = {
      {"666f6F", "foo"},
      {"66 6f 6f", "foo"},
      {"00ff", std::string("\0\xff", 2)},
      {"Zg==", "f"},
      {"Zm8=", "fo"},
      {"Zm9v", "foo"},
      {"Zm9vYg==", "foob"},
      {"Zm9vYmFy", "foobar"},
      {"Zm9", std::nullopt},
      {"Zh==", std::nullopt},
      {"Zm=v", std::nullopt},
      {"=", std::nullopt},
      {"666f6", std::nullopt},
      {"", ""},
      {"Zm9v!mFy", std::nullopt}};
  for (const auto& [text, bytes] : rows) {
    TTextStream stream(std::string("[s]\nx=") + text);
    EXPECT_EQ(TQvIniFileManager(&stream).ReadBinary("s", "x"), bytes) << text;
  }
}

TEST(IniFile, AHugeFileIsRefused) {
  TTextStream stream("[s]", kLargestIniFile + 1);
  EXPECT_THROW(TQvIniFileManager{&stream}, StorageError);
}

}  // namespace
}  // namespace QvPlatform
