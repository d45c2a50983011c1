#pragma once

#include "dialogs/select/datum_shift_selector.h"
#include "dialogs/select/ellipsoid_selector.h"
#include "dialogs/select/object_selector.h"
#include "dialogs/select/ref_system_selector.h"

/// The selectors of all object types, and the way from an object type to its selector.
namespace QvRefSystem {

// These selectors do nothing beside what all do.

/// The selector of angular units.
using TformQvRfAngularUnitSelector = ObjectSelector<TObjectType::kAngularUnit>;
/// The selector of linear units.
using TformQvRfLinearUnitSelector = ObjectSelector<TObjectType::kLinearUnit>;
/// The selector of scale units.
using TformQvRfScaleUnitSelector = ObjectSelector<TObjectType::kScaleUnit>;
/// The selector of prime meridians.
using TformQvRfPrimeMeridianSelector = ObjectSelector<TObjectType::kPrimeMeridian>;
/// The selector of datums.
using TformQvRfDatumSelector = ObjectSelector<TObjectType::kDatum>;
/// The selector of map projections.
using TformQvRfMapProjSelector = ObjectSelector<TObjectType::kMapProjection>;
/// The selector of height systems.
using TformQvRfVerticalRefSystemSelector = ObjectSelector<TObjectType::kVerticalReferenceSystem>;
/// The selector of the types of datum shifts.
using TformQvRfDatumShiftTypeSelector = ObjectSelector<TObjectType::kDatumShiftType, true>;
/// The selector of the types of map projections.
using TformQvRfMapProjTypeSelector = ObjectSelector<TObjectType::kMapProjectionType, true>;
/// The selector of the kinds of reference systems.
using TformQvRfRefSystemTypeSelector = ObjectSelector<TObjectType::kReferenceSystemType, true>;

/// The first selector of that object type among the owner's children, or a new one that it owns. A
/// null owner always gives a new one, the caller's to destroy. Null for a code that is no object
/// type, or one that has no processor.
[[nodiscard]] TformQvRfSelector* GetSelectorFor(QWidget* owner, int objectType);

/// The chooser over all selectors and edit dialogs; it lives as long as the program.
[[nodiscard]] const Chooser& DialogChooser();

}  // namespace QvRefSystem
