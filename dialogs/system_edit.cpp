#include "dialogs/system_edit.h"

#include <QAbstractButton>

#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::TQvDataSet;
using QvPlatform::TRowView;

namespace {

constexpr char kSwap[] = "SWAP_COORDS";
constexpr char kLeft[] = "radiobtnLeft";
constexpr char kRight[] = "radiobtnRight";

bool HasHandedness(const TFormDescription& form) {
  return std::ranges::find(form.rows, kHandedness, &TFormRow::choice) != form.rows.end();
}

const char* RadioOf(int swapped) {
  return swapped != 0 ? kLeft : kRight;
}

}  // namespace

TSystemEdit::TSystemEdit(QWidget* owner, const TFormDescription& form)
    : TDescribedEdit(owner, form), type_(form.type), hasHandedness_(HasHandedness(form)) {}

void TSystemEdit::OnNewRecord() {
  TQvDataSet& types = Data().datasetRefSystemType;
  const auto column = [&](const char* name) { return types.FieldByName(name).GetIndex(); };
  const TRowView type = types.FindFirst({QvPlatform::TMatch::Integer(column("TYPE"), type_)});
  if (hasHandedness_) SetChoice(kHandedness, type ? RadioOf(type.GetInteger(column(kSwap))) : "");
  if (!type) return;
  for (const char* control : AxesOfType()) {
    ValueOf(control).text = type.GetText(column(RowOf(control).Row().column));
    Show(control);
  }
}

void TSystemEdit::OnEditRecord() {
  if (!hasHandedness_) return;
  SetChoice(kHandedness, RadioOf(Processor->DataSet->FieldByName(kSwap).AsInteger()));
}

void TSystemEdit::WriteMore(TQvDataSet& dataSet) {
  if (hasHandedness_) dataSet.FieldByName(kSwap).SetInteger(LeadOf(kLeft).isChecked() ? 1 : 0);
}

QString TSystemEdit::NameOf(TObjectType object, int key) const {
  const TQvRfDataProcessor* processor = ProcessorFor(Data(), static_cast<int>(object));
  if (processor == nullptr) return {};
  const TRowView row = processor->RowOfKey(key);
  if (!row) return {};
  return QvPlatform::ToQt(row.GetText(processor->DataSet->FieldByName("NAME").GetIndex()));
}

void TformQvRfRefSystemGeocEdit::OnEditRecord() {
  TSystemEdit::OnEditRecord();
  LeadOf("chboxDatum").setChecked(ValueOf("edDatum").key != 0);
  UpdateLeads();
}

// The datum of an unchecked box is kept in the dialog, in case the user checks it again.
void TformQvRfRefSystemGeocEdit::WriteMore(TQvDataSet& dataSet) {
  TSystemEdit::WriteMore(dataSet);
  if (!LeadOf("chboxDatum").isChecked()) dataSet.FieldByName("DATUM_AUTOKEY").SetInteger(0);
}

}  // namespace QvRefSystem
