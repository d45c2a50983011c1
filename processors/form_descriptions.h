#pragma once

#include "processors/form_description.h"

/// The edit dialogs of all objects, each stated once.
namespace QvRefSystem {

/// The group of the radio buttons that tell the shape of an ellipsoid.
inline constexpr int kEllipsoidShape = 1;

extern const TFormDescription kLinearUnitForm;
extern const TFormDescription kAngularUnitForm;
extern const TFormDescription kScaleUnitForm;
extern const TFormDescription kEllipsoidForm;
extern const TFormDescription kPrimeMeridianForm;
extern const TFormDescription kDatumForm;
extern const TFormDescription kMolodenskyForm;
extern const TFormDescription kBursaWolfForm;
extern const TFormDescription kMapProjForm;
extern const TFormDescription kDatumShiftTypeForm;
extern const TFormDescription kMapProjTypeForm;
extern const TFormDescription kRefSystemTypeForm;

/// All of them.
[[nodiscard]] std::span<const TFormDescription* const> FormDescriptions();

}  // namespace QvRefSystem
