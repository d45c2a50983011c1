#pragma once

#include <string>

/// Numbers by which MIF/MID files know the registry's datums and ellipsoids.
namespace QvRefSystem {

/// The MIF/MID datum number of an EPSG datum; "" where there is none, or several for several
/// shifts: such a datum is written with its ellipsoid and its own shift.
[[nodiscard]] std::string MifDatumCode(int epsgDatum);
/// The MIF/MID ellipsoid number of an EPSG ellipsoid; "" where there is none.
[[nodiscard]] std::string MifEllipsoidCode(int epsgEllipsoid);

}  // namespace QvRefSystem
