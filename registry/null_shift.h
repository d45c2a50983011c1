#pragma once

#include <string_view>

#include "platform/geocore/system_model.h"

namespace QvRefSystem {

/// The shift of a datum of which no shift to WGS 84 is known: a geocentric translation by nothing,
/// whose name and description say so plainly.
[[nodiscard]] DatumShiftModel MakeNullShift(std::string_view datumName);

}  // namespace QvRefSystem
