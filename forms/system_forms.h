#pragma once

#include "forms/form_description.h"

/// The edit dialogs of reference systems.
namespace QvRefSystem {

/// The group of the radio buttons that tell the handedness of a system's axes.
inline constexpr int kHandedness = 1;
/// Geodetic and projected systems: the groups of those that tell whether they stand on a datum or
/// on an ellipsoid alone, and from where their heights count.
inline constexpr int kGround = 2;
inline constexpr int kHeightSurface = 3;

extern const FormDescription kCartSystemForm;
extern const FormDescription kGeocSystemForm;
extern const FormDescription kLocalSystemForm;
extern const FormDescription kTopoSystemForm;
extern const FormDescription kGeodSystemForm;
extern const FormDescription kProjSystemForm;

}  // namespace QvRefSystem
