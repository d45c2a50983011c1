// What holds for both forms in which trees travel.

#include <gtest/gtest.h>

#include "tests/platform/data/random_tree.h"

namespace QvCommonUtils {
namespace {

using testing::FillDeep;
using testing::FillSample;
using testing::RandomTree;
using testing::SameHead;

struct Form {
  const char* name;
  std::string (*write)(const TStringTree*);
  void (*read)(std::string_view, TStringTree*);
  RandomTree::NodeLabels labels;
  /// How much of a document's end may be lost: the line feed behind the root of XML.
  std::size_t spare;
  /// What cannot be read, yet begins well.
  const char* broken;
};

const Form kForms[] = {
    {"text", WriteTreeText, ReadTreeText, RandomTree::NodeLabels::kNoLineBreak, 0,
     "(5,5)x\n(1,0)[1]\ta\tb\n"},
    {"XML", WriteTreeXml, ReadTreeXml, RandomTree::NodeLabels::kAnyByte, 1,
     R"(<xini version="1"><i n="tag">1</i><i n="idx">0</i><i n="hdr">x</i><s n="field"><s></s></s></xini>)"},
};

class TreeForms : public ::testing::TestWithParam<Form> {
 protected:
  // Whether a document is read; then the tree must travel as well.
  static bool Reads(std::string_view document) {
    TStringTree tree;
    try {
      GetParam().read(document, &tree);
    } catch (const TreeFormatError&) {
      return false;
    }
    EXPECT_TRUE(Travels(tree)) << document;
    return true;
  }

  static bool Travels(const TStringTree& tree) {
    TStringTree read;
    GetParam().read(GetParam().write(&tree), &read);
    return SameTree(&tree, &read) && SameHead(tree, read);
  }
};

INSTANTIATE_TEST_SUITE_P(All, TreeForms, ::testing::ValuesIn(kForms),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_P(TreeForms, RandomTreesAndTheDeepestTravel) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    TStringTree tree;
    RandomTree(seed, GetParam().labels).Fill(&tree, 4);
    ASSERT_TRUE(Travels(tree)) << "seed " << seed;
  }
  TStringTree deepest;
  FillDeep(&deepest, kMaxTreeDepth);
  EXPECT_TRUE(Travels(deepest));
}

TEST_P(TreeForms, EveryPrefixIsRefusedAndLeavesTheTreeUnchanged) {
  TStringTree sample;
  FillSample(&sample);
  const std::string document = GetParam().write(&sample);
  for (std::size_t size = 0; size + GetParam().spare < document.size(); ++size)
    EXPECT_FALSE(Reads(document.substr(0, size))) << "prefix of " << size;
  TStringTree tree;
  FillSample(&tree);
  for (const char* broken : {GetParam().broken, "neither"})
    EXPECT_THROW(GetParam().read(broken, &tree), TreeFormatError);
  EXPECT_TRUE(SameTree(&tree, &sample));
  EXPECT_TRUE(SameHead(tree, sample));
}

TEST_P(TreeForms, AnyChangedByteIsRefusedOrReadsAsATree) {
  TStringTree sample;
  FillSample(&sample);
  std::string document = GetParam().write(&sample);
  for (char& byte : document) {
    const char kept = byte;
    for (int value = 0; value < 256; ++value) {
      byte = static_cast<char>(value);
      (void)Reads(document);
    }
    byte = kept;
  }
}

}  // namespace
}  // namespace QvCommonUtils
