#pragma once

#include <string>

#include "platform/geocore/points.h"

/// What runs in PROJ: projections and the grids of built-in geoids. Its objects belong to one
/// thread, so each thread makes and keeps its own, up to a number; the ones not used for longest
/// go.
namespace QvRefSystem {

struct SystemGeoid;

/// Projects in place by a definition of ProjectionOperation; Third stays. Longitudes count from the
/// prime meridian of the projection. A point without an image fails. Throws GeodesyError if PROJ
/// refuses the definition.
Points<Plane> Project(const std::string& operation, Points<Geographic> points);
/// The way back, with the same care.
Points<Geographic> Unproject(const std::string& operation, Points<Plane> points);
/// Unproject for a projection whose inverse is a short series in PROJ: two steps of Newton's method
/// on the projection itself bring it to rounding. Four to five times the work.
Points<Geographic> UnprojectExactly(const std::string& operation, Points<Plane> points);

/// Third becomes the undulation in metres at places of the geoid's own base system, from Greenwich.
/// A point without data fails.
void PutGridUndulations(const SystemGeoid& geoid, Points<Geographic> points);
/// Moves points of WGS 84 to the geoid's base system, both from Greenwich. Throws GeodesyError if
/// PROJ has no way there on this machine.
void MoveToGeoidBase(const SystemGeoid& geoid, Points<Geographic> points);

/// PROJ's words for why a geographic point has no image; empty if it has one.
[[nodiscard]] std::string WhyNotProjected(const std::string& operation, const TShellPoint& point);
/// PROJ's words for why a point of the plane has no place; empty if it has one.
[[nodiscard]] std::string WhyNotUnprojected(const std::string& operation, const TShellPoint& point);

}  // namespace QvRefSystem
