#include "platform/dbset/data_set_impl.h"

#include <algorithm>
#include <utility>

#include "platform/dbset/data_set_error.h"
#include "platform/dbset/open_table_store.h"
#include "platform/storage/stream.h"
#include "platform/text/ascii.h"
#include "platform/text/locale.h"

namespace QvPlatform {

using detail::Cell;
using detail::Row;
using detail::RowSet;

/// What a buffer keeps of a closed table.
struct DataSetImpl::CachedTable {
  QvDataBufferType type;
  std::string name;
  std::string state;
  std::unique_ptr<RowSet> rows;
};

DataSetImpl::~DataSetImpl() {
  if (group_ != nullptr) group_->Forget(this);
  // The buffer may be gone already; what it keeps stays as it is.
  LetGo();
}

void DataSetImpl::RequireActive() const {
  if (!Active()) throw DataSetError("the data set \"" + buffer_.StreamName + "\" is not open");
}

detail::Arrangement DataSetImpl::WantedArrangement() const {
  return {buffer_.sortField_, buffer_.descending_, buffer_.filterField_, buffer_.filterValue_,
          UserLocaleVersion()};
}

void DataSetImpl::LetGo() noexcept {
  if (store_ != nullptr) store_->SetUndoHandler(nullptr);
  store_.reset();
  rows_.reset();
}

std::shared_ptr<detail::TableStore> DataSetImpl::OpenStore() {
  auto store = detail::OpenTableStore(buffer_.GetDataBufferType(), storeName_);
  store->SetUndoHandler([this] { ReloadAfterUndo(); });
  return store;
}

void DataSetImpl::LoadRows() {
  TakeRows(store_->Load());
}

void DataSetImpl::TakeRows(detail::LoadedTable table) {
  auto rows = std::make_unique<RowSet>(std::move(table.header), WantedArrangement());
  for (auto& row : table.rows)
    rows->AddLoaded(std::move(row));
  rows->Arrange(WantedArrangement());
  rows_ = std::move(rows);
}

void DataSetImpl::TakeOverOrLoad() {
  const auto cached = std::static_pointer_cast<CachedTable>(std::exchange(buffer_.cache_, nullptr));
  // A store is still there where the data set was closed inside a group of changes.
  if (store_ == nullptr || storeName_ != buffer_.StreamName) {
    LetGo();
    storeName_ = buffer_.StreamName;
    store_ = OpenStore();
    const bool known = cached != nullptr && cached->name == storeName_ &&
                       cached->type == buffer_.GetDataBufferType();
    if (known && store_->TakeOver(cached->state, cached->rows->Header())) {
      rows_ = std::move(cached->rows);
    }
  }
  if (rows_ == nullptr) LoadRows();
  const detail::Arrangement wanted = WantedArrangement();
  if (rows_->Arranged() != wanted) rows_->Arrange(wanted);
}

void DataSetImpl::MakeFields() {
  header_ = rows_->Header();
  // Pointers to fields live on as long as the table has the same number of them.
  fields_.resize(header_.Fields().size());
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    fields_[i].record_ = this;
    fields_[i].index_ = static_cast<int>(i);
  }
}

void DataSetImpl::Open() {
  if (Active()) return;
  try {
    TakeOverOrLoad();
  } catch (...) {
    LetGo();
    throw;
  }
  MakeFields();
  state_ = DataSetState::kBrowse;
  Place(0);
  bof_ = true;
  notices_.TellReset();
}

void DataSetImpl::Close() {
  if (!Active()) return;
  state_ = DataSetState::kInactive;
  position_ = -1;
  bof_ = eof_ = true;
  if (group_ == nullptr) Park();
  notices_.TellReset();
}

void DataSetImpl::Park() {
  std::string state = store_->MirroredState();
  if (!state.empty() && rows_ != nullptr) {
    buffer_.cache_ = std::make_shared<CachedTable>(
        CachedTable{buffer_.GetDataBufferType(), storeName_, std::move(state), std::move(rows_)});
  }
  LetGo();
}

void DataSetImpl::LeaveGroup() {
  group_.reset();
  if (!Active() && store_ != nullptr) Park();
}

void DataSetImpl::ReloadAfterUndo() noexcept {
  try {
    if (!Active()) {
      rows_.reset();
      return;
    }
    const int position = position_;
    const std::int64_t id = CurrentId();
    state_ = DataSetState::kBrowse;
    LoadRows();
    Settle(id, position);
  } catch (...) {
    // A table that cannot be read again must not show what was undone.
    state_ = DataSetState::kInactive;
    position_ = -1;
    bof_ = eof_ = true;
    rows_.reset();
  }
}

// --- other programs ---------------------------------------------------------------------------

std::int64_t DataSetImpl::CurrentId() const {
  return position_ >= 0 ? rows_->At(position_)->id : 0;
}

