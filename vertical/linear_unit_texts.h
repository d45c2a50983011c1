#pragma once

#include <optional>
#include <string>

#include "database/data_module.h"

namespace QvRefSystem {

/// A linear unit as it is shown.
struct UnitTexts {
  /// NAME of the unit's record.
  std::string Name;
  /// ABBREVIATION of the unit's record.
  std::string Abbreviation;

  /// Both, as in "metre (m)".
  [[nodiscard]] std::string Label() const { return Name + " (" + Abbreviation + ")"; }
};

/// The texts of the unit of that key; nothing if there is none, and for key 0. A filter of the
/// table does not hide the unit, and no cursor moves.
[[nodiscard]] std::optional<UnitTexts> LinearUnitTexts(TdatamoduleQvRfData& data, int key);

}  // namespace QvRefSystem
