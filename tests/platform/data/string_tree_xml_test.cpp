#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/data/string_tree.h"
#include "tests/platform/data/random_tree.h"

namespace QvCommonUtils {
namespace {

using testing::ErrorOf;
using testing::FillSample;
using ::testing::HasSubstr;

std::string Document(const std::string& content) {
  return "<xini version=\"1\">" + content + "</xini>";
}

constexpr const char* kHead = R"(<i n="tag">1</i><i n="idx">0</i><i n="hdr">x</i>)";

TEST(TreeXml, WritesSectionsAndItemsByTheirNames) {
  TStringTree tree;
  FillSample(&tree);
  EXPECT_EQ(WriteTreeXml(&tree),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<xini version="1"><i n="tag">0</i><i n="idx">0</i><i n="hdr">reference\09system</i>
	<s n="field"><s><i n="tag">1020</i><i n="idx">0</i><i n="hdr">na me</i><s n="data"><i>\20&lt;a&gt;\09b&amp;\5cc\0ad\0de\20</i></s></s><s><i n="tag">1025</i><i n="idx">0</i><i n="hdr">a\09xis</i><s n="data"><i>lat</i><i></i><i>h</i></s></s><s><i n="tag">1026</i><i n="idx">0</i><i n="hdr">none</i><s n="data"></s></s></s>
	<s n="subtree">
		<s><i n="tag">1106</i><i n="idx">3</i><i n="hdr">angular unit</i>
			<s n="field"><s><i n="tag">5301</i><i n="idx">0</i><i n="hdr">code</i><s n="data"><i>9102</i></s></s></s>
		</s>
	</s>
</xini>
)");
}

TEST(TreeXml, OneLevelMoreThanTheDeepestIsRefused) {
  std::string nested = kHead;
  for (int i = 0; i <= kMaxTreeDepth; ++i)
    nested = std::string(kHead) + "<s n=\"subtree\"><s>" + nested + "</s></s>";
  EXPECT_THAT(ErrorOf(ReadTreeXml, Document(nested)), HasSubstr("more than 256 levels"));
}

TEST(TreeXml, MalformedTreesAreRefusedWithTheirPath) {
  const std::string head = kHead;
  const auto inField = [&](const std::string& field) {
    return head + "<s n=\"field\"><s>" + field + "</s></s>";
  };
  const std::pair<std::string, const char*> cases[] = {
      {"", "/tag: the member is missing"},
      {"<i n=\"tag\">1</i>", "/idx: the member is missing"},
      {"<i n=\"tag\">one</i>", "/tag: not a 32-bit integer"},
      {"<i n=\"tag\">2147483648</i>", "/tag: not a 32-bit integer"},
      {"<s n=\"tag\"></s>", "/tag: a section stands in the place of an item"},
      {head + "<i n=\"tag\">2</i>", "/tag: the name stands twice"},
      {head + "<i n=\"field\"></i>", "an item stands in the place of a section"},
      {head + "<s n=\"field\"><i></i></s>", "/field/[0]: an item stands in the place of a section"},
      {inField(""), "/field/[0]/tag: the member is missing"},
      {inField(head), "/field/[0]/data: the member is missing"},
      {inField(head + "<s n=\"data\"><s></s></s>"), "/field/[0]/data/[0]: a section stands"},
      {inField(R"(<i n="tag">1</i><i n="idx">-1</i><i n="hdr">x</i><s n="data"></s>)"),
       "/field/[0]: a field has a negative number"},
      {head + "<s n=\"subtree\"><s></s></s>", "/subtree/[0]/tag: the member is missing"},
      {head + "<s n=\"subtree\"><s>" + inField("") + "</s></s>",
       "/subtree/[0]/field/[0]/tag: the member is missing"},
  };
  for (const auto& [content, message] : cases)
    EXPECT_THAT(ErrorOf(ReadTreeXml, Document(content)), HasSubstr(message)) << content;
}

}  // namespace
}  // namespace QvCommonUtils
