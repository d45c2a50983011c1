#pragma once

#include <string>
#include <string_view>

#include "platform/data/string_tree_node.h"

/// The text form of a tree.
namespace QvCommonUtils {

/// The text form, without the zero byte that ends it in a file. The labels of nodes go into it as
/// they are, so one that holds a line feed or a carriage return is refused by TreeFormatError.
[[nodiscard]] std::string WriteTreeText(const TStringTree* tree);
/// Replaces what `tree` holds. `text` may end in the zero byte of a file, begin with a byte order
/// mark and have lines that end in CR LF. Throws TreeFormatError, with the tree unchanged.
void ReadTreeText(std::string_view text, TStringTree* tree);
/// Merges the content of the node that `text` is the text form of into `tree`, as MergeTree does.
/// False, and nothing changes, if it cannot be read.
[[nodiscard]] bool InsertFromString(const std::string& text, TStringTree* tree);

}  // namespace QvCommonUtils
