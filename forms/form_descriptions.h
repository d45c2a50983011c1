#pragma once

#include "forms/form_description.h"

/// The edit dialogs of all objects, each stated once.
namespace QvRefSystem {

/// The group of the radio buttons that tell the shape of an ellipsoid.
inline constexpr int kEllipsoidShape = 1;

/// Linear units.
extern const FormDescription kLinearUnitForm;
/// Angular units.
extern const FormDescription kAngularUnitForm;
/// Scale units.
extern const FormDescription kScaleUnitForm;
/// Ellipsoids, whose shape is told in one of three ways.
extern const FormDescription kEllipsoidForm;
/// Prime meridians.
extern const FormDescription kPrimeMeridianForm;
/// Geodetic datums.
extern const FormDescription kDatumForm;
/// Datum shifts of three parameters.
extern const FormDescription kMolodenskyForm;
/// Datum shifts of seven parameters.
extern const FormDescription kBursaWolfForm;
/// Map projections of all types; the parameters are those of the type.
extern const FormDescription kMapProjForm;
/// Types of datum shifts: their words alone.
extern const FormDescription kDatumShiftTypeForm;
/// Types of map projections: their words alone.
extern const FormDescription kMapProjTypeForm;
/// Kinds of reference systems: their words alone.
extern const FormDescription kRefSystemTypeForm;

/// The descriptions of all edit dialogs, those of reference systems included.
[[nodiscard]] std::span<const FormDescription* const> FormDescriptions();

}  // namespace QvRefSystem
