#pragma once

#include <string>

#include "dialogs/edit_base.h"
#include "vertical/height_creation.h"

namespace QvRefSystem {

/// The dialog of height systems. A reference system's dialog owns it and opens it over the plane of
/// that system, in which its heights lie; what was made last is shown again at the next opening.
class TformQvRfVerticalRefSystemEdit final : public TformQvRfEdit {
 public:
  explicit TformQvRfVerticalRefSystemEdit(QWidget* owner);

  /// Called ahead of each opening; without a plane the dialog does not open. `treeText` is the
  /// text of the reference system's tree, `unitKey` the linear unit of its heights. False if there
  /// is no such system, or no unit.
  [[nodiscard]] bool SetPlaneSystem(const std::string& treeText, int unitKey);
  /// Called when the owner starts on a reference system, with key 0 on a new one. False if the
  /// plane of its stored heights cannot be computed.
  [[nodiscard]] bool LoadForReferenceSystem(int refSystemKey);
  /// Whether the stored heights lie in the plane of that system.
  [[nodiscard]] bool IsStoredPlaneSame(const TShellReferenceSystem* system) const;

 protected:
  [[nodiscard]] bool StoreRecord() override;

 private:
  THeightCreation heights_;
};

}  // namespace QvRefSystem
