#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/storage/file_stream.h"
#include "platform/xini/xini_reader.h"
#include "platform/xini/xini_writer.h"
#include "tests/platform/storage/test_folder.h"

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

TEST(XIniRoundTrip, AnyBytesSurviveAsValueAndAsName) {
  std::vector<std::string> texts(1, std::string(1, '\0'));
  for (const char* text : {"", " ", "  two  blanks  ", "\r\n", "]]>", "<!-- -->", "&amp;", "\\20",
                           "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8C\x8D", "\xEF\xBF\xBE", "\xED\xA0\x80",
                           "\xC0\x80", "\xF4\x90\x80\x80", "\xE2\x82"})
    texts.emplace_back(text);
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
  const platform_tests::TestFolder folder;
  TQvFileStream stream;
  ASSERT_TRUE(stream.Open(folder.Path("f"), QvOpenMode::kCreate));
  TQvXIniWriter writer(&stream);
  ASSERT_TRUE(writer.EnterSection("s"));
  ASSERT_TRUE(writer.WriteInt("n", -2147483647 - 1));
  writer.Finish();
  EXPECT_EQ(platform_tests::ReadFile(folder.Path("f")), "");
  stream.Commit();
  ASSERT_TRUE(stream.Open(folder.Path("f"), QvOpenMode::kRead));
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

TEST(XIniReaderTest, RefusesWhatIsNotSuchADocument) {
  const std::string billionLaughs =
      "<!DOCTYPE xini [<!ENTITY a \"ha\"><!ENTITY b \"&a;&a;&a;\">]>" + Document("<i>&b;</i>");
  const std::string twoRoots = Document("") + Document("");
  const std::string zeroByte = Document("") + std::string("\0rest", 5);
  const std::pair<const char*, std::vector<std::string>> rows[] = {
      {"XML",
       {"", "text", "<xini version=\"1\">", Document("<!DOCTYPE a>"), Document("<i>a"),
        Document("<i>a</s>"), std::string("\xFF\xFE<\0x\0", 6)}},
      {"the root is not one <xini>", {"<other version=\"1\"/>", twoRoots}},
      {"the version is not 1", {"<xini/>", "<xini version=\"2\"/>"}},
      {"a DOCTYPE is not accepted",
       {billionLaughs, "<!DOCTYPE xini SYSTEM \"file:///etc/passwd\">" + Document("")}},
      {"not UTF-8", {"<?xml version=\"1.0\" encoding=\"windows-1251\"?>" + Document("")}},
      {"not in UTF-8", {Document("<i>\xC3</i>")}},
      {"a control character at byte 21", {Document("<i>\x01</i>")}},
      {"a control character at byte 25", {zeroByte}},
      {"unknown element b", {Document("<b/>")}},
      {"an attribute too many", {Document("<i n=\"a\" m=\"b\"/>"), Document("<s x=\"a\"/>")}},
      {"text stands outside the items", {Document("text"), Document("<s>text</s>")}},
      {"an element stands within an item", {Document("<i><s/></i>")}}};
  for (const auto& [message, documents] : rows) {
    for (const std::string& document : documents)
      EXPECT_THAT(ErrorOf(document), HasSubstr(message)) << document;
  }
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

TEST(XIniReaderTest, NestingHasALimit) {
  for (const int depth : {kMaxXIniDepth, kMaxXIniDepth + 1, 100000}) {
    std::string begins;
    std::string ends;
    for (int i = 0; i < depth; ++i) {
      begins += "<s>";
      ends += "</s>";
    }
    const char* answer = depth > kMaxXIniDepth ? "too deep" : "no error";
    EXPECT_THAT(ErrorOf(Document(begins + ends)), HasSubstr(answer)) << depth;
  }
}

TEST(XIniReaderTest, MembersAreTheUnnamedOnesInTheirOrder) {
  TQvXIniReader reader(Document("<i>0</i><i n=\"a\">named</i><i>1</i><s><i>deep</i></s><i>3</i>"));
  EXPECT_EQ(reader.Count(), 4U);
  EXPECT_TRUE(reader.Exists(3));
  EXPECT_FALSE(reader.Exists(4));
  for (const unsigned member : {3U, 0U, 1U})
    EXPECT_EQ(reader.ReadStringE(member), std::to_string(member));
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
  EXPECT_THAT([&reader] { reader.FindFE("missing"); },
              ::testing::ThrowsMessage<XIniError>(HasSubstr("/a/missing: the member is missing")));
}

}  // namespace
}  // namespace QvPlatform
