#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/geocore/system_model.h"

/// Objects of the registry that are equal to objects that came from elsewhere, so that both end up
/// as one record.
namespace QvRefSystem {

/// The registry's ellipsoid of that name if its shape agrees.
[[nodiscard]] std::optional<EllipsoidModel> MatchEllipsoid(const EllipsoidModel& ellipsoid);
/// The registry's prime meridian of that name if its longitude agrees.
[[nodiscard]] std::optional<PrimeMeridianModel> MatchPrimeMeridian(
    const PrimeMeridianModel& meridian);
/// The registry's datum of that name, with its shift, if the shape of its ellipsoid and its prime
/// meridian agree.
[[nodiscard]] std::optional<DatumModel> MatchDatum(const std::string& name,
                                                   const EllipsoidModel& ellipsoid,
                                                   const PrimeMeridianModel& meridian);
/// Codes of the registry's geographic and projected systems of that name.
[[nodiscard]] std::vector<int> SystemsNamed(const std::string& name);

}  // namespace QvRefSystem
