#pragma once

#include <memory>
#include <string>

#include "platform/data/string_tree.h"

namespace refframe_tests {

/// Writes a tree member by member; labels do not matter to a reader.
class TreeBuilder {
 public:
  explicit TreeBuilder(QvCommonUtils::TStringTree* tree) : tree_(tree) {}
  TreeBuilder& Field(int id, const std::string& value, int index = 0) {
    EnsureField(tree_, id, index, value, "field");
    return *this;
  }
  [[nodiscard]] TreeBuilder Sub(int id) const {
    EnsureSubtree(tree_, id, 0, "subtree");
    return TreeBuilder(FindSubtree(tree_, id, 0));
  }

 private:
  QvCommonUtils::TStringTree* tree_;
};

/// Gives a field another value, or makes it.
inline void ReplaceField(QvCommonUtils::TStringTree* tree, int id, const std::string& value,
                         int index = 0) {
  RemoveField(tree, id, index);
  EnsureField(tree, id, index, value, "field");
}

using TreePtr = std::unique_ptr<QvCommonUtils::TStringTree>;

// Each writes one whole object into the tree, with codes where the object can have them.
void MetreTree(TreeBuilder tree);
void DegreeTree(TreeBuilder tree);
void SecondTree(TreeBuilder tree);
void UnityTree(TreeBuilder tree);
void EllipsoidTree(TreeBuilder tree);
void PrimeMeridianTree(TreeBuilder tree);
void TranslationTree(TreeBuilder tree);
void PositionVectorTree(TreeBuilder tree);
void DatumTree(TreeBuilder tree);
void ProjectionTree(TreeBuilder tree);
/// The text of a height file of two by three nodes, and the checksum that belongs to it.
[[nodiscard]] const std::string& HeightText();
[[nodiscard]] int HeightCrc();
/// Height systems with a table (as a tree holds it, on one line), with an offset in metres, and a
/// built-in one, EGM96.
void HeightTableTree(TreeBuilder tree);
void HeightOffsetTree(TreeBuilder tree);
void SystemGeoidTree(TreeBuilder tree);
/// A system of kind 1 to 6, those of 3 to 5 with the GeoTIFF code 26700 + kind; a projected one
/// with the geodetic one as its primary.
void SystemTree(TreeBuilder tree, int kind);

template <typename Writer, typename... Arguments>
[[nodiscard]] TreePtr MakeTree(Writer writer, Arguments... arguments) {
  auto tree = std::make_unique<QvCommonUtils::TStringTree>();
  writer(TreeBuilder(tree.get()), arguments...);
  return tree;
}

}  // namespace refframe_tests
