#pragma once

#include <span>

#include "platform/data/string_tree.h"
#include "processors/own_members.h"
#include "processors/table_columns.h"

namespace QvRefSystem {

/// Reads the members of a record from one level of a tree, as their rows say, and stores the
/// sub-objects on the way.
class RecordReader {
 public:
  /// Both must outlive this object.
  RecordReader(const TableColumns& columns, OwnMembers& own) : columns_(columns), own_(own) {}

  /// Reads the members turn by turn: all fields come first, so that a tree that is not whole adds
  /// no sub-object. False at the first that is missing or not of its form; what the sub-objects
  /// have added then stays.
  [[nodiscard]] bool ReadItems(QvCommonUtils::TStringTree* tree, std::span<const TreeItem> items,
                               RecordImage* image);
  [[nodiscard]] bool ReadItem(QvCommonUtils::TStringTree* tree, const TreeItem& item,
                              RecordImage* image);
  /// Reads a kField item, or one with a column that its processor treats as such.
  [[nodiscard]] bool ReadField(const QvCommonUtils::TStringTree& tree, const TreeItem& item,
                               RecordImage* image) const;
  /// Stores the subtree of an item and puts the object's key into the image.
  [[nodiscard]] bool ReadSubobject(QvCommonUtils::TStringTree* tree, const TreeItem& item,
                                   RecordImage* image);

 private:
  const TableColumns& columns_;
  OwnMembers& own_;
};

}  // namespace QvRefSystem
