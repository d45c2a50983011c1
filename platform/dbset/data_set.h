#pragma once

#include <initializer_list>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "platform/dbset/data_buffer.h"
#include "platform/dbset/data_set_error.h"
#include "platform/dbset/data_set_state.h"
#include "platform/dbset/db_header.h"
#include "platform/dbset/field.h"
#include "platform/dbset/row_match.h"
#include "platform/dbset/row_view.h"

/// The table engine: a cursor over rows held in memory in the order of a sort field, written
/// through to a store that is durable when Post returns.
namespace QvPlatform {

class DataSetImpl;
namespace detail {
class Notices;
}

/// A cursor over the rows of one table.
///
/// Navigation follows the usual data set: Next on the last row sets Eof and stays there, Prior on
/// the first sets Bof. Moving the cursor in edit or append state posts nothing: the pending change
/// is cancelled. Look-ups give the row that a walk from the first row would meet first, through
/// hash indexes made on first use and kept up since.
class TQvDataSet {
 public:
  explicit TQvDataSet(TQvDataBuffer& buffer);
  ~TQvDataSet();
  TQvDataSet(const TQvDataSet&) = delete;
  TQvDataSet& operator=(const TQvDataSet&) = delete;

  TQvDataBuffer* const DataBuff;

  /// Loads the table. Throws StorageError if the stream is missing or not a sound table.
  void Open();
  void Close();
  [[nodiscard]] bool GetActive() const;
  [[nodiscard]] DataSetState State() const;

  void First();
  void Last();
  void Next();
  void Prior();
  [[nodiscard]] bool Eof() const;
  [[nodiscard]] bool Bof() const;
  /// Number of rows that show under the filter.
  [[nodiscard]] int RecordCount() const;
  /// Place of the current row in the order, from 0; -1 in an empty table.
  [[nodiscard]] int Position() const;
  void MoveTo(int position);
  /// As a failed walk leaves the cursor: on the last row with Eof set.
  void MoveBehindLast();

  void Append();
  void Edit();
  /// Durable when it returns, unless a TQvWriteGroup is open. On failure throws DataSetError (or
  /// StorageError), with the pending change still pending, or cancelled for StaleRecordError. Gives
  /// the row that was written: one that the filter hides is not current afterwards.
  RowView Post();
  void Cancel();
  /// Removes the current row; the next one becomes current, or the last one.
  void Delete();

  void DisableControls();
  void EnableControls();
  [[nodiscard]] bool ControlsDisabled() const;

  [[nodiscard]] int FieldCount() const;
  [[nodiscard]] TField* FindField(std::string_view name);
  /// Throws DataSetError for a name that the table does not have.
  [[nodiscard]] TField& FieldByName(std::string_view name);
  [[nodiscard]] TField& Fields(int index);
  [[nodiscard]] const TQvDbHeader& Header() const;

  /// The current row (or the pending one in edit and append state); empty in an empty table.
  [[nodiscard]] RowView CurrentRow() const;
  [[nodiscard]] RowView Row(int position) const;
  /// The first row in table order that meets all conditions (at least one); empty if none.
  [[nodiscard]] RowView FindFirst(std::span<const RowMatch> matches) const;
  [[nodiscard]] RowView FindFirst(std::initializer_list<RowMatch> matches) const;
  /// All such rows in table order; kAll also gives those that the filter hides.
  [[nodiscard]] std::vector<RowView> FindAll(std::initializer_list<RowMatch> matches,
                                             RowScope scope = RowScope::kShown) const;
  /// Place of a row in the order, from 0; -1 for a row that does not show.
  [[nodiscard]] int PositionOf(RowView row) const;
  /// Moves to that row; false and unmoved if it does not show.
  bool MoveTo(RowView row);

 private:
  friend class TQvWriteGroup;
  friend class TDataSource;
  [[nodiscard]] detail::Notices& Notices() const;

  std::unique_ptr<DataSetImpl> impl_;
};

}  // namespace QvPlatform
