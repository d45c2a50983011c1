#include "forms/form_record.h"

#include "platform/dbset/write_group.h"
#include "platform/text/text.h"

namespace QvRefSystem {

using QvPlatform::TField;
using QvPlatform::TQvDataSet;

namespace {

/// Whether the object that the row refers to has to be there.
bool IsChecked(const FormRow& row) {
  return row.kind == RowKind::kReference && !row.keepsKey;
}

bool IsBound(const FormRow& row) {
  return *row.column != 0;
}

}  // namespace

FormRecord::FormRecord(TQvRfDataProcessor& processor, const FormDescription& form)
    : processor_(processor), form_(form), values_(form.rows.size()) {}

TQvRfDataProcessor& FormRecord::ReferredProcessor(const FormRow& row) const {
  TQvRfDataProcessor* processor = ProcessorFor(processor_.Data(), static_cast<int>(row.object));
  if (processor == nullptr) throw InvalidTypeError("there is no processor of this object type");
  return *processor;
}

void FormRecord::Load() {
  key_ = processor_.GetCurrentKey();
  loaded_ = RecordContent(processor_, key_);
  LoadValues();
}

void FormRecord::LoadAgain() {
  for (const FormRow& row : form_.rows) {
    if (row.kind == RowKind::kReference) ReferredProcessor(row).DataSet->Refresh();
  }
  LoadValues();
}

void FormRecord::LoadValues() {
  // The fields come first: an object may refer to one of its own table.
  for (std::size_t at = 0; at < values_.size(); ++at) {
    const FormRow& row = form_.rows[at];
    values_[at] = {};
    if (row.kind == RowKind::kList) values_[at].key = -1;
    if (!IsBound(row)) continue;
    const TField& field = processor_.DataSet->FieldByName(row.column);
    switch (row.kind) {
      case RowKind::kNumber:
        values_[at].number = field.AsFloat();
        break;
      case RowKind::kReference:
      case RowKind::kList:
        values_[at].key = field.AsInteger();
        break;
      default:
        values_[at].text = field.AsString();
        if (row.trimmed) values_[at].text = QvPlatform::Trim(values_[at].text);
    }
  }
  for (std::size_t at = 0; at < values_.size(); ++at)
    LoadReference(at);
}

void FormRecord::LoadReference(std::size_t row) {
  if (form_.rows[row].kind != RowKind::kReference) return;
  if (ReferredProcessor(form_.rows[row]).LocateKey(values_[row].key)) {
    TakeCurrent(row);
  } else {
    LoseReference(row);
  }
}

void FormRecord::LoseReference(std::size_t row) {
  const int key = form_.rows[row].keepsKey ? values_[row].key : 0;
  values_[row] = {};
  values_[row].key = key;
}

void FormRecord::Clear() {
  key_ = 0;
  for (std::size_t at = 0; at < values_.size(); ++at) {
    const FormRow& row = form_.rows[at];
    values_[at] = {};
    if (row.kind == RowKind::kList) values_[at].key = -1;
    // A number that is still to be typed is not 0.
    values_[at].isNumber = row.kind != RowKind::kNumber;
    if (row.newKey == NewKey::kNone) continue;
    NeedKey(at);
  }
}

void FormRecord::TakeCurrent(std::size_t row) {
  const TQvRfDataProcessor& referred = ReferredProcessor(form_.rows[row]);
  values_[row].key = referred.GetCurrentKey();
  values_[row].text = referred.DataSet->FieldByName("NAME").AsString();
}

void FormRecord::NeedKey(std::size_t row) {
  if (values_[row].key != 0) return;
  values_[row].key = ReferredProcessor(form_.rows[row]).GetLastUsedKey();
  LoadReference(row);
}

void FormRecord::RefreshReferences() {
  for (std::size_t at = 0; at < values_.size(); ++at) {
    if (form_.rows[at].kind != RowKind::kReference) continue;
    const TQvRfDataProcessor& referred = ReferredProcessor(form_.rows[at]);
    if (const QvPlatform::RowView row = referred.RowOfKey(values_[at].key)) {
      if (values_[at].text.empty()) continue;
      values_[at].text = row.GetText(referred.DataSet->FieldByName("NAME").GetIndex());
    } else {
      LoseReference(at);
    }
  }
}

std::optional<FormRefusal> FormRecord::Check(std::size_t row) const {
  const FormRow& spec = form_.rows[row];
  const FormValue& value = values_[row];
  switch (spec.rule) {
    case Rule::kNone:
      break;
    case Rule::kNotEmpty:
      if (value.text.empty()) return FormRefusal::kEmpty;
      break;
    case Rule::kNotZero:
      if (!value.isNumber) return FormRefusal::kNoNumber;
      if (value.number == 0) return FormRefusal::kZero;
      break;
    case Rule::kChosen:
      if (spec.kind == RowKind::kList ? value.key < 0 : value.key == 0) {
        return FormRefusal::kNotChosen;
      }
      break;
  }
  return std::nullopt;
}

void FormRecord::WriteStamps(bool append) {
  TQvDataSet& dataSet = *processor_.DataSet;
  const bool now = append || form_.stamp == EditStamp::kNow;
  if (append) dataSet.FieldByName("FAVOUR").SetInteger(0);
  dataSet.FieldByName("LAST_USE").SetFloat(now ? QvPlatform::CurrentMoment() : 0);
  for (const FixedValue& fixed : form_.fixed) {
    if (append || fixed.always) dataSet.FieldByName(fixed.column).SetInteger(fixed.value);
  }
}

void FormRecord::WriteRows() {
  for (std::size_t at = 0; at < values_.size(); ++at) {
    const FormRow& row = form_.rows[at];
    if (!IsBound(row)) continue;
    TField& field = processor_.DataSet->FieldByName(row.column);
    switch (row.kind) {
      case RowKind::kNumber:
        field.SetFloat(values_[at].number);
        break;
      case RowKind::kReference:
      case RowKind::kList:
        field.SetInteger(values_[at].key);
        break;
      default:
        field.SetString(values_[at].text);
    }
  }
}

void FormRecord::RequireUnchanged() {
  found_ = RecordContent(processor_, key_);
  if (found_ != loaded_) throw FormConflict(!found_.Exists());
  // A filter may have come to hide it.
  if (!processor_.LocateKey(key_)) throw FormConflict(true);
}

// One that is gone is lost to the form, which then is checked anew.
void FormRecord::RequireReferences() {
  for (std::size_t at = 0; at < values_.size(); ++at) {
    const FormRow& row = form_.rows[at];
    if (!IsChecked(row) || values_[at].key == 0) continue;
    if (ReferredProcessor(row).RowOfKey(values_[at].key)) continue;
    const std::string name = values_[at].text;
    LoseReference(at);
    throw QvPlatform::StaleRecordError("\"" + name +
                                       "\" has been removed by somebody else in the meantime");
  }
}

std::vector<TQvDataSet*> FormRecord::TablesOf(const Extras& extras) const {
  std::vector<TQvDataSet*> tables = extras.tables;
  tables.push_back(processor_.DataSet);
  for (const FormRow& row : form_.rows) {
    if (IsChecked(row)) tables.push_back(ReferredProcessor(row).DataSet);
  }
  return tables;
}

int FormRecord::Store(bool append, const Extras& extras) {
  TQvDataSet& dataSet = *processor_.DataSet;
  int key = 0;
  try {
    QvPlatform::TQvWriteGroup group(TablesOf(extras));
    if (!append) RequireUnchanged();
    RequireReferences();
    append ? dataSet.Append() : dataSet.Edit();
    WriteStamps(append);
    WriteRows();
    if (extras.fields) extras.fields(dataSet);
    key = processor_.KeyOf(dataSet.Post());
    if (extras.beside) extras.beside(key);
    group.Commit();
  } catch (...) {
    dataSet.Cancel();
    throw;
  }
  processor_.LocateKey(key);
  return key;
}

}  // namespace QvRefSystem
