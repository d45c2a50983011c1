#pragma once

#include <string>

#include "platform/geocore/shell_frames.h"
#include "platform/geocore/system_model.h"

namespace QvRefSystem {

/// PROJ's definition of a map projection alone: from longitude (from the system's own prime
/// meridian) and latitude in radians to easting and northing in metres. Axes that point west or
/// south, their order and their unit are left to the caller; a projection whose method is oriented
/// west or south (Krovak, the south-orientated ones) has its false coordinates negated, so that the
/// caller's sign makes the method's own formula of it.
///
/// Throws GeodesyError for a method that has no computation, and for parameters that PROJ refuses.
[[nodiscard]] std::string ProjectionOperation(const ProjectionModel& projection,
                                              const EllipsoidShape& shape);

/// Whether PROJ's inverse of the method is a short series that misses its own projection by more
/// than 1e-10 degrees: by 1.5 mm for the azimuthal equal area.
[[nodiscard]] bool HasRoughInverse(int method);

/// A parameter by its EPSG code, in radians, metres or unity. Throws GeodesyError if it is missing
/// or no number.
[[nodiscard]] double ProjectionParameterValue(const ProjectionModel& projection, int code);

}  // namespace QvRefSystem
