#pragma once

#include "forms/form_description.h"

/// The edit dialogs of all objects, each stated once.
namespace QvRefSystem {

/// The group of the radio buttons that tell the shape of an ellipsoid.
inline constexpr int kEllipsoidShape = 1;

extern const FormDescription kLinearUnitForm;
extern const FormDescription kAngularUnitForm;
extern const FormDescription kScaleUnitForm;
extern const FormDescription kEllipsoidForm;
extern const FormDescription kPrimeMeridianForm;
extern const FormDescription kDatumForm;
extern const FormDescription kMolodenskyForm;
extern const FormDescription kBursaWolfForm;
extern const FormDescription kMapProjForm;
extern const FormDescription kDatumShiftTypeForm;
extern const FormDescription kMapProjTypeForm;
extern const FormDescription kRefSystemTypeForm;

/// All of them.
[[nodiscard]] std::span<const FormDescription* const> FormDescriptions();

}  // namespace QvRefSystem
