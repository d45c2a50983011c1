#pragma once

#include "platform/data/string_tree.h"
#include "processors/object_descriptor.h"
#include "processors/record_image.h"

namespace QvRefSystem {

/// What the writing and the reading of a record leave to its processor: members with code of their
/// own, and the objects of other types that stand in subtrees.
class OwnMembers {
 public:
  virtual ~OwnMembers() = default;

  /// Writes a kOwn item of the record into the level `tree`. False ends the writing.
  [[nodiscard]] virtual bool WriteOwnItem(QvCommonUtils::TStringTree* tree, const TreeItem& item,
                                          const RecordView& record) = 0;
  /// Reads a kOwn item. False ends the reading: the tree is not whole.
  [[nodiscard]] virtual bool ReadOwnItem(QvCommonUtils::TStringTree* tree, const TreeItem& item,
                                         RecordImage* image) = 0;
  /// Writes the record of another type with that key as the subtree `id`. False if there is none,
  /// or if it cannot be written.
  [[nodiscard]] virtual bool WriteSubobject(QvCommonUtils::TStringTree* tree, TObjectType object,
                                            int key, int id) = 0;
  /// Stores the subtree (id, 0) with the processor of that type. False if it is missing (an
  /// optional one reads as key 0) or is not whole.
  [[nodiscard]] virtual bool StoreSubobject(QvCommonUtils::TStringTree* tree, const TreeItem& item,
                                            int* key) = 0;
};

}  // namespace QvRefSystem
