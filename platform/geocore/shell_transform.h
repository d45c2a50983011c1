#pragma once

#include <cstddef>
#include <string>

#include "platform/geocore/points.h"
#include "platform/geocore/shell_definition.h"

/// The way of points through two definitions: from the axes of one to longitude and latitude or to
/// geocentric coordinates, across the datums, and out by the axes of the other.
namespace QvRefSystem {

/// What Third of a point counts from: the system's own height surface or its ellipsoid.
enum class Third { kHeight, kEllipsoidal };

/// One end of a way. It refers to the system, which must outlive it.
struct WayEnd {
  /// The system in whose axes points are there.
  const ShellDefinition& system;
  /// What their heights count from; of no meaning for a system without latitude.
  Third third = Third::kHeight;
};

/// Throws GeodesyError if no point can move between the two.
void RequireMeeting(const ShellDefinition& from, const ShellDefinition& to);

/// Moves points in place, whatever is wrong with them: what is no finite number, what lies beyond a
/// pole or two turns, and what has no image fails. The result is how many did. Throws GeodesyError
/// if the systems cannot meet, or PROJ cannot compute on this machine.
std::size_t MovePoints(const WayEnd& from, const WayEnd& to, Points<Axes> points);

/// Why a point fails on the way between the two systems with heights of their own, in words for the
/// user; empty if it does not. Throws as MovePoints does.
[[nodiscard]] std::string WhyFailed(const ShellDefinition& from, const ShellDefinition& to,
                                    TShellPoint point);

/// Longitude and latitude from Greenwich in radians and ellipsoidal height in metres of a point
/// with a height of the system, which must have a latitude. A point without a place fails.
[[nodiscard]] TShellPoint PlaceOf(const ShellDefinition& system, TShellPoint point);

/// Puts the undulation above the system's ellipsoid, in the height unit, into Third; 0 over the
/// ellipsoid. A point without one fails as a whole.
void PutUndulations(const ShellDefinition& system, Points<Axes> points);

}  // namespace QvRefSystem
