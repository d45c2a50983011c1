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

  [[nodiscard]] detail::Notices& Notices() { return notices_; }

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

  [[nodiscard]] const TQvDbField& Definition(int field) const override;
  [[nodiscard]] const detail::Cell& Content(int field) const override;
  void SetContent(int field, detail::Cell content) override;

  [[nodiscard]] const std::shared_ptr<detail::WriteGroupState>& Group() const { return group_; }
  [[nodiscard]] const std::shared_ptr<detail::TableStore>& Store() const { return store_; }
  void EnterGroup(std::shared_ptr<detail::WriteGroupState> group) { group_ = std::move(group); }
  /// Also lets go of what a closing inside of the group had kept.
  void LeaveGroup() override;

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
