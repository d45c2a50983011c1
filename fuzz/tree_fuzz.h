#pragma once

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/data/string_tree.h"

namespace QvCommonUtils::fuzz {

/// What both readers promise: a text is refused by TreeFormatError with the tree unchanged, or it
/// reads as a tree that goes through both forms and comes back the same.
template <typename Read>
int CheckReader(const std::uint8_t* data, std::size_t size, const Read& read) {
  TStringTree tree;
  tree.InsertString("name", 1020, 0, "before");
  try {
    read(std::string_view(reinterpret_cast<const char*>(data), size), &tree);
  } catch (const TreeFormatError&) {
    if (tree.Fields.size() != 1 || !tree.Subtrees.empty() || tree.Id != 0) std::abort();
    return 0;
  }
  TStringTree fromXml;
  ReadTreeXml(WriteTreeXml(&tree), &fromXml);
  if (!SameTree(&tree, &fromXml)) std::abort();
  std::string text;
  try {
    text = WriteTreeText(&tree);
  } catch (const TreeFormatError&) {
    // The label of a node holds a line break, which only the XML form can.
    return 0;
  }
  TStringTree fromText;
  ReadTreeText(text, &fromText);
  if (!SameTree(&tree, &fromText)) std::abort();
  return 0;
}

}  // namespace QvCommonUtils::fuzz
