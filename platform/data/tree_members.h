#pragma once

#include <string>
#include <string_view>

#include "platform/data/string_tree.h"
#include "platform/data/tree_ids.h"

/// The operations of a tree's level for members that are known by name. They do what those of
/// string_tree.h do with the member's address and label.
namespace QvRefSystem::TreeIds {

/// Adds the field with its value. False, and nothing changes, if one is there.
inline bool EnsureField(QvCommonUtils::TStringTree* tree, const Item& member,
                        std::string_view value) {
  return QvCommonUtils::EnsureField(tree, member.id, member.index, value, member.label);
}
/// The same at another index than the member's own.
inline bool EnsureField(QvCommonUtils::TStringTree* tree, const Item& member, int index,
                        std::string_view value) {
  return QvCommonUtils::EnsureField(tree, member.id, index, value, member.label);
}
/// Adds the subtree and moves the cursor into it. False, with the cursor unmoved, if one is there.
[[nodiscard]] inline bool AddSubtree(QvCommonUtils::TStringTree** cursor, const Item& member) {
  return QvCommonUtils::EnsureSubtree(*cursor, member.id, member.index, member.label) &&
         QvCommonUtils::EnterSubtree(cursor, member.id, member.index);
}
/// Moves the cursor into the subtree; false and unmoved if there is none.
[[nodiscard]] inline bool EnterSubtree(QvCommonUtils::TStringTree** cursor, const Item& member) {
  return QvCommonUtils::EnterSubtree(cursor, member.id, member.index);
}
/// Gives the number of the field; false, with `out` unchanged, if there is none or it is no
/// integer.
[[nodiscard]] inline bool GetInteger(const QvCommonUtils::TStringTree& tree, const Item& member,
                                     int* out) {
  return tree.GetInteger(member.id, member.index, out);
}
/// Gives the number of the field; false, with `out` unchanged, if there is none or it is no finite
/// number.
[[nodiscard]] inline bool GetDouble(const QvCommonUtils::TStringTree& tree, const Item& member,
                                    double* out) {
  return tree.GetDouble(member.id, member.index, out);
}
/// Gives the text of the field; false, with `out` unchanged, if there is none.
[[nodiscard]] inline bool GetString(const QvCommonUtils::TStringTree& tree, const Item& member,
                                    std::string* out) {
  return tree.GetString(member.id, member.index, out);
}

}  // namespace QvRefSystem::TreeIds
