#pragma once

#include <memory>
#include <string_view>

#include "database/data_module.h"
#include "platform/geocore/shell_reference_system.h"

namespace QvRefSystem {

/// The making of heights for one reference system, whose plane they lie in: what they are made
/// from, the grid, and what became of it. The dialog of height systems shows it and drives it.
class THeightCreation {
 public:
  explicit THeightCreation(TdatamoduleQvRfData& data) : data_(data) {}

  /// Takes the plane from the text of a reference system's tree, and the key of the linear unit in
  /// which its heights are. False, with no plane, if there is no such system, or no unit.
  [[nodiscard]] bool SetPlaneSystem(std::string_view treeText, int unitKey);
  /// Forgets what was stored and kept. The plane of a stored reference system that has a height
  /// system of its own is kept in mind; false if it cannot be computed. Key 0: a new system.
  [[nodiscard]] bool LoadForReferenceSystem(int refSystemKey);
  /// Whether the stored heights lie in the plane of that system.
  [[nodiscard]] bool IsStoredPlaneSame(const TShellReferenceSystem* system) const;

  /// The plane; null if there is none.
  [[nodiscard]] TShellReferenceSystem* Target() const { return target_.get(); }

 private:
  TdatamoduleQvRfData& data_;
  std::unique_ptr<TShellReferenceSystem> target_;
  int heightUnitKey_ = 0;
  std::unique_ptr<TShellReferenceSystem> storedTarget_;
};

}  // namespace QvRefSystem
