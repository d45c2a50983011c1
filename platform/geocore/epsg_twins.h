#pragma once

namespace QvRefSystem {

/// Whether the EPSG registry knows both codes as systems of one name, as it does the geodetic
/// systems that it has with and without heights. False for a code that it does not know.
[[nodiscard]] bool AreEpsgTwins(int code, int other);

}  // namespace QvRefSystem
