#include "dialogs/edit/topocentric_system_edit.h"

#include <QLineEdit>
#include <QScopedValueRollback>

#include "dialogs/base/chooser.h"
#include "dialogs/edit/origin_grid.h"
#include "platform/geocore/system_model.h"
#include "platform/text/text.h"
#include "platform/widgets/limited_text.h"
#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::RowView;
using QvPlatform::ToQt;

namespace {

constexpr const char* kAxisColumns[] = {"COORD1_ABBR", "COORD2_ABBR", "COORD3_ABBR"};

}  // namespace

TformQvRfRefSystemTopoEdit::TformQvRfRefSystemTopoEdit(QWidget* owner, const Chooser& chooser)
    : OriginEdit(owner, chooser, kTopoSystemForm) {
  // Further down the primary system may have been removed or renamed.
  connect(RowOf("edOriginRefSystem").Line(), &QLineEdit::textChanged, this,
          [this] { ShowPrimary(); });
}

void TformQvRfRefSystemTopoEdit::OnNewRecord() {
  OriginEdit::OnNewRecord();
  ShowPrimary();
}

void TformQvRfRefSystemTopoEdit::OnShowRecord() {
  OriginEdit::OnShowRecord();
  ShowPrimary();
}

void TformQvRfRefSystemTopoEdit::OnRead() {
  std::string& azimuth = ValueOf("edAzimuth").text;
  azimuth = QvPlatform::Trim(azimuth);
}

bool TformQvRfRefSystemTopoEdit::Choose(const FormRow& row) {
  if (row.object != TObjectType::kReferenceSystem) return OriginEdit::Choose(row);
  // The list offers neither New nor Edit nor Remove.
  const QScopedValueRollback<signed char> mode(Data().DialogMode, kSimpleMode);
  return ListOf(row.object).SelectWhere(OfType(static_cast<int>(SystemKind::kGeodetic)), {});
}

void TformQvRfRefSystemTopoEdit::OnChosen(const FormRow& row) {
  if (row.object == TObjectType::kReferenceSystem) ShowPrimary();
}

void TformQvRfRefSystemTopoEdit::ShowPrimary() {
  const RowView primary = Processor->RowOfKey(ValueOf("edOriginRefSystem").key);
  const auto column = [this](const char* name) {
    return Processor->DataSet->FieldByName(name).GetIndex();
  };
  int axis = 0;
  for (const char* name : kAxisColumns) {
    Origin().SetAxisName(axis++, primary ? ToQt(primary.GetText(column(name))) : QString());
  }
  QString angular;
  QString linear;
  if (primary) {
    angular = NameOf(TObjectType::kAngularUnit, primary.GetInteger(column("ANGULAR_UNIT_AUTOKEY")));
    linear = NameOf(TObjectType::kLinearUnit, primary.GetInteger(column("LINEAR_UNIT_AUTOKEY")));
  }
  const bool both = !angular.isEmpty() && !linear.isEmpty();
  SetOriginHint(both ? angular + "/" + linear : QString());
  RowOf("edAzimuth").SetHint(both ? angular : QString());
}

}  // namespace QvRefSystem
