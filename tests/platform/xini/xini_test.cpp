#include "platform/xini/xini.h"
#include "platform/xini/xini_reader.h"
#include "platform/xini/xini_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace QvPlatform {
namespace {

using ::testing::HasSubstr;

std::string ErrorOf(std::string_view document, bool strict = true) {
  try {
    TQvXIniReader reader(document, strict);
  } catch (const XIniError& error) {
    return error.what();
  }
  return "no error";
}

std::string Document(const std::string& content) {
  return "<xini version=\"1\">" + content + "</xini>";
}

/// The value of the item "a" of the document.
std::string ReadA(std::string_view document, bool strict = true) {
  TQvXIniReader reader(document, strict);
  reader.FindFE("a");
  return reader.ReadStringE();
}

class MemoryStream final : public TQvStream {
 public:
  explicit MemoryStream(std::string bytes = {}) : bytes_(std::move(bytes)) {}
  bool Open(const std::string&, QvOpenMode) override { return true; }
  std::size_t Read(void* buffer, std::size_t size) override {
    size = std::min(size, bytes_.size() - position_);
    std::memcpy(buffer, bytes_.data() + position_, size);
    position_ += size;
    return size;
  }
  void Write(const void* data, std::size_t size) override {
    bytes_.append(static_cast<const char*>(data), size);
  }
  std::uint64_t Size() const override { return bytes_.size(); }
  void Commit() override { isCommitted_ = true; }
  void Close() noexcept override {}
  const std::string& Bytes() const { return bytes_; }
  bool IsCommitted() const { return isCommitted_; }

