#pragma once

#include <string>
#include <string_view>

namespace QvRefSystem {

/// An angle as degrees, minutes and seconds with the letter of its hemisphere, seconds to five
/// decimals: 0.3 mm on the Earth. The seconds are rounded ahead of the split, so that 60 never
/// shows. `letters` are the one for angles from 0 up and the one for those below, as in "NS".
[[nodiscard]] std::string DegreesMinutesSeconds(double radians, std::string_view letters);

/// Plain decimals that resolve that many metres, for a unit of `metresPerUnit`.
[[nodiscard]] std::string PlainDecimals(double value, double metresPerUnit,
                                        double resolution = 1e-4);

}  // namespace QvRefSystem
