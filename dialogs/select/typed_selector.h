#pragma once

#include "dialogs/select/selector.h"

namespace QvRefSystem {

/// Base of the two selectors whose objects have an edit dialog for each TYPE.
class TypedSelector : public TformQvRfSelector {
 public:
  /// `typeObject` is the object type of the types that New lets the user choose from.
  TypedSelector(QWidget* owner, const Chooser& chooser, const SelectorTraits& traits,
                TObjectType typeObject);

 protected:
  [[nodiscard]] TformQvRfEdit* FormOfNew() override { return EditFormOf(TypeOfNew()); }
  [[nodiscard]] TformQvRfEdit* FormOfCurrent() override;
  /// TYPE of a new object; 0 for none.
  [[nodiscard]] virtual int TypeOfNew();
  /// Tells an edit dialog that serves several types which one it is for.
  virtual void TellType(TformQvRfEdit& /*form*/, int /*type*/) {}

 private:
  /// Null for a number that is no type.
  [[nodiscard]] TformQvRfEdit* EditFormOf(int type);

  const TObjectType typeObject_;
};

}  // namespace QvRefSystem
