#pragma once

#include "platform/data/string_tree.h"

namespace QvRefSystem {

/// Holds while a tree is written on this thread. Processors write their sub-objects through each
/// other, and all that they write stays where it is until the outermost scope ends.
class WritingScope {
 public:
  WritingScope();
  ~WritingScope();
  WritingScope(const WritingScope&) = delete;
  WritingScope& operator=(const WritingScope&) = delete;
};

/// The subtree that a processor has written last. The units and the datum of a system stand in its
/// tree several times: a copy spares the look-ups.
class WrittenSubtree {
 public:
  /// To be called inside a scope, with the key of the record that the subtree holds.
  void Remember(int key, const QvCommonUtils::TStringTree* subtree);
  /// The subtree if it holds that record and belongs to the tree that is being written now; null
  /// otherwise, and always for key 0.
  [[nodiscard]] const QvCommonUtils::TStringTree* Find(int key) const;

 private:
  unsigned long writing_ = 0;
  int key_ = 0;
  const QvCommonUtils::TStringTree* subtree_ = nullptr;
};

}  // namespace QvRefSystem
