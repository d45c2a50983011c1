#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dbset/db_header.h"

/// The table engine: a cursor over rows held in memory in the order of a sort field, written
/// through to a store that is durable when Post returns.
namespace QvPlatform {

class DataSetImpl;
class TQvDataSet;
class TDataSource;

/// An operation that the data set's state does not allow, or a store that refused.
class DataSetError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Another process changed or removed the row since it was read. The edit has been cancelled and
/// the data set shows what stands in the store now.
class StaleRecordError : public DataSetError {
 public:
  using DataSetError::DataSetError;
};

/// The one kind of filter that tables know: an integer field equal to a value.
class TQvDbIntFilter {
 public:
  enum TFilterOp { kEqual = 1 };
};

enum class QvDataBufferType { kResource = 1, dtFileStream = 2 };

/// Where a table lies and how its rows are arranged. Changes of the last two groups are made with
/// the data set closed, then the buffer closed, and take effect at the next Open.
class TQvDataBuffer {
 public:
  int Tag = 0;
  std::string StreamName;

  TQvDataBuffer();
  ~TQvDataBuffer();
  TQvDataBuffer(const TQvDataBuffer&) = delete;
  TQvDataBuffer& operator=(const TQvDataBuffer&) = delete;

  [[nodiscard]] QvDataBufferType GetDataBufferType() const { return type_; }
  void SetDataBufferType(QvDataBufferType type) { type_ = type; }
  /// The data set's Close has given up the store already; the rows stay in memory, and the next
  /// Open takes them over if the store is still as it was.
  void Close();

  /// Rows run in ascending order of the field with this number: numbers by value, text by the
  /// collation of the user's locale, equals in the order of their making. -1 is the order of
  /// making.
  void SetSortField(int index, bool descending, bool rebuild);
  /// Shows only rows whose integer field equals the value.
  void SetFilter(int index, int value, TQvDbIntFilter::TFilterOp op, bool rebuild);
  void ClearFilter(bool rebuild);

 private:
  friend class TQvDataSet;
  friend class DataSetImpl;
  QvDataBufferType type_ = QvDataBufferType::dtFileStream;
  int sortField_ = -1;
  bool descending_ = false;
  int filterField_ = -1;
  int filterValue_ = 0;
  std::shared_ptr<void> cache_;  // what a reopening may take over when the store did not change
};

/// One field of the current record. Reading an empty table gives 0 or "". Writing needs a data set
/// in edit or append state and throws DataSetError otherwise.
class TField {
 public:
  [[nodiscard]] int GetIndex() const { return index_; }
  [[nodiscard]] const TQvDbField& Definition() const;
  [[nodiscard]] bool IsEmpty() const;
  /// 0 where the content is no number; a text is read as a decimal number.
  [[nodiscard]] int AsInteger() const;
  [[nodiscard]] double AsFloat() const;
  /// Integers in decimal, floats in the shortest form that reads back the same.
  [[nodiscard]] std::string AsString() const;
  void SetInteger(int value);
  void SetFloat(double value);
  void SetString(std::string_view value);
  void Clear();

 private:
  friend class DataSetImpl;
  DataSetImpl* owner_ = nullptr;
  int index_ = -1;
};

/// A row seen without moving the cursor. Valid until the data set next changes.
class RowView {
 public:
  RowView() = default;
  explicit operator bool() const { return row_ != nullptr; }
  [[nodiscard]] int GetInteger(int field) const;
  [[nodiscard]] double GetFloat(int field) const;
  /// The content of a text field; "" for fields of other types.
  [[nodiscard]] const std::string& GetText(int field) const;
  /// The content of any field as text, as TField::AsString gives it.
  [[nodiscard]] std::string GetString(int field) const;
  /// Two views are equal when they see the same row.
  bool operator==(const RowView&) const = default;

 private:
  friend class DataSetImpl;
  const void* row_ = nullptr;
};

/// One condition of a look-up.
struct RowMatch {
  enum class Kind { kInteger, kText, kFolded };
  int field = -1;
  Kind kind = Kind::kInteger;
  int integer = 0;
  std::string text;

  static RowMatch Integer(int field, int value) { return {field, Kind::kInteger, value, {}}; }
  /// Equal character for character.
  static RowMatch Text(int field, std::string value) {
    return {field, Kind::kText, 0, std::move(value)};
  }
  /// Equal after trimming and upper-casing; `folded` is FoldName of the text looked for.
  static RowMatch Folded(int field, std::string folded) {
    return {field, Kind::kFolded, 0, std::move(folded)};
  }
};

/// Which rows a look-up sees: those that show under the filter, or all of the table.
enum class RowScope { kShown, kAll };

enum class DataSetState { kInactive, kBrowse, kEdit, kInsert };

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
  friend class DataSetImpl;
  friend class TQvWriteGroup;
  friend class TDataSource;
  std::unique_ptr<DataSetImpl> impl_;
};

/// Posts and deletes of several tables as one transaction: all are durable when Commit returns, or
/// none is. Groups nest; only the outermost one commits. A group that is destroyed without Commit
/// undoes its changes in the store and has the data sets reload.
class TQvWriteGroup {
 public:
  explicit TQvWriteGroup(const std::vector<TQvDataSet*>& dataSets);
  ~TQvWriteGroup();
  TQvWriteGroup(const TQvWriteGroup&) = delete;
  TQvWriteGroup& operator=(const TQvWriteGroup&) = delete;
  /// Throws StorageError if the store refuses; everything the group wrote is then undone.
  void Commit();
  /// For what lies beside the tables and takes no part in their transaction, such as plain files:
  /// `done` runs once the outermost group has committed, `undone` once what this group wrote is
  /// undone, the last call first. Either may be empty; what they throw is dropped.
  void AtEnd(std::function<void()> done, std::function<void()> undone);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

/// Hears what happens to a data set. While controls are disabled nothing is told; enabling them
/// again tells one OnRowsReset if rows changed, else one OnCurrentMoved if the cursor moved.
class TDataSetObserver {
 public:
  virtual ~TDataSetObserver() = default;
  /// Everything may have changed; also at Open and Close.
  virtual void OnRowsReset() = 0;
  virtual void OnRowInserted(int position) = 0;
  virtual void OnRowChanged(int position) = 0;
  virtual void OnRowRemoved(int position) = 0;
  virtual void OnCurrentMoved(int position) = 0;
};

/// Binds observers to a data set. A disabled source tells nothing; enabling it tells OnRowsReset.
class TDataSource {
 public:
  explicit TDataSource(TQvDataSet* dataSet = nullptr);
  ~TDataSource();
  TDataSource(const TDataSource&) = delete;
  TDataSource& operator=(const TDataSource&) = delete;

  [[nodiscard]] TQvDataSet* DataSet() const { return dataSet_; }
  [[nodiscard]] bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled);
  void AddObserver(TDataSetObserver* observer);
  void RemoveObserver(TDataSetObserver* observer);

 private:
  friend class DataSetImpl;
  TQvDataSet* dataSet_;
  bool enabled_ = true;
  std::vector<TDataSetObserver*> observers_;
};

}  // namespace QvPlatform
