#pragma once

#include "forms/form_description.h"

/// The edit dialogs of reference systems.
namespace QvRefSystem {

/// The group of the radio buttons that tell the handedness of a system's axes.
inline constexpr int kHandedness = 1;
/// Geodetic and projected systems: the group of the radio buttons that tell whether a system stands
/// on a datum or on an ellipsoid alone.
inline constexpr int kGround = 2;
/// Geodetic and projected systems: the group of the radio buttons that tell from where heights
/// count.
inline constexpr int kHeightSurface = 3;

/// Local Cartesian systems.
extern const FormDescription kCartSystemForm;
/// Geocentric systems.
extern const FormDescription kGeocSystemForm;
/// Local systems on an ellipsoid.
extern const FormDescription kLocalSystemForm;
/// Topocentric systems, which stand at a point of a primary system.
extern const FormDescription kTopoSystemForm;
/// Geodetic systems, with their heights.
extern const FormDescription kGeodSystemForm;
/// Projected systems, with their heights.
extern const FormDescription kProjSystemForm;

}  // namespace QvRefSystem
