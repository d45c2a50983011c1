#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/dbset/current_record.h"
#include "platform/dbset/data_buffer.h"
#include "platform/dbset/data_set_state.h"
#include "platform/dbset/field.h"
#include "platform/dbset/notices.h"
#include "platform/dbset/row_match.h"
#include "platform/dbset/row_set.h"
#include "platform/dbset/row_view.h"
#include "platform/dbset/table_store.h"
#include "platform/dbset/write_group_state.h"

namespace QvPlatform {

/// The cursor and the states of one data set, over its rows and its store.
class DataSetImpl final : public detail::CurrentRecord, public detail::GroupMember {
 public:
  /// The buffer has to outlive the data set.
  explicit DataSetImpl(TQvDataBuffer& buffer) : buffer_(buffer) {}
  ~DataSetImpl();
  DataSetImpl(const DataSetImpl&) = delete;
  DataSetImpl& operator=(const DataSetImpl&) = delete;

  /// Loads the rows, or takes over what the buffer has kept. Throws StorageError; the data set is
  /// then closed.
  void Open();
  /// Leaves the rows to the buffer, at once or, inside a group of changes, when that is over.
  void Close();
  /// Whether somebody else has changed the table since its rows were read; true for one that was
  /// replaced or cannot be read. False for a closed data set.
  [[nodiscard]] bool HasMoved();
  /// Brings the rows up to date, if the table has moved on; cursor, order, filter and a pending
  /// change stay. Whether anything was read. Throws StorageError; the rows are then as they were.
  bool Refresh() override;
  /// Opens the store anew, if another file has come into the place of the one that is open, and
  /// loads it. Throws StorageError; the data set then stays on what it had.
  void ReattachIfReplaced();
  /// Whether the data set is open.
  [[nodiscard]] bool Active() const { return state_ != DataSetState::kInactive; }
  /// What the data set is doing.
  [[nodiscard]] DataSetState State() const { return state_; }

  /// Moves to the first row. This and all moves drop a pending change first.
  void First();
  /// Moves to the last row, and sets Eof.
  void Last();
  /// Moves to the next row, or sets Eof on the last one.
  void Next();
  /// Moves to the row before, or sets Bof on the first one.
  void Prior();
  /// Moves to a place, from 0. Throws DataSetError where no row stands there.
  void MoveTo(int position);
  /// Leaves the cursor on the last row, with Eof set.
  void MoveBehindLast();
  /// Whether the last move ran against the end.
  [[nodiscard]] bool Eof() const { return eof_; }
  /// Whether the last move ran against the start.
  [[nodiscard]] bool Bof() const { return bof_; }
  /// Checks that the data set is open, and gives its store. Throws DataSetError.
  [[nodiscard]] detail::TableStore& OpenedStore();
  /// Gives new records keys behind this one.
  void RaiseLastKey(int key);
  /// Notes something of the record of an identity.
  void SetNote(std::int64_t id, std::string_view kind, std::string_view value);
  /// Number of rows that show; 0 for a closed data set.
  [[nodiscard]] int Count() const { return Active() ? rows_->Count() : 0; }
  /// Place of the cursor, from 0; -1 in an empty or closed table.
  [[nodiscard]] int Position() const { return position_; }

  /// Makes an empty record the pending one.
  void Append();
  /// Makes a copy of the current row the pending record, unless there is one.
  void Edit();
  /// Writes the pending record to the store first and to the rows in memory after it.
  RowView Post();
  /// Forgets the pending record.
  void Cancel();
  /// Removes the current row from the store first and from memory after it; of a new record nothing
  /// but the pending one goes.
  void Delete();

  /// Where observers are told what happens here.
  [[nodiscard]] detail::Notices& Notices() { return notices_; }

  /// The fields of the table that was opened last.
  [[nodiscard]] std::vector<TField>& Fields() { return fields_; }
  /// Null for a name that the open table does not have.
  [[nodiscard]] TField* FindField(std::string_view name);
  /// The declaration of the table that was opened last.
  [[nodiscard]] const TQvDbHeader& Header() const { return header_; }

  /// The pending record, the row under the cursor, or an empty view.
  [[nodiscard]] RowView CurrentRow() const { return View(Current()); }
  /// The row at a place, from 0; empty where there is none.
  [[nodiscard]] RowView RowAt(int position) const;
  /// The first row that shows and meets all conditions; empty if none does.
  [[nodiscard]] RowView FindFirst(std::span<const RowMatch> matches) const;
  /// All such rows, in table order.
  [[nodiscard]] std::vector<RowView> FindAll(std::span<const RowMatch> matches,
                                             RowScope scope) const;
  /// Place of a row; -1 for one that does not show, and for a new record.
  [[nodiscard]] int PositionOf(RowView row) const;

  [[nodiscard]] const TQvDbField& Definition(int field) const override;
  [[nodiscard]] const detail::Cell& Content(int field) const override;
  void SetContent(int field, detail::Cell content) override;

  /// The group of changes that the data set is in; null outside of any.
  [[nodiscard]] const std::shared_ptr<detail::WriteGroupState>& Group() const { return group_; }
  /// What keeps the rows; null for a closed data set that is in no group.
  [[nodiscard]] const std::shared_ptr<detail::TableStore>& Store() const { return store_; }
  /// Writes go into the transaction of this group from now on, until LeaveGroup.
  void EnterGroup(std::shared_ptr<detail::WriteGroupState> group) { group_ = std::move(group); }
  /// Also lets go of what a closing inside of the group had kept.
  void LeaveGroup() override;

 private:
  struct CachedTable;

  void RequireActive() const;
  [[nodiscard]] std::shared_ptr<detail::TableStore> OpenStore();
  void LoadRows();
  void TakeRows(detail::LoadedTable table);
  [[nodiscard]] std::vector<detail::RecordMark> Marks() const;
  void Apply(detail::TableChanges changes);
  [[nodiscard]] std::int64_t CurrentId() const;
  /// Puts the cursor on the row of that identity, or else on that place, and tells the observers.
  void Settle(std::int64_t id, int position);
  void TakeOverOrLoad();
  /// Leaves the rows to the buffer, if they are what the store holds, and closes the store.
  void Park();
  void LetGo() noexcept;
  void ReloadAfterUndo() noexcept;
  [[nodiscard]] detail::Arrangement WantedArrangement() const;
  void MakeFields();
  [[nodiscard]] bool Changing() const {
    return state_ == DataSetState::kEdit || state_ == DataSetState::kInsert;
  }
  /// Puts the cursor on a row of the table, or nowhere in an empty one.
  void Place(int position);
  void MoveCursor(int position, bool bof, bool eof);
  [[nodiscard]] const detail::Row* Current() const;
  static RowView View(const detail::Row* row);

  void BeforeWrite();
  void FillMandatory();
  const detail::Row* PostInsert();
  const detail::Row* PostEdit();
  /// The row under change in memory. Throws StaleRecordError where it has gone since.
  [[nodiscard]] detail::Row* ChangedRow();
  [[noreturn]] void ShowStaleRow(detail::Row* row, const char* what);

  TQvDataBuffer& buffer_;
  std::shared_ptr<detail::TableStore> store_;
  std::string storeName_;
  std::unique_ptr<detail::RowSet> rows_;
  TQvDbHeader header_;
  std::vector<TField> fields_;
  std::shared_ptr<detail::WriteGroupState> group_;

  DataSetState state_ = DataSetState::kInactive;
  int position_ = -1;
  bool bof_ = true;
  bool eof_ = true;
  /// The row under change, while one is.
  detail::Row pending_;

  detail::Notices notices_{position_};
};

}  // namespace QvPlatform
