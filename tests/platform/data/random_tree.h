#pragma once

#include <random>
#include <string>

#include "platform/data/string_tree.h"

namespace QvCommonUtils::testing {

/// Makes trees of all shapes. The same seed gives the same trees.
class RandomTree {
 public:
  /// Which bytes the labels of nodes may hold: the text form has no way to write a line break.
  enum class NodeLabels { kAnyByte, kNoLineBreak };

  RandomTree(unsigned seed, NodeLabels labels) : engine_(seed), labels_(labels) {}

  /// Fills `tree` with fields and with subtrees of up to `levels` levels. Adds notes too.
  void Fill(TStringTree* tree, int levels) {
    tree->Id = Number(-5, 2000000000);
    tree->Index = Number(-1, 20);
    tree->Label = NodeLabel();
    FillContent(tree, levels);
  }

 private:
  void FillContent(TStringTree* tree, int levels) {
    for (int i = Number(0, 5); i > 0; --i)
      AddField(tree);
    if (Number(0, 3) == 0) tree->InsertString("note", 201001, -1, "5");
    if (levels == 0) return;
    for (int i = Number(0, 3); i > 0; --i) {
      auto subtree = tree->CreateSubtree(Number(-3, 99999), Number(-3, 12), NodeLabel());
      auto* added = static_cast<TStringTree*>(tree->Subtrees.push_back(std::move(subtree)));
      FillContent(added, levels - 1);
    }
  }

  void AddField(TStringTree* tree) {
    const int count = Number(0, 4);
    std::vector<std::string> values;
    for (int i = 0; i < count; ++i)
      values.push_back(Text());
    tree->Fields.push_back(
        tree->CreateField(Number(0, 2000000000), Number(0, 30), values.data(), count, Text()));
  }

  std::string NodeLabel() {
    std::string text = Text();
    if (labels_ == NodeLabels::kNoLineBreak)
      std::erase_if(text, [](char c) { return c == '\n' || c == '\r'; });
    return text;
  }

  /// Words that are awkward for one form or the other, with bytes of all kinds between them.
  std::string Text() {
    static const std::vector<std::string> kPieces = SplitString(
        "| |\t|\r\n|\\|\\n|\\41|&|<s>|]]>|&#10;|(1,2)[3]|\"'|\xEF\xBB\xBF|\xC3\xA4|\xF0\x9F\x8C\x8D"
        "|\xEF\xBF\xBF|\xC3|semi_major_axis_of_the_ellipsoid_in_use|\n",
        '|');
    std::string text;
    for (int i = Number(0, 6); i > 0; --i) {
      text += kPieces[static_cast<std::size_t>(Number(0, static_cast<int>(kPieces.size()) - 1))];
      if (Number(0, 2) == 0) text += static_cast<char>(Number(0, 255));
    }
    return text;
  }

  int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(engine_); }

  std::mt19937 engine_;
  NodeLabels labels_;
};

/// A tree with everything that both forms know: a note too, which neither writes.
inline void FillSample(TStringTree* tree) {
  tree->Label = "reference\tsystem";
  tree->InsertString("na me", 1020, 0, " <a>\tb&\\c\nd\re ");
  const std::string axes[] = {"lat", "", "h"};
  tree->Fields.push_back(tree->CreateField(1025, 0, axes, 3, "a\txis"));
  tree->Fields.push_back(tree->CreateField(1026, 0, nullptr, 0, "none"));
  tree->InsertString("Found ID", 201001, -1, "5");
  EnsureSubtree(tree, 1106, 3, "angular unit");
  EnsureField(FindSubtree(tree, 1106, 3), 5301, 0, "9102", "code");
}

/// Why the document is refused.
inline std::string ErrorOf(void (*read)(std::string_view, TStringTree*),
                           std::string_view document) {
  TStringTree tree;
  try {
    read(document, &tree);
  } catch (const TreeFormatError& error) {
    return error.what();
  }
  return "no error";
}

/// Subtrees (1,0) within one another, `depth` of them below the root.
inline void FillDeep(TStringTree* root, int depth) {
  TStringTree* cursor = root;
  for (int i = 0; i < depth; ++i) {
    EnsureSubtree(cursor, 1, 0, "level");
    if (!EnterSubtree(&cursor, 1, 0)) throw std::logic_error("no subtree");
  }
  EnsureField(cursor, 5301, 0, "9102", "code");
}

/// Address and label of the nodes themselves, which SameTree leaves aside.
inline bool SameHead(const TStringTree& a, const TStringTree& b) {
  return a.Id == b.Id && a.Index == b.Index && a.Label == b.Label;
}

}  // namespace QvCommonUtils::testing