void DataSetImpl::Settle(std::int64_t id, int position) {
  const Row* row = rows_->FindById(id);
  const int place = row != nullptr ? rows_->PositionOf(row) : -1;
  Place(place >= 0 ? place : position);
  notices_.TellReset();
}

bool DataSetImpl::HasMoved() {
  if (!Active()) return false;
  try {
    return store_->IsReplaced() || store_->HasMoved();
  } catch (const StorageError&) {
    return true;
  }
}

void DataSetImpl::ReattachIfReplaced() {
  if (!Active() || group_ != nullptr || !store_->IsReplaced()) return;
  const int position = position_;
  const std::int64_t id = CurrentId();
  std::shared_ptr<detail::TableStore> store = OpenStore();
  TakeRows(store->Load());
  store_->SetUndoHandler(nullptr);
  store_ = std::move(store);
  MakeFields();
  Settle(id, position);
}

std::vector<detail::RecordMark> DataSetImpl::Marks() const {
  std::vector<detail::RecordMark> marks;
  for (const auto& row : rows_->All())
    marks.push_back({row->id, row->version, row->sum});
  std::ranges::sort(marks, {}, &detail::RecordMark::id);
  return marks;
}

void DataSetImpl::Apply(detail::TableChanges changes) {
  for (const std::int64_t id : changes.removed)
    rows_->Remove(rows_->FindById(id));
  for (auto& written : changes.written) {
    if (Row* row = rows_->FindById(written->id)) {
      rows_->Change(row, std::move(*written));
    } else {
      rows_->Insert(std::move(written));
    }
  }
}

bool DataSetImpl::Refresh() {
  if (!Active()) return false;
  if (group_ == nullptr && store_->IsReplaced()) {
    ReattachIfReplaced();
    return true;
  }
  if (!store_->HasMoved()) return false;
  const int position = position_;
  const std::int64_t id = CurrentId();
  if (std::optional<detail::TableChanges> changes = store_->LoadChanges(Marks())) {
    Apply(*std::move(changes));
  } else {
    LoadRows();
    MakeFields();
  }
  Settle(id, position);
  return true;
}

detail::TableStore& DataSetImpl::OpenedStore() {
  RequireActive();
  return *store_;
}

void DataSetImpl::RaiseLastKey(int key) {
  RequireActive();
  BeforeWrite();
  store_->RaiseLastKey(key);
}

void DataSetImpl::SetNote(std::int64_t id, std::string_view kind, std::string_view value) {
  RequireActive();
  BeforeWrite();
  store_->SetNote(id, kind, value);
}

// --- cursor -----------------------------------------------------------------------------------

void DataSetImpl::Place(int position) {
  position_ = std::min(std::max(position, 0), rows_->Count() - 1);
  bof_ = eof_ = position_ < 0;
}

void DataSetImpl::MoveCursor(int position, bool bof, bool eof) {
  const int before = position_;
  Place(position);
  bof_ = bof_ || bof;
  eof_ = eof_ || eof;
  if (position_ != before) notices_.TellMoved();
}

void DataSetImpl::First() {
  RequireActive();
  Cancel();
  MoveCursor(0, true, false);
}

void DataSetImpl::Last() {
  RequireActive();
  Cancel();
  MoveCursor(rows_->Count() - 1, false, true);
}

void DataSetImpl::Next() {
  RequireActive();
  Cancel();
  const bool atEnd = position_ + 1 >= rows_->Count();
  MoveCursor(atEnd ? position_ : position_ + 1, false, atEnd);
}

void DataSetImpl::Prior() {
  RequireActive();
  Cancel();
  const bool atStart = position_ <= 0;
  MoveCursor(atStart ? position_ : position_ - 1, atStart, false);
}

void DataSetImpl::MoveTo(int position) {
  RequireActive();
  if (position < 0 || position >= rows_->Count()) {
    throw DataSetError("the table has no row at the place " + std::to_string(position));
  }
  Cancel();
  MoveCursor(position, false, false);
}

void DataSetImpl::MoveBehindLast() {
  Last();
}

const Row* DataSetImpl::Current() const {
  if (Changing()) return &pending_;
  return Active() && position_ >= 0 ? rows_->At(position_) : nullptr;
}

RowView DataSetImpl::View(const Row* row) {
  RowView view;
  view.row_ = row;
  return view;
}

RowView DataSetImpl::RowAt(int position) const {
  return position >= 0 && position < Count() ? View(rows_->At(position)) : RowView();
}

RowView DataSetImpl::FindFirst(std::span<const RowMatch> matches) const {
  return Active() ? View(rows_->FindFirst(matches)) : RowView();
}

std::vector<RowView> DataSetImpl::FindAll(std::span<const RowMatch> matches, RowScope scope) const {
  std::vector<RowView> views;
  if (!Active()) return views;
  for (const Row* row : rows_->FindAll(matches, scope))
    views.push_back(View(row));
  return views;
}

int DataSetImpl::PositionOf(RowView row) const {
  if (!Active() || !row) return -1;
  if (row.row_ == &pending_) return state_ == DataSetState::kEdit ? position_ : -1;
  return rows_->PositionOf(row.row_);
}

