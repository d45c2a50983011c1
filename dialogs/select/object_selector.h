#pragma once

#include "dialogs/select/selector.h"

namespace QvRefSystem {

/// The selector of an object type whose objects all have one edit dialog; a class of its own for
/// each type. `IsTypeList`: the table is one of types, see SelectorTraits.
template <TObjectType Type, bool IsTypeList = false>
class ObjectSelector : public TformQvRfSelector {
 public:
  /// An owner makes the selector its child; one without is the caller's to destroy.
  ObjectSelector(QWidget* owner, const Chooser& chooser)
      : TformQvRfSelector(owner, chooser, {.type = Type, .typeList = IsTypeList}) {}
};

}  // namespace QvRefSystem
