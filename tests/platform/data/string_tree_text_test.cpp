#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "platform/data/string_tree.h"
#include "tests/platform/data/random_tree.h"

namespace QvCommonUtils {
namespace {

using testing::ErrorOf;
using testing::FillDeep;
using testing::FillSample;
using ::testing::HasSubstr;
using testing::SameHead;

constexpr std::string_view kSampleText =
    "(0,0)reference\tsystem\n"
    "(1020,0)[1]\tna me\t <a>\\tb&\\\\c\\nd\\re \n"
    "(1025,0)[3]\ta\\txis\tlat\t\th\n"
    "(1026,0)[0]\tnone\n"
    "\t(1106,3)angular unit\n"
    "\t(5301,0)[1]\tcode\t9102\n"
    "\t\n"
    "\n";

TEST(TreeText, WritesTheFormByteForByte) {
  TStringTree tree;
  FillSample(&tree);
  EXPECT_EQ(WriteTreeText(&tree), kSampleText);
}

TEST(TreeText, ReadsWhatItWritesAndWhatEditorsDoToAFile) {
  TStringTree tree;
  FillSample(&tree);
  std::string crlf = "\xEF\xBB\xBF";
  for (const char c : kSampleText)
    crlf += c == '\n' ? "\r\n" : std::string(1, c);
  std::string trimmed(kSampleText);
  trimmed.replace(trimmed.find("\n\t\n"), 3, "\n\n");
  const std::string zeroEnded = std::string(kSampleText) + '\0';
  for (const std::string& text :
       {std::string(kSampleText), crlf, crlf + '\0', trimmed, zeroEnded}) {
    TStringTree read;
    ReadTreeText(text, &read);
    EXPECT_TRUE(SameTree(&tree, &read)) << text;
    EXPECT_TRUE(SameHead(tree, read)) << text;
    EXPECT_EQ(FindField(&read, 201001, -1), nullptr);
    EXPECT_EQ(FindSubtree(&read, 1106, 3)->Parent, &read);
  }
}

TEST(TreeText, ReadsANodeThatWasWrittenDeeper) {
  TStringTree read;
  ReadTreeText("\t\t(7,1)unit\n\t\t(1,0)[1]\tcode\t5\n\t\t\t(8,0)\n\t\t\t\n\t\t\n", &read);
  EXPECT_EQ(read.Id, 7);
  EXPECT_EQ(read.Fields.size(), 1U);
  ASSERT_EQ(read.Subtrees.size(), 1U);
  EXPECT_EQ(read.Subtrees[0]->Id, 8);
}

TEST(TreeText, LabelOfANodeWithALineBreakIsRefused) {
  for (const char* label : {"two\nlines", "ends\r"}) {
    TStringTree tree;
    EnsureSubtree(&tree, 12, 3, label);
    try {
      static_cast<void>(WriteTreeText(&tree));
      ADD_FAILURE() << "written";
    } catch (const TreeFormatError& error) {
      EXPECT_THAT(error.what(), HasSubstr("(12,3)"));
    }
  }
}

TEST(TreeText, MalformedTextsAreRefusedWithTheirLine) {
  // One level more than the deepest, and else well formed.
  std::string deeper = "(0,0)\n";
  for (std::size_t i = 1; i <= kMaxTreeDepth + 1U; ++i)
    deeper += std::string(i, '\t') + "(1,0)\n";
  for (std::size_t i = kMaxTreeDepth + 1U; i + 1 > 0; --i)
    deeper += std::string(i, '\t') + "\n";
  const std::pair<std::string, const char*> cases[] = {
      {deeper, "line 258: the text is too deep"},
      {"", "line 1: the text ends too early"},
      {std::string(1, '\0'), "line 1: \"(\" is missing"},
      {"label\n\n", "line 1: \"(\" is missing"},
      {"(1,2", "line 1: the text ends too early"},
      {"(1,2)x", "line 1: the text ends within a line"},
      {"(1,2)x\n", "line 2: a closing line is missing"},
      {"(1;2)x\n\n", "line 1: \",\" is missing"},
      {"(1,2)x\ry\n\n", "line 1: the label of a subtree has a line break"},
      {"( 1,2)x\n\n", "line 1: a number is missing"},
      {"(+1,2)x\n\n", "line 1: a number is missing"},
      {"(1,)x\n\n", "line 1: a number is missing"},
      {"(2147483648,0)x\n\n", "line 1: a number exceeds 32 bits"},
      {"(0,-2147483649)x\n\n", "line 1: a number exceeds 32 bits"},
      {"(0,0)x\n(1,0)[99999999999]\ta\tb\n\n", "line 2: a number exceeds 32 bits"},
      {"(0,0)x\n(1,0)[2000000000]\ta\tb\n\n", "line 2: a field claims 2000000000 values"},
      {"(0,0)x\n(1,0)[2]\ta\tb\n\n", "line 2: a field claims 2 values, and its line has 1"},
      {"(0,0)x\n(1,0)[0]\ta\tb\n\n", "line 2: a field claims 0 values, and its line has 1"},
      {"(0,0)x\n(1,0)[1]\ta\tb\tc\n\n", "line 2: a field claims 1 values, and its line has 2"},
      {"(0,0)x\n(1,0)[1]\ta\n\n", "line 2: a field claims 1 values, and its line has 0"},
      {"(0,0)x\n(1,0)[-1]\ta\n\n", "line 2: a field has a negative number"},
      {"(0,0)x\n(-1,0)[0]\ta\n\n", "line 2: a field has a negative number"},
      {"(0,0)x\n(1,-1)[0]\ta\n\n", "line 2: a field has a negative number"},
      {"(0,0)x\n(1,0)\ta\tb\n\n", "line 2: \"[\" is missing"},
      {"(0,0)x\n(1,0)[1\ta\tb\n\n", "line 2: \"]\" is missing"},
      {"(0,0)x\n(1,0)[1]a\tb\n\n", "is missing"},
      {"(0,0)x\n(1,0)[1]\ta\tb", "line 2: the text ends within a line"},
      {"(0,0)x\n(1,0)[1]\ta\tb\n", "line 3: a closing line is missing"},
      {"(0,0)x\n\t(1,0)y\n\n", "line 4: a closing line is missing"},
      {"(0,0)x\n\t\t(1,0)y\n\t\t\n\n", "line 2: a line stands too deep"},
      {"(0,0)x\n\t(1,0)y\n(1,0)[0]\ta\n\t\n\n", "line 3: a field stands at the depth of another"},
      {"(0,0)x\n\t(1,0)y\n\t\n\nrest", "line 5: something stands behind the end"},
      {"(0,0)x\n\n\n", "line 3: something stands behind the end"},
      {std::string("(0,0)x\n\n\0\0", 10), "line 3: something stands behind the end"},
      {std::string("(0,0)x\n\0\n", 9), "line 2: \"(\" is missing"},
      {std::string(257, '\t') + "(0,0)x\n", "line 1: the text is too deep"},
      {std::string(100000, '\t'), "line 1: the text is too deep"},
  };
  for (const auto& [text, message] : cases)
    EXPECT_THAT(ErrorOf(ReadTreeText, text), HasSubstr(message));
}

TEST(TreeText, DepthCountsFromTheRootOfTheTreeThatTakesIt) {
  TStringTree deep;
  FillDeep(&deep, kMaxTreeDepth);
  const std::string text = WriteTreeText(&deep);
  TStringTree root;
  EnsureSubtree(&root, 1, 0, "");
  TStringTree* child = FindSubtree(&root, 1, 0);
  EXPECT_THROW(ReadTreeText(text, child), TreeFormatError);
  EXPECT_FALSE(InsertFromString(text, child));
  EXPECT_TRUE(InsertFromString(text, &root));
}

TEST(TreeText, LargeValueTravels) {
  std::string value;
  while (value.size() < (4U << 20))
    value += "45.123\t46.001\r\n-9999.000\n";
  TStringTree tree;
  tree.InsertString("table", 1530, 0, value);
  TStringTree read;
  ReadTreeText(WriteTreeText(&tree), &read);
  EXPECT_EQ(read.Fields[0]->Values[0], value);
}

TEST(FieldText, IsTheLineOfTheFormAtItsPosition) {
  TStringTree tree;
  tree.InsertInteger("code", 5301, 0, 9102);
  const auto& field = *tree.Fields[0];
  const std::string line = "\t(5301,0)[1]\tcode\t9102\n";
  EXPECT_EQ(field.WriteText(nullptr, 0, 1), static_cast<int>(line.size()));
  std::string buffer(line.size() + 4, '.');
  EXPECT_EQ(field.WriteText(buffer.data(), 2, 1), static_cast<int>(line.size()));
  EXPECT_EQ(buffer, ".." + line + "..");
}

TEST(FieldText, CountIsTheNumberOfBytesForAllNumbersAndBytes) {
  constexpr int kBiggest = std::numeric_limits<int>::max();
  std::string bytes;
  for (int i = 0; i < 256; ++i)
    bytes += static_cast<char>(i);
  for (const int id :
       {0, 1, 9, 10, 99, 100, 1023, 99999, 100000, 999999999, 1000000000, kBiggest}) {
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
      TStringTree tree;
      tree.InsertString(bytes.substr(size / 2, size), id, id, bytes.substr(0, size));
      const int count = tree.Fields[0]->WriteText(nullptr, 0, 2);
      std::string buffer(static_cast<std::size_t>(count), '.');
      ASSERT_EQ(tree.Fields[0]->WriteText(buffer.data(), 0, 2), count);
      ASSERT_EQ(buffer.substr(0, 4), "\t\t(" + std::to_string(id).substr(0, 1));
      ASSERT_EQ(buffer.back(), '\n');
      ASSERT_EQ(std::count(buffer.begin(), buffer.end(), '\n'), 1);
    }
  }
}

/// A field of another kind: its text has nothing to do with what it keeps.
class TPictureField final : public TDataField<std::string> {
 public:
  TPictureField() : TDataField(7, 0, 2, "picture") {}
  int WriteValueText(int valueIndex, char* buffer, int position) const override {
    const std::string text(static_cast<std::size_t>(100 + valueIndex), 'x');
    if (buffer != nullptr) text.copy(buffer + position, text.size());
    return static_cast<int>(text.size());
  }
};

TEST(FieldText, IsThatOfTheFieldsOwnKind) {
  TStringTree tree;
  tree.Fields.push_back(std::make_unique<TPictureField>());
  EXPECT_EQ(WriteTreeText(&tree), "(0,0)\n(7,0)[2]\tpicture\t" + std::string(100, 'x') + "\t" +
                                      std::string(101, 'x') + "\n\n");
}

TEST(FieldText, NotesHaveNone) {
  TStringTree tree;
  tree.InsertString("id", -1, 0, "v");
  tree.InsertString("index", 1, -1, "v");
  tree.Fields.push_back(tree.CreateField(1, 0, nullptr, -1, "count"));
  for (const auto& field : tree.Fields)
    EXPECT_EQ(field->WriteText(nullptr, 0, 3), 0);
  EXPECT_EQ(WriteTreeText(&tree), "(0,0)\n\n");
}

TEST(FieldText, ValuesOutsideTheFieldAreNotTouched) {
  TStringTree tree;
  tree.InsertString("label", 1, 0, "v");
  auto& field = *tree.Fields[0];
  for (const int outside : {-1, 1, 1000000}) {
    field.SetValueText("x", outside);
    field.SetValueFromText("x", 1, outside);
    EXPECT_EQ(field.GetValueText(outside), "");
    EXPECT_EQ(field.WriteValueText(outside, nullptr, 0), 0);
  }
  field.SetValueFromText("a\\tb....", 4, 0);
  EXPECT_EQ(field.GetValueText(0), "a\tb");
}

TEST(InsertFromStringTest, MergesTheContentOfTheNode) {
  TStringTree snapshot;
  EnsureSubtree(&snapshot, 1106, 0, "angular unit");
  EnsureField(FindSubtree(&snapshot, 1106, 0), 5301, 0, "9102", "code");
  TStringTree tree;
  tree.Id = 4;
  tree.InsertString("name", 1020, 0, "kept");
  ASSERT_TRUE(InsertFromString(WriteTreeText(&snapshot), &tree));
  EXPECT_EQ(tree.Id, 4);
  EXPECT_EQ(tree.Fields.size(), 1U);
  EXPECT_NE(FindField(FindSubtree(&tree, 1106, 0), 5301, 0), nullptr);
  EXPECT_EQ(FindSubtree(&tree, 1106, 0)->Parent, &tree);
  EXPECT_FALSE(InsertFromString("", &tree));
  EXPECT_FALSE(InsertFromString("(0,0)\n(1,0)[1]\ta\tb\n", &tree));
  EXPECT_EQ(tree.Fields.size(), 1U);
}

}  // namespace
}  // namespace QvCommonUtils
