#include "dialogs/edit/geodetic_system_edit.h"

#include <QLayout>
#include <algorithm>

#include "processors/ref_system_processor.h"

namespace QvRefSystem {

namespace {

constexpr char kPositiveLongitude[] = "chboxPositiveLongitude";

}  // namespace

TformQvRfRefSystemGeodEdit::TformQvRfRefSystemGeodEdit(QWidget* owner, const Chooser& chooser)
    : PlaneSystemEdit(owner, chooser, kGeodSystemForm) {
  // The splitter between the boxes keeps these widths on its left and on its right.
  constexpr std::pair<const char*, int> kLeast[] = {{"grboxLatLon", 181}, {"grboxHeight", 251}};
  for (const auto& [name, width] : kLeast) {
    QWidget* box = RowOf(name).Control();
    // A least width of its own would take the place of the one that its content needs.
    box->setMinimumWidth(std::max(width, box->layout()->totalMinimumSize().width()));
  }
}

std::vector<const char*> TformQvRfRefSystemGeodEdit::AxesOfType() const {
  return {"edLatitudeAbbr", "edLongitudeAbbr", "edHeightAbbr"};
}

void TformQvRfRefSystemGeodEdit::OnNewRecord() {
  LeadOf(kPositiveLongitude).setChecked(false);
  PlaneSystemEdit::OnNewRecord();
}

void TformQvRfRefSystemGeodEdit::OnShowRecord() {
  LeadOf(kPositiveLongitude).setChecked(Data().RefSystemProcessor->IsPositiveLongitude(Key));
  PlaneSystemEdit::OnShowRecord();
}

void TformQvRfRefSystemGeodEdit::StoreBeside(int key) {
  PlaneSystemEdit::StoreBeside(key);
  Data().RefSystemProcessor->StorePositiveLongitude(key, LeadOf(kPositiveLongitude).isChecked());
}

void TformQvRfRefSystemGeodEdit::FillSystem(UnstoredSystem* system) {
  PlaneSystemEdit::FillSystem(system);
  system->angularUnit = ValueOf("edAngularUnit").key;
  system->positiveLongitude = LeadOf(kPositiveLongitude).isChecked();
}

}  // namespace QvRefSystem
