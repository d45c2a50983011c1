#include "platform/dbset/data_set.h"

#include <string>

#include "platform/dbset/data_set_impl.h"
#include "platform/dbset/notices.h"

namespace QvPlatform {

TQvDataSet::TQvDataSet(TQvDataBuffer& buffer)
    : DataBuff(&buffer), impl_(std::make_unique<DataSetImpl>(buffer)) {}
TQvDataSet::~TQvDataSet() = default;

void TQvDataSet::Open() {
  impl_->Open();
}
void TQvDataSet::Close() {
  impl_->Close();
}
bool TQvDataSet::GetActive() const {
  return impl_->Active();
}
DataSetState TQvDataSet::State() const {
  return impl_->State();
}

void TQvDataSet::First() {
  impl_->First();
}
void TQvDataSet::Last() {
  impl_->Last();
}
void TQvDataSet::Next() {
  impl_->Next();
}
void TQvDataSet::Prior() {
  impl_->Prior();
}
bool TQvDataSet::Eof() const {
  return impl_->Eof();
}
bool TQvDataSet::Bof() const {
  return impl_->Bof();
}
int TQvDataSet::RecordCount() const {
  return impl_->Count();
}
int TQvDataSet::Position() const {
  return impl_->Position();
}
void TQvDataSet::MoveTo(int position) {
  impl_->MoveTo(position);
}
void TQvDataSet::MoveBehindLast() {
  impl_->MoveBehindLast();
}

void TQvDataSet::Append() {
  impl_->Append();
}
void TQvDataSet::Edit() {
  impl_->Edit();
}
RowView TQvDataSet::Post() {
  return impl_->Post();
}
void TQvDataSet::Cancel() {
  impl_->Cancel();
}
void TQvDataSet::Delete() {
  impl_->Delete();
}

void TQvDataSet::DisableControls() {
  Notices().Disable();
}
void TQvDataSet::EnableControls() {
  Notices().Enable();
}
bool TQvDataSet::ControlsDisabled() const {
  return Notices().Disabled();
}
detail::Notices& TQvDataSet::Notices() const {
  return impl_->Notices();
}

int TQvDataSet::FieldCount() const {
  return impl_->Active() ? static_cast<int>(impl_->Fields().size()) : 0;
}

TField* TQvDataSet::FindField(std::string_view name) {
  return impl_->FindField(name);
}

TField& TQvDataSet::FieldByName(std::string_view name) {
  TField* field = impl_->FindField(name);
  if (field == nullptr) {
    throw DataSetError("\"" + DataBuff->StreamName + "\" has no field \"" + std::string(name) +
                       "\"");
  }
  return *field;
}

TField& TQvDataSet::Fields(int index) {
  if (index < 0 || index >= FieldCount()) {
    throw DataSetError("\"" + DataBuff->StreamName + "\" has no field " + std::to_string(index));
  }
  return impl_->Fields()[static_cast<std::size_t>(index)];
}

const TQvDbHeader& TQvDataSet::Header() const {
  return impl_->Header();
}

bool TQvDataSet::HasMoved() const {
  return impl_->HasMoved();
}

bool TQvDataSet::Refresh() {
  return impl_->Refresh();
}

int TQvDataSet::LastKey() const {
  return static_cast<int>(impl_->OpenedStore().LastKey());
}

void TQvDataSet::RaiseLastKey(int key) {
  impl_->RaiseLastKey(key);
}

std::optional<std::string> TQvDataSet::Note(int key, std::string_view kind) const {
  return impl_->OpenedStore().Note(key, kind);
}

void TQvDataSet::SetNote(int key, std::string_view kind, std::string_view value) {
  impl_->SetNote(key, kind, value);
}

std::vector<std::string> TQvDataSet::FindDamage() const {
  return impl_->OpenedStore().FindDamage();
}

GroupMark TQvDataSet::LastGroup() const {
  return impl_->OpenedStore().LastGroup();
}

RowView TQvDataSet::CurrentRow() const {
  return impl_->CurrentRow();
}
RowView TQvDataSet::Row(int position) const {
  return impl_->RowAt(position);
}

RowView TQvDataSet::FindFirst(std::span<const RowMatch> matches) const {
  return impl_->FindFirst(matches);
}

RowView TQvDataSet::FindFirst(std::initializer_list<RowMatch> matches) const {
  return impl_->FindFirst({matches.begin(), matches.size()});
}

std::vector<RowView> TQvDataSet::FindAll(std::initializer_list<RowMatch> matches,
                                         RowScope scope) const {
  return impl_->FindAll({matches.begin(), matches.size()}, scope);
}

int TQvDataSet::PositionOf(RowView row) const {
  return impl_->PositionOf(row);
}

bool TQvDataSet::MoveTo(RowView row) {
  const int position = impl_->PositionOf(row);
  if (position < 0) return false;
  impl_->MoveTo(position);
  return true;
}

}  // namespace QvPlatform
