#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/dbset/data_set.h"
#include "platform/dbset/row_set.h"
#include "platform/dbset/table_store.h"

namespace QvPlatform {

class WriteGroupState;

/// The cursor, the states and the notices of one data set, over its rows and its store.
class DataSetImpl {
 public:
  explicit DataSetImpl(TQvDataBuffer& buffer) : buffer_(buffer) {}
  ~DataSetImpl();
  DataSetImpl(const DataSetImpl&) = delete;
  DataSetImpl& operator=(const DataSetImpl&) = delete;

  void Open();
  void Close();
  [[nodiscard]] bool Active() const { return state_ != DataSetState::kInactive; }
  [[nodiscard]] DataSetState State() const { return state_; }

  void First();
  void Last();
  void Next();
  void Prior();
  void MoveTo(int position);
  void MoveBehindLast();
  [[nodiscard]] bool Eof() const { return eof_; }
  [[nodiscard]] bool Bof() const { return bof_; }
  [[nodiscard]] int Count() const { return Active() ? rows_->Count() : 0; }
  [[nodiscard]] int Position() const { return position_; }

  void Append();
  void Edit();
  RowView Post();
  void Cancel();
  void Delete();

  void DisableControls();
  void EnableControls();
  [[nodiscard]] bool ControlsDisabled() const { return disabled_ > 0; }

  [[nodiscard]] std::vector<TField>& Fields() { return fields_; }
  [[nodiscard]] TField* FindField(std::string_view name);
  /// That of the last Open.
  [[nodiscard]] const TQvDbHeader& Header() const { return header_; }

  [[nodiscard]] RowView CurrentRow() const { return View(Current()); }
  [[nodiscard]] RowView RowAt(int position) const;
  [[nodiscard]] RowView FindFirst(std::span<const RowMatch> matches) const;
  [[nodiscard]] std::vector<RowView> FindAll(std::span<const RowMatch> matches,
                                             RowScope scope) const;
  [[nodiscard]] int PositionOf(RowView row) const;

  /// The content of a field of the current or pending row.
  [[nodiscard]] const detail::Cell& Content(int field) const;
  void SetContent(int field, detail::Cell content);
  [[nodiscard]] const TQvDbField& Definition(int field) const;

  void AddSource(TDataSource* source) { sources_.push_back(source); }
  void RemoveSource(TDataSource* source) { std::erase(sources_, source); }
  void TellSource(TDataSource* source, const std::function<void(TDataSetObserver&)>& tell);

  [[nodiscard]] const std::shared_ptr<WriteGroupState>& Group() const { return group_; }
  [[nodiscard]] const std::shared_ptr<detail::TableStore>& Store() const { return store_; }
  void EnterGroup(std::shared_ptr<WriteGroupState> group) { group_ = std::move(group); }
  /// Also lets go of what a closing inside of the group had kept.
  void LeaveGroup();

 private:
  struct CachedTable;

  void RequireActive() const;
  void LoadRows();
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
  [[noreturn]] void ShowStaleRow(detail::Row* row, const char* what);

  void TellAll(const std::function<void(TDataSetObserver&)>& tell);
  void TellReset();
  void TellMoved();
  void TellPlaces(const detail::RowSet::Move& move);

  TQvDataBuffer& buffer_;
  std::shared_ptr<detail::TableStore> store_;
  std::string storeName_;
  std::unique_ptr<detail::RowSet> rows_;
  TQvDbHeader header_;
  std::vector<TField> fields_;
  std::shared_ptr<WriteGroupState> group_;

  DataSetState state_ = DataSetState::kInactive;
  int position_ = -1;
  bool bof_ = true;
  bool eof_ = true;
  /// The row under change, while one is.
  detail::Row pending_;

  std::vector<TDataSource*> sources_;
  int disabled_ = 0;
  bool rowsChangedSilently_ = false;
  int positionWhenDisabled_ = -1;
};

/// What the data sets of a write group share.
class WriteGroupState {
 public:
  explicit WriteGroupState(std::vector<DataSetImpl*> members);
  ~WriteGroupState();
  WriteGroupState(const WriteGroupState&) = delete;
  WriteGroupState& operator=(const WriteGroupState&) = delete;

  [[nodiscard]] detail::StoreTransaction& Transaction() { return *transaction_; }
  /// A data set that is destroyed while the group is open.
  void Forget(DataSetImpl* member) { std::erase(members_, member); }
  /// Ends the transaction, undoing what was not committed, and sets the members free.
  void End() noexcept;

  /// What is to happen beside the tables when the group ends.
  struct Follower {
    std::function<void()> done;
    std::function<void()> undone;
  };
  void AddFollower(Follower follower) { followers_.push_back(std::move(follower)); }
  [[nodiscard]] std::size_t FollowerCount() const { return followers_.size(); }
  void TellDone() noexcept;
  /// Tells those from the given one on, the last one first, and forgets them.
  void TellUndone(std::size_t first) noexcept;

 private:
  std::vector<Follower> followers_;
  std::vector<DataSetImpl*> members_;
  std::unique_ptr<detail::StoreTransaction> transaction_;
};

}  // namespace QvPlatform
