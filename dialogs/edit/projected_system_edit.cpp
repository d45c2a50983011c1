#include "dialogs/edit/projected_system_edit.h"

#include "dialogs/base/chooser.h"

namespace QvRefSystem {

using enum TObjectType;

std::vector<const char*> TformQvRfRefSystemProjEdit::AxesOfType() const {
  return {"edHeightAbbr"};
}

bool TformQvRfRefSystemProjEdit::Choose(const FormRow& row) {
  if (row.object != kMapProjection || Data().DialogMode != kSimpleMode) {
    return PlaneSystemEdit::Choose(row);
  }
  TformQvRfEdit* projection = GetChooser().FormFor(this, kMapProjection, 0);
  if (projection == nullptr) return false;
  const int key = ValueOf(row.control).key;
  if (EditMode == 0 || key == 0) return projection->CreateNew();
  return projection->Processor->LocateKey(key) && projection->EditCurrent();
}

void TformQvRfRefSystemProjEdit::OnChosen(const FormRow& row) {
  PlaneSystemEdit::OnChosen(row);
  if (row.object != kMapProjection) return;
  QvPlatform::TQvDataSet& projections = Data().datasetMapProj;
  for (const char* control : {"edFirstCoordName", "edSecondCoordName"}) {
    ValueOf(control).text = projections.FieldByName(RowOf(control).Row().column).AsString();
    RowOf(control).ClearMark();
    Show(control);
  }
}

void TformQvRfRefSystemProjEdit::FillSystem(UnstoredSystem* system) {
  PlaneSystemEdit::FillSystem(system);
  system->mapProjection = ValueOf("edMapProjection").key;
}

}  // namespace QvRefSystem
