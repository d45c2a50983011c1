#pragma once

#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dbset/data_buffer.h"
#include "platform/dbset/data_set_error.h"
#include "platform/dbset/data_set_state.h"
#include "platform/dbset/db_header.h"
#include "platform/dbset/field.h"
#include "platform/dbset/group_mark.h"
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
  /// The data set is closed. The buffer has to outlive it.
  explicit TQvDataSet(TQvDataBuffer& buffer);
  ~TQvDataSet();
  TQvDataSet(const TQvDataSet&) = delete;
  TQvDataSet& operator=(const TQvDataSet&) = delete;

  /// The buffer that the data set was made over.
  TQvDataBuffer* const DataBuff;

  /// Loads the table and stands on its first row. Throws StorageError if the stream is missing or
  /// not a sound table. Does nothing for an open data set.
  void Open();
  /// Drops a pending change and gives the store up; the rows are left to the buffer. Does nothing
  /// for a closed data set.
  void Close();
  /// Whether somebody else has changed the table since its rows were read; true also for a table
  /// that was replaced or cannot be read. False for a closed data set. Costs the reading of a
  /// counter.
  [[nodiscard]] bool HasMoved() const;
  /// Brings the rows up to date, if the table has moved on. The cursor stays on its record (or on
  /// its place, if that is gone), and so do order, filter and a pending change; views of rows that
  /// somebody else has changed are no longer valid. Whether anything was read. Throws StorageError,
  /// with the rows as they were. Does nothing for a closed data set.
  bool Refresh();
  /// Whether the data set is open.
  [[nodiscard]] bool GetActive() const;
  /// What the data set is doing.
  [[nodiscard]] DataSetState State() const;

  /// Moves to the first row and sets Bof. This and all moves drop a pending change, and throw
  /// DataSetError where the data set is closed.
  void First();
  /// Moves to the last row and sets Eof.
  void Last();
  /// Moves to the next row, or sets Eof on the last one.
  void Next();
  /// Moves to the row before, or sets Bof on the first one.
  void Prior();
  /// Whether the last move ran against the end of the rows; true in an empty table.
  [[nodiscard]] bool Eof() const;
  /// Whether the last move ran against the start of the rows; true in an empty table.
  [[nodiscard]] bool Bof() const;
  /// Number of rows that show under the filter.
  [[nodiscard]] int RecordCount() const;
  /// Place of the current row in the order, from 0; -1 in an empty table.
  [[nodiscard]] int Position() const;
  /// Moves to the row at this place, from 0. Throws DataSetError where there is none.
  void MoveTo(int position);
  /// Leaves the cursor as a walk that found nothing does: on the last row, with Eof set.
  void MoveBehindLast();

  /// Begins a new record; Post writes it. Throws DataSetError where the data set is closed.
  void Append();
  /// Begins a change of the current record; Post writes it. Throws DataSetError in an empty table.
  /// Does nothing while a change is under way.
  void Edit();
  /// Durable when it returns, unless a TQvWriteGroup is open. On failure throws DataSetError (or
  /// StorageError), with the pending change still pending, or cancelled for StaleRecordError. Gives
  /// the row that was written: one that the filter hides is not current afterwards.
  RowView Post();
  /// Drops a pending change.
  void Cancel();
  /// Removes the current row; the next one becomes current, or the last one.
  void Delete();

  /// Holds all notices to observers back, until as many calls of EnableControls.
  void DisableControls();
  /// Lets notices go out again, first what the observers have missed. One call too many does
  /// nothing.
  void EnableControls();
  /// Whether notices are held back.
  [[nodiscard]] bool ControlsDisabled() const;

  /// Number of the fields of the open table; 0 for a closed one.
  [[nodiscard]] int FieldCount() const;
  /// The field of this name, whatever the case of its letters; null if there is none or the data
  /// set is closed. Fields stay where they are as long as the table has as many of them.
  [[nodiscard]] TField* FindField(std::string_view name);
  /// Throws DataSetError for a name that the table does not have.
  [[nodiscard]] TField& FieldByName(std::string_view name);
  /// The field of this number, from 0. Throws DataSetError for a number that the table does not
  /// have.
  [[nodiscard]] TField& Fields(int index);
  /// The declaration of the table that was opened last.
  [[nodiscard]] const TQvDbHeader& Header() const;

  /// The last key that the table has given away, also to a record that is gone; 0 for none. This
  /// and the five below throw DataSetError for a closed data set, and StorageError.
  [[nodiscard]] int LastKey() const;
  /// Gives new records keys behind this one.
  void RaiseLastKey(int key);
  /// What is noted, beside its fields, of the record of that key under a word; nothing if nothing
  /// is.
  [[nodiscard]] std::optional<std::string> Note(int key, std::string_view kind) const;
  /// Notes something of the record of that key under a word, in the place of what was noted there.
  /// It lies beside the record in the store, is durable as a Post is, and goes with the record.
  void SetNote(int key, std::string_view kind, std::string_view value);
  /// What is wrong with the file that holds the table, found by reading all of it; nothing if it is
  /// sound.
  [[nodiscard]] std::vector<std::string> FindDamage() const;
  /// The last group of changes over several files that wrote to this one.
  [[nodiscard]] GroupMark LastGroup() const;

  /// The current row (or the pending one in edit and append state); empty in an empty table.
  [[nodiscard]] RowView CurrentRow() const;
  /// The row at this place, from 0; empty where there is none.
  [[nodiscard]] RowView Row(int position) const;
  /// The first row in table order that meets all conditions (at least one); empty if none.
  [[nodiscard]] RowView FindFirst(std::span<const RowMatch> matches) const;
  /// The same, for conditions written out in the call.
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
  friend class TQvReadGroup;
  friend class TDataSource;
  [[nodiscard]] detail::Notices& Notices() const;

  std::unique_ptr<DataSetImpl> impl_;
};

}  // namespace QvPlatform
