#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "platform/geocore/shell_reference_system.h"

/// What runs in PROJ: projections and the grids of built-in geoids. Its objects belong to one
/// thread, so each thread makes and keeps its own, up to a number; the ones not used for longest
/// go.
namespace QvRefSystem {

struct SystemGeoid;

/// Longitude and latitude in radians to easting and northing in metres by a definition of
/// ProjectionOperation, or back; Third stays. Failed points stay failed.
void Project(const std::string& operation, std::span<TShellPoint> points);
void Unproject(const std::string& operation, std::span<TShellPoint> points);
/// Unproject for a projection whose inverse is a short series in PROJ: two steps of Newton's method
/// on the projection itself bring it to rounding. Four to five times the work.
void UnprojectExactly(const std::string& operation, std::span<TShellPoint> points);

/// Third becomes the undulation in metres at longitude and latitude, in radians from Greenwich, of
/// the geoid's own base system. A point without data fails.
void PutGridUndulations(const SystemGeoid& geoid, std::span<TShellPoint> points);
/// Longitude, latitude and height of WGS 84 to those of the geoid's base system, radians and
/// metres. Throws GeodesyError if PROJ has no way there on this machine.
void MoveToGeoidBase(const SystemGeoid& geoid, std::span<TShellPoint> points);

/// PROJ's words for what is wrong with one point; empty if it can be computed.
[[nodiscard]] std::string WhyNotProjected(const std::string& operation, const TShellPoint& point,
                                          bool inverse);

}  // namespace QvRefSystem
