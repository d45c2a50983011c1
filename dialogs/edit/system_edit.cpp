#include "dialogs/edit/system_edit.h"

#include <QAbstractButton>

#include "platform/widgets/qt_text.h"

namespace QvRefSystem {

using QvPlatform::RowView;
using QvPlatform::TQvDataSet;

namespace {

constexpr char kSwap[] = "SWAP_COORDS";
constexpr char kLeft[] = "radiobtnLeft";
constexpr char kRight[] = "radiobtnRight";

bool HasHandedness(const FormDescription& form) {
  return std::ranges::find(form.rows, kHandedness, &FormRow::choice) != form.rows.end();
}

const char* RadioOf(int swapped) {
  return swapped != 0 ? kLeft : kRight;
}

}  // namespace

SystemEdit::SystemEdit(QWidget* owner, const Chooser& chooser, const FormDescription& form)
    : DescribedEdit(owner, chooser, form), type_(form.type), hasHandedness_(HasHandedness(form)) {}

void SystemEdit::OnNewRecord() {
  TQvDataSet& types = Data().datasetRefSystemType;
  const auto column = [&](const char* name) { return types.FieldByName(name).GetIndex(); };
  const RowView type = types.FindFirst({QvPlatform::RowMatch::Integer(column("TYPE"), type_)});
  if (hasHandedness_) SetChoice(kHandedness, type ? RadioOf(type.GetInteger(column(kSwap))) : "");
  if (!type) return;
  for (const char* control : AxesOfType()) {
    ValueOf(control).text = type.GetText(column(RowOf(control).Row().column));
    Show(control);
  }
}

void SystemEdit::OnShowRecord() {
  if (!hasHandedness_) return;
  SetChoice(kHandedness, RadioOf(Processor->DataSet->FieldByName(kSwap).AsInteger()));
}

void SystemEdit::WriteMore(TQvDataSet& dataSet) {
  if (hasHandedness_) dataSet.FieldByName(kSwap).SetInteger(LeadOf(kLeft).isChecked() ? 1 : 0);
}

QString SystemEdit::NameOf(TObjectType object, int key) const {
  const TQvRfDataProcessor* processor = ProcessorFor(Data(), static_cast<int>(object));
  if (processor == nullptr) return {};
  const RowView row = processor->RowOfKey(key);
  if (!row) return {};
  return QvPlatform::ToQt(row.GetText(processor->DataSet->FieldByName("NAME").GetIndex()));
}

}  // namespace QvRefSystem
