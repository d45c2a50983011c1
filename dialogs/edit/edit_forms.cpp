#include "dialogs/edit/edit_forms.h"

#include <algorithm>
#include <array>

#include "dialogs/edit/bursa_wolf_edit.h"
#include "dialogs/edit/datum_edit.h"
#include "dialogs/edit/ellipsoid_edit.h"
#include "dialogs/edit/geocentric_system_edit.h"
#include "dialogs/edit/geodetic_system_edit.h"
#include "dialogs/edit/local_system_edit.h"
#include "dialogs/edit/map_proj_edit.h"
#include "dialogs/edit/projected_system_edit.h"
#include "dialogs/edit/simple_edits.h"
#include "dialogs/edit/topocentric_system_edit.h"
#include "dialogs/edit/unit_edit.h"
#include "platform/geocore/system_model.h"

namespace QvRefSystem {
namespace {

using enum TObjectType;

struct EditFormRow {
  TObjectType object;
  /// TYPE of the objects, 0 for all.
  int type;
  TformQvRfEdit* (*get)(QWidget* owner, const Chooser& chooser);
};

template <typename Form>
TformQvRfEdit* Get(QWidget* owner, const Chooser& chooser) {
  for (QObject* child : owner->children()) {
    if (auto* form = dynamic_cast<Form*>(child)) return form;
  }
  return new Form(owner, chooser);
}

constexpr std::array kEditForms{
    EditFormRow{kLinearUnit, 0, &Get<TformQvRfLinearUnitEdit>},
    EditFormRow{kAngularUnit, 0, &Get<TformQvRfAngularUnitEdit>},
    EditFormRow{kScaleUnit, 0, &Get<TformQvRfScaleUnitEdit>},
    EditFormRow{kEllipsoid, 0, &Get<TformQvRfEllipsoidEdit>},
    EditFormRow{kPrimeMeridian, 0, &Get<TformQvRfPrimeMeridianEdit>},
    EditFormRow{kDatum, 0, &Get<TformQvRfDatumEdit>},
    EditFormRow{kDatumShift, 1, &Get<TformQvRfDatumShiftMolodenskyEdit>},
    EditFormRow{kDatumShift, 2, &Get<TformQvRfDatumShiftBursaWolfEdit>},
    EditFormRow{kDatumShift, 3, &Get<TformQvRfDatumShiftBursaWolfEdit>},
    EditFormRow{kMapProjection, 0, &Get<TformQvRfMapProjEdit>},
    EditFormRow{kDatumShiftType, 0, &Get<TformQvRfDatumShiftTypeEdit>},
    EditFormRow{kMapProjectionType, 0, &Get<TformQvRfMapProjTypeEdit>},
    EditFormRow{kReferenceSystemType, 0, &Get<TformQvRfRefSystemTypeEdit>},
    EditFormRow{kReferenceSystem, static_cast<int>(SystemKind::kLocalCartesian),
                &Get<TformQvRfRefSystemCartEdit>},
    EditFormRow{kReferenceSystem, static_cast<int>(SystemKind::kLocal),
                &Get<TformQvRfRefSystemLocalEdit>},
    EditFormRow{kReferenceSystem, static_cast<int>(SystemKind::kGeocentric),
                &Get<TformQvRfRefSystemGeocEdit>},
    EditFormRow{kReferenceSystem, static_cast<int>(SystemKind::kGeodetic),
                &Get<TformQvRfRefSystemGeodEdit>},
    EditFormRow{kReferenceSystem, static_cast<int>(SystemKind::kProjected),
                &Get<TformQvRfRefSystemProjEdit>},
    EditFormRow{kReferenceSystem, static_cast<int>(SystemKind::kTopocentric),
                &Get<TformQvRfRefSystemTopoEdit>},
};

}  // namespace

bool HasEditForm(TObjectType object) {
  return std::ranges::find(kEditForms, object, &EditFormRow::object) != kEditForms.end();
}

TformQvRfEdit* GetEditForm(QWidget* owner, const Chooser& chooser, TObjectType object, int type) {
  const auto row = std::ranges::find_if(kEditForms, [&](const EditFormRow& candidate) {
    return candidate.object == object && (candidate.type == 0 || candidate.type == type);
  });
  return row == kEditForms.end() ? nullptr : row->get(owner, chooser);
}

}  // namespace QvRefSystem
