#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/data/string_tree.h"

namespace QvCommonUtils {
namespace {

using ::testing::HasSubstr;

std::string ErrorOf(std::string_view document) {
  TStringTree tree;
  try {
    ReadTreeXml(document, &tree);
  } catch (const TreeFormatError& error) {
    return error.what();
  }
  return "no error";
}

std::string Document(const std::string& content) {
  return "<xini version=\"1\">" + content + "</xini>";
}

constexpr const char* kHead = R"(<i n="tag">1</i><i n="idx">0</i><i n="hdr">x</i>)";

void FillSample(TStringTree* tree) {
  tree->Label = "system";
  tree->InsertString("na me", 1020, 0, " <a>\t&\\ ");
  tree->InsertString("Found ID", 201001, -1, "5");
  const std::string axes[] = {"lat", "", "h"};
  tree->Fields.push_back(tree->CreateField(1025, 0, axes, 3, "axis"));
  tree->Fields.push_back(tree->CreateField(1026, 0, nullptr, 0, "none"));
  EnsureSubtree(tree, 1106, 0, "angular unit");
  EnsureField(FindSubtree(tree, 1106, 0), 5301, 0, "9102", "code");
}

TEST(TreeXml, WritesSectionsAndItemsByTheirNames) {
  TStringTree tree;
  FillSample(&tree);
  EXPECT_EQ(WriteTreeXml(&tree),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<xini version="1"><i n="tag">0</i><i n="idx">0</i><i n="hdr">system</i>
	<s n="field"><s><i n="tag">1020</i><i n="idx">0</i><i n="hdr">na me</i><s n="data"><i>\20&lt;a&gt;\09&amp;\5c\20</i></s></s><s><i n="tag">1025</i><i n="idx">0</i><i n="hdr">axis</i><s n="data"><i>lat</i><i></i><i>h</i></s></s><s><i n="tag">1026</i><i n="idx">0</i><i n="hdr">none</i><s n="data"></s></s></s>
	<s n="subtree">
		<s><i n="tag">1106</i><i n="idx">0</i><i n="hdr">angular unit</i>
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
  EXPECT_THAT(ErrorOf(Document(nested)), HasSubstr("more than 256 levels"));
}

struct MalformedTree {
  std::string content;
  std::string message;
};

TEST(TreeXml, MalformedTreesAreRefusedWithTheirPath) {
  const std::string head = kHead;
  const auto inField = [&](const std::string& field) {
    return head + "<s n=\"field\"><s>" + field + "</s></s>";
  };
  const MalformedTree cases[] = {
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
  for (const MalformedTree& row : cases)
    EXPECT_THAT(ErrorOf(Document(row.content)), HasSubstr(row.message)) << row.content;
}

}  // namespace
}  // namespace QvCommonUtils