// --- fields -----------------------------------------------------------------------------------

TField* DataSetImpl::FindField(std::string_view name) {
  if (!Active()) return nullptr;
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (EqualAscii(header_.Fields()[i].name, name)) return &fields_[i];
  }
  return nullptr;
}

const TQvDbField& DataSetImpl::Definition(int field) const {
  return header_.Fields()[static_cast<std::size_t>(field)];
}

const Cell& DataSetImpl::Content(int field) const {
  const Row* row = Current();
  return row != nullptr ? row->At(field) : detail::kNoContent;
}

void DataSetImpl::SetContent(int field, Cell content) {
  if (!Changing()) {
    throw DataSetError("the field \"" + Definition(field).name +
                       "\" can be written in edit or append state only");
  }
  pending_.cells[static_cast<std::size_t>(field)] = std::move(content);
}

// --- changes ----------------------------------------------------------------------------------

void DataSetImpl::Append() {
  RequireActive();
  Cancel();
  pending_ = Row();
  pending_.cells.resize(header_.Fields().size());
  state_ = DataSetState::kInsert;
}

void DataSetImpl::Edit() {
  RequireActive();
  if (Changing()) return;
  if (position_ < 0) throw DataSetError("an empty table has no record to edit");
  const Row* row = rows_->At(position_);
  pending_.cells = row->cells;
  pending_.id = row->id;
  pending_.version = row->version;
  pending_.sum = row->sum;
  state_ = DataSetState::kEdit;
}

void DataSetImpl::Cancel() {
  if (Changing()) state_ = DataSetState::kBrowse;
}

void DataSetImpl::BeforeWrite() {
  if (group_ != nullptr) group_->Transaction().BeforeWrite();
}

void DataSetImpl::FillMandatory() {
  for (std::size_t i = 0; i < pending_.cells.size(); ++i) {
    const TQvDbField& field = header_.Fields()[i];
    const bool unset = std::holds_alternative<std::monostate>(pending_.cells[i]);
    if (unset && field.need == FieldNeed::kMandatory) {
      pending_.cells[i] = detail::EmptyContent(field.type);
    }
  }
}

RowView DataSetImpl::Post() {
  RequireActive();
  if (!Changing()) throw DataSetError("there is no change to post");
  FillMandatory();
  BeforeWrite();
  return View(state_ == DataSetState::kInsert ? PostInsert() : PostEdit());
}

const Row* DataSetImpl::PostInsert() {
  auto row = std::make_unique<Row>();
  row->cells = pending_.cells;
  store_->Insert(row.get());
  state_ = DataSetState::kBrowse;
  const Row* const inserted = row.get();
  detail::RowMove move;
  move.to = rows_->Insert(std::move(row));
  Place(move.to >= 0 ? move.to : position_);
  notices_.TellPlaces(move);
  return inserted;
}

Row* DataSetImpl::ChangedRow() {
  Row* row = rows_->FindById(pending_.id);
  if (row != nullptr) return row;
  state_ = DataSetState::kBrowse;
  throw StaleRecordError("\"" + storeName_ +
                         "\": the record to change was deleted by somebody else in the meantime");
}

const Row* DataSetImpl::PostEdit() {
  Row* row = ChangedRow();
  Row content;
  content.cells = pending_.cells;
  content.version = pending_.version;
  content.sum = pending_.sum;
  if (!store_->Update(pending_.id, &content)) ShowStaleRow(row, "change");
  state_ = DataSetState::kBrowse;
  const detail::RowMove move = rows_->Change(row, std::move(content));
  Place(move.to >= 0 ? move.to : position_);
  notices_.TellPlaces(move);
  return row;
}

void DataSetImpl::ShowStaleRow(Row* row, const char* what) {
  state_ = DataSetState::kBrowse;
  const std::unique_ptr<Row> stored = store_->ReadRow(row->id);
  detail::RowMove move;
  if (stored != nullptr) {
    move = rows_->Change(row, std::move(*stored));
  } else {
    move.from = rows_->Remove(row);
  }
  Place(move.to >= 0 ? move.to : position_);
  notices_.TellPlaces(move);
  throw StaleRecordError("\"" + storeName_ + "\": the record to " + what + " was " +
                         (stored != nullptr ? "changed" : "deleted") +
                         " by somebody else in the meantime");
}

void DataSetImpl::Delete() {
  RequireActive();
  if (state_ == DataSetState::kInsert) {
    Cancel();
    return;
  }
  Cancel();
  if (position_ < 0) throw DataSetError("an empty table has no record to delete");
  BeforeWrite();
  Row* row = rows_->At(position_);
  if (!store_->Delete(*row)) ShowStaleRow(row, "delete");
  detail::RowMove move;
  move.from = rows_->Remove(row);
  Place(position_);
  notices_.TellPlaces(move);
}

}  // namespace QvPlatform
