#pragma once

#include <QStringList>

#include "platform/data/string_tree.h"

class QTreeWidget;

/// What the host shows of a tree.
namespace QvRefSystem {

/// Shows label, value, id and index of every member; the subtrees are closed.
void ShowTree(const QvCommonUtils::TStringTree& tree, QTreeWidget* view);

/// What the system is and what it is built from, a line each. A tree that holds no whole system
/// gives one line that says what is missing.
[[nodiscard]] QStringList DescribeTree(const QvCommonUtils::TStringTree& tree);

/// WKT 2 of the system, or a line that says why there is none.
[[nodiscard]] QString WktOfTree(const QvCommonUtils::TStringTree& tree);

/// The system's name; "" if the tree has none.
[[nodiscard]] QString NameOfTree(const QvCommonUtils::TStringTree& tree);

}  // namespace QvRefSystem
