#pragma once

#include <string>
#include <string_view>

#include "platform/data/string_tree_node.h"

/// The XML form of a tree.
namespace QvCommonUtils {

/// The XML form as a document. The caller commits the stream.
void WriteTreeXml(const TStringTree* tree, QvPlatform::TQvStream* stream);
/// The same document as a text.
[[nodiscard]] std::string WriteTreeXml(const TStringTree* tree);
/// Replaces what `tree` holds by the document of the stream. Throws TreeFormatError, and what the
/// stream throws, with the tree unchanged.
void ReadTreeXml(QvPlatform::TQvStream* stream, TStringTree* tree);
/// The same of a document as a text.
void ReadTreeXml(std::string_view document, TStringTree* tree);
/// The same of the current section of a reader.
void ReadTreeXml(QvPlatform::TQvXIniReader* reader, TStringTree* tree);

}  // namespace QvCommonUtils