 private:
  std::string bytes_;
  std::size_t position_ = 0;
  bool isCommitted_ = false;
};

TEST(XIniRoundTrip, AnyBytesSurviveAsValueAndAsName) {
  std::vector<std::string> texts = {"",
                                    " ",
                                    "  two  blanks  ",
                                    "\r\n",
                                    "]]>",
                                    "<!-- -->",
                                    "&amp;",
                                    "\\20",
                                    "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8C\x8D",
                                    "\xEF\xBF\xBE",
                                    "\xED\xA0\x80",
                                    "\xC0\x80",
                                    "\xF4\x90\x80\x80",
                                    "\xE2\x82",
                                    std::string(1, '\0')};
  for (int byte = 0; byte < 256; ++byte)
    texts.push_back("a" + std::string(1, static_cast<char>(byte)) + "b");
  for (const std::string& text : texts) {
    SCOPED_TRACE(::testing::PrintToString(text));
    TQvXIniWriter writer;
    ASSERT_TRUE(writer.WriteString("value", text));
    ASSERT_TRUE(writer.WriteString("n" + text, "named"));
    TQvXIniReader reader(writer.TakeDocument());
    reader.FindFE("value");
    EXPECT_EQ(reader.ReadStringE(), text);
    reader.FindFE("n" + text);
    EXPECT_EQ(reader.ReadStringE(), "named");
  }
}

TEST(XIniRoundTrip, DocumentGoesThroughStreamsThatTheCallerCommits) {
  MemoryStream stream;
  TQvXIniWriter writer(&stream);
  ASSERT_TRUE(writer.EnterSection("s"));
  ASSERT_TRUE(writer.WriteInt("n", -2147483647 - 1));
  EXPECT_EQ(stream.Bytes(), "");
  writer.Finish();
  EXPECT_FALSE(stream.IsCommitted());
  TQvXIniReader reader(&stream);
  reader.FindFE("s");
  reader.EnterSectionE();
  reader.FindFE("n");
  EXPECT_EQ(reader.ReadIntE(), -2147483647 - 1);
}

TEST(XIniWriterTest, CompactModeChangesTheLayoutOnly) {
  const auto write = [](bool compact) {
    TQvXIniWriter writer;
    writer.SetCompact(compact);
    EXPECT_TRUE(writer.EnterSection("s"));
    EXPECT_TRUE(writer.WriteString({}, "v"));
    EXPECT_TRUE(writer.ExitSection());
    return writer.TakeDocument();
  };
  const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  EXPECT_EQ(write(true), declaration + "<xini version=\"1\"><s n=\"s\"><i>v</i></s></xini>\n");
  EXPECT_EQ(write(false), declaration +
                              "<xini version=\"1\">\n\t<s n=\"s\">\n\t\t<i>v</i>\n\t</s>\n"
                              "</xini>\n");
}

TEST(XIniWriterTest, RefusesWhatHasNoPlace) {
  TQvXIniWriter writer;
  EXPECT_FALSE(writer.ExitSection());
  for (int i = 0; i < kMaxXIniDepth; ++i)
    ASSERT_TRUE(writer.EnterSection({}));
  EXPECT_FALSE(writer.EnterSection({}));
  EXPECT_TRUE(writer.WriteString({}, "deepest"));
  const std::string document = writer.TakeDocument();
  EXPECT_FALSE(writer.EnterSection({}));
  EXPECT_FALSE(writer.WriteString({}, ""));
  EXPECT_EQ(ErrorOf(document), "no error");
  EXPECT_THROW(TQvXIniWriter(nullptr, 1, 0), std::invalid_argument);
  EXPECT_THROW(TQvXIniWriter(nullptr, 0, 1), std::invalid_argument);
}

struct RefusedDocument {
  std::string document;
  std::string message;
};

TEST(XIniReaderTest, RefusesWhatIsNotSuchADocument) {
  const std::string billionLaughs =
      "<!DOCTYPE xini [<!ENTITY a \"ha\"><!ENTITY b \"&a;&a;&a;\">]>" + Document("<i>&b;</i>");
  const RefusedDocument cases[] = {
      {"", "XML"},
      {"text", "XML"},
      {"<xini version=\"1\">", "XML"},
      {"<other version=\"1\"/>", "the root is not one <xini>"},
      {Document("") + Document(""), "the root is not one <xini>"},
      {"<xini/>", "the version is not 1"},
      {"<xini version=\"2\"/>", "the version is not 1"},
      {billionLaughs, "a DOCTYPE is not accepted"},
      {"<!DOCTYPE xini SYSTEM \"file:///etc/passwd\">" + Document(""), "DOCTYPE"},
      {Document("<!DOCTYPE a>"), "XML"},
      {"<?xml version=\"1.0\" encoding=\"windows-1251\"?>" + Document(""), "not UTF-8"},
      {Document("<i>\xC3</i>"), "not in UTF-8"},
      {std::string("\xFF\xFE<\0x\0", 6), "XML"},
      {Document("<i>\x01</i>"), "a control character at byte 21"},
      {Document("") + std::string("\0rest", 5), "a control character at byte 25"},
      {Document("<b/>"), "unknown element b"},
      {Document("<i n=\"a\" m=\"b\"/>"), "an attribute too many"},
      {Document("<s x=\"a\"/>"), "an attribute too many"},
      {Document("text"), "text stands outside the items"},
      {Document("<s>text</s>"), "text stands outside the items"},
      {Document("<i><s/></i>"), "an element stands within an item"},
      {Document("<i>a"), "XML"},
      {Document("<i>a</s>"), "XML"},
  };
  for (const RefusedDocument& row : cases)
    EXPECT_THAT(ErrorOf(row.document), HasSubstr(row.message)) << row.document;
}

TEST(XIniReaderTest, ReadsReferencesOfXmlItselfOnly) {
  const auto item = [](const std::string& text) { return Document("<i n=\"a\">" + text + "</i>"); };
  EXPECT_EQ(ReadA(item("&lt;&gt;&amp;&quot;&apos;")), "<>&\"'");
  EXPECT_EQ(ReadA(item("&#65;&#x41;&#xe4;&#x20AC;&#x1F30D;")),
            "AA\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8C\x8D");
  EXPECT_EQ(ReadA(item("<![CDATA[&lt;]]> x")), "&lt;x");
  for (const char* text : {"&nbsp;", "&", "&amp", "&;", "&#;", "&#x;", "&#0;", "&#1;", "&#xD800;",
                           "&#xFFFF;", "&#x110000;", "&#99999999999;", "&#-1;", "&#65 ;"}) {
    EXPECT_THROW(static_cast<void>(ReadA(item(text))), XIniError) << text;
  }
}

TEST(XIniReaderTest, StrictModeRefusesWhatTheOtherPassesOver) {
  const std::string document = Document("stray<b><i n=\"a\">no</i></b><i n=\"a\" x=\"\">\\4g</i>");
  EXPECT_NE(ErrorOf(document), "no error");
  EXPECT_EQ(ReadA(document, false), "\\4g");
  for (const char* text : {"\\", "\\4", "\\4g", "\\n"})
    EXPECT_THROW(static_cast<void>(ReadA(Document(std::string("<i n=\"a\">") + text + "</i>"))),
                 XIniError);
}

TEST(XIniReaderTest, WhiteSpaceRoundATextIsLayout) {
  EXPECT_EQ(ReadA(Document("\n <i n=\"a\">\r\n\t two  words \n</i>\n")), "two  words");
  EXPECT_EQ(ReadA(Document("<i n=\"a\"> \\20x&#32;</i>")), " x ");
}

std::string Nested(int depth) {
  std::string document;
  for (int i = 0; i < depth; ++i)
    document += "<s>";
  for (int i = 0; i < depth; ++i)
    document += "</s>";
  return Document(document);
}

TEST(XIniReaderTest, NestingHasALimit) {
  EXPECT_EQ(ErrorOf(Nested(kMaxXIniDepth)), "no error");
  EXPECT_THAT(ErrorOf(Nested(kMaxXIniDepth + 1)), HasSubstr("too deep"));
  EXPECT_THAT(ErrorOf(Nested(100000)), HasSubstr("too deep"));
}

TEST(XIniReaderTest, MembersAreTheUnnamedOnesInTheirOrder) {
  TQvXIniReader reader(Document("<i>0</i><i n=\"a\">named</i><i>1</i><s><i>deep</i></s><i>3</i>"));
  EXPECT_EQ(reader.Count(), 4U);
  EXPECT_TRUE(reader.Exists(3));
  EXPECT_FALSE(reader.Exists(4));
  EXPECT_EQ(reader.ReadStringE(3), "3");
  EXPECT_EQ(reader.ReadStringE(0), "0");
  EXPECT_EQ(reader.ReadStringE(1), "1");
  reader.EnterSectionE(2);
  EXPECT_EQ(reader.Path(), "/[2]");
  EXPECT_EQ(reader.Count(), 1U);
  EXPECT_FALSE(reader.FindF("a"));
  reader.ExitSectionE();
  EXPECT_EQ(reader.Path(), "/");
  EXPECT_TRUE(reader.FindF("a"));
  EXPECT_THROW(static_cast<void>(reader.ReadStringE(4)), XIniError);
  EXPECT_THROW(static_cast<void>(reader.ReadStringE(2)), XIniError);
  EXPECT_THROW(reader.EnterSectionE(0), XIniError);
  EXPECT_THROW(reader.EnterSectionE(4), XIniError);
  EXPECT_THROW(reader.ExitSectionE(), XIniError);
}

TEST(XIniReaderTest, OperationsWithoutAFoundMemberTellThePlace) {
  TQvXIniReader reader(Document("<s n=\"a\"><i n=\"b\">x</i></s><i n=\"c\"/><i n=\"c\"/>"));
  EXPECT_THROW(static_cast<void>(reader.ReadStringE()), XIniError);
  EXPECT_THROW(static_cast<void>(reader.FindF("c")), XIniError);
  reader.FindFE("a");
  EXPECT_THROW(static_cast<void>(reader.ReadStringE()), XIniError);
  reader.EnterSectionE();
  EXPECT_THROW(reader.EnterSectionE(), XIniError);
  try {
    reader.FindFE("missing");
    ADD_FAILURE() << "found";
  } catch (const XIniError& error) {
    EXPECT_THAT(error.what(), HasSubstr("/a/missing: the member is missing"));
  }
}

}  // namespace
}  // namespace QvPlatform
