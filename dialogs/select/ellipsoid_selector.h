#pragma once

#include "dialogs/select/object_selector.h"

namespace QvRefSystem {

/// The selector of ellipsoids, which can be confined to spheres.
class TformQvRfEllipsoidSelector final : public ObjectSelector<TObjectType::kEllipsoid> {
 public:
  using ObjectSelector::ObjectSelector;
  /// Lets the user choose among the spheres alone; the arguments are those of Select.
  bool SelectSpheres(TStringTree* tree, int id, bool hideOwner, int* key, int index);
  /// Over spheres alone, what is made or edited on the way is a sphere.
  bool SelectWhere(const RowFilter& where, const Choice& choice) override;
};

}  // namespace QvRefSystem
