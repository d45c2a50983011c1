#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "database/data_module.h"
#include "platform/data/tree_members.h"
#include "platform/dbset/data_set.h"
#include "platform/ui/user_interface.h"
#include "processors/code_rows.h"
#include "processors/edit_lock.h"
#include "processors/object_descriptor.h"
#include "processors/own_members.h"
#include "processors/record_image.h"
#include "processors/record_reader.h"
#include "processors/record_writer.h"
#include "processors/table_columns.h"
#include "processors/written_subtree.h"

namespace QvPlatform {
class TQvWriteGroup;
}

namespace QvRefSystem {

using QvCommonUtils::TStringTree;
using QvPlatform::TComponent;
/// A list of lines of text.
using TStrings = std::vector<std::string>;

/// A tree held a type code outside its closed list, where only code that knows the type can tell.
class InvalidTypeError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Storage refused what lies beside a record, and the user was told already.
class ToldStorageError : public QvPlatform::StorageError {
 public:
  using QvPlatform::StorageError::StorageError;
};

/// Stands between one table and everything above it: locating, describing, writing to a tree,
/// finding or adding from a tree, and deleting. Its state is the table's current record; it keeps
/// no copy of any record. One processor exists for each object type while a database is open.
///
/// The frames of WriteToTree, InsertFromTree, CheckNotUsed and DeleteRecord work over the object's
/// descriptor; a subclass overrides only the steps where its object differs.
class TQvRfDataProcessor : public EditLock, protected OwnMembers {
 public:
  /// Works on the table that the descriptor names. Both must outlive the processor. Throws
  /// DataSetError for a table that lacks a column which a member needs.
  TQvRfDataProcessor(TdatamoduleQvRfData& data, const ObjectDescriptor& descriptor);
  TQvRfDataProcessor(const TQvRfDataProcessor&) = delete;
  TQvRfDataProcessor& operator=(const TQvRfDataProcessor&) = delete;
  ~TQvRfDataProcessor() override = default;

  /// Key of a record of this table, 0 for none.
  [[nodiscard]] int KeyOf(QvPlatform::RowView row) const { return row.GetInteger(keyField_); }
  /// Key of the current record, 0 in an empty table.
  [[nodiscard]] virtual int GetCurrentKey() const;
  /// Moves to the record with that key. Key 0 or below leaves the cursor; a key that is not there
  /// leaves it behind the last record.
  virtual bool LocateKey(int key);
  /// The record with that key, also one that a filter hides; empty if there is none. Moves no
  /// cursor.
  [[nodiscard]] QvPlatform::RowView RowOfKey(int key) const;
  /// Moves to the next (prior) record whose NAME holds the text, case aside; the current record is
  /// not tested. An empty text is found at once. False and unmoved if there is none.
  virtual bool FindNextByName(std::string_view text);
  /// The same backwards.
  virtual bool FindPriorByName(std::string_view text);
  /// The description of the current record; false on an empty table.
  virtual bool GetInfoLines(TStrings* lines);
  /// Writes the current record into the tree itself (id 0, cleared first) or into a new subtree
  /// (id, index). On failure the tree is partly filled and to be thrown away.
  virtual bool WriteToTree(TStringTree* tree, int id, int index);
  /// Removes the current record if nothing refers to it and the user confirms. True unless it was
  /// refused; a No of the user is no refusal.
  virtual bool DeleteRecord(TComponent* owner);
  /// DeleteRecord for those whom a user drives: asks first where DeleteRecord itself does not.
  bool DeleteWithConsent(TComponent* owner);
  /// The same, refused also where a record refers to the current one that CheckNotUsed does not ask
  /// for: who refers to it is shown then.
  bool DeleteUnused(TComponent* owner);
  /// False, after a warning, if the current record is under editing.
  virtual bool CheckNotEditing();
  /// Finds the equal record or adds one, its sub-objects first. Returns its key, or 0 if the tree
  /// does not hold a whole object; what the sub-objects added then stays. Objects without an
  /// equality are added whenever they come, and leave no notes of it in the tree.
  virtual int InsertFromTree(TStringTree* tree);
  /// Whether the last InsertFromTree has failed because the store refused, which the user was told.
  [[nodiscard]] bool StorageFailed() const { return storageFailed_; }
  /// False, after showing who refers to it, if the current record is used.
  virtual bool CheckNotUsed(TComponent* owner);

  /// Either pointer may be null. Gives the type's stored label and the current NAME; returns the
  /// code of the type.
  signed char GetNames(std::string* typeName, std::string* name) const;
  /// Either pointer may be null. Gives the text of the type that dialogs show and the current NAME;
  /// returns the code of the type.
  signed char GetDisplayNames(std::string* typeText, std::string* name) const;
  /// Key of the record behind the current one, or ahead of it if it is the last. `key` is the
  /// current record's; it is current again afterwards.
  [[nodiscard]] int GetNeighbourKey(int key);
  /// Locates the record with the greatest LAST_USE above 0, the first in table order of equals;
  /// returns its key, or 0 with the cursor behind the last record.
  int GetLastUsedKey();
  /// Closes and opens the table, back to the current record.
  void Reopen();
  /// Locks the current record for editing. Who locks it twice unlocks it twice.
  void PushEditKey() { Lock(GetCurrentKey()); }
  /// Takes off one lock of the current record.
  void PopEditKey() { Unlock(GetCurrentKey()); }
  /// Whether a dialog has the current record open.
  [[nodiscard]] bool IsUnderEditing() const { return IsLocked(GetCurrentKey()); }
  /// Takes off all levels of disabled controls, so that a dialog over the table is live.
  void ReleaseControls();
  /// Disables the controls as many times as ReleaseControls has enabled them.
  void RestoreControls();
  /// Whether the table is a file in a folder rather than part of a container.
  [[nodiscard]] bool IsFileDatabase() const;

  /// A text in which two records of this type agree where they are equal: storing the tree of the
  /// one finds the other.
  [[nodiscard]] std::string ComparableRecord(QvPlatform::RowView row) const;

  /// What is true of the object type as data.
  [[nodiscard]] const ObjectDescriptor& Descriptor() const { return descriptor_; }
  /// The open database.
  [[nodiscard]] TdatamoduleQvRfData& Data() const { return data_; }

  /// The code of the object type: a value of TObjectType.
  signed char ObjectType;
  /// The stored label of the type, which no translation touches.
  std::string TypeName;
  /// The table through its cursor and its filters.
  QvPlatform::TQvDataSet* DataSet;
  /// The rows of the table, below the cursor.
  QvPlatform::TQvDataBuffer* DataBuffer;
  /// How many levels of disabled controls ReleaseControls took off.
  int SuspendedControls = 0;

 protected:
  /// Writes the record's members into `tree`; the default walks the descriptor's items.
  [[nodiscard]] virtual bool WriteContent(TStringTree* tree);
  /// Nothing, unless a type has such items.
  [[nodiscard]] bool WriteOwnItem(TStringTree* tree, const TreeItem& item,
                                  const RecordView& record) override;
  [[nodiscard]] bool ReadOwnItem(TStringTree* tree, const TreeItem& item,
                                 RecordImage* image) override;
  /// Locates the record and has its processor write it.
  [[nodiscard]] bool WriteSubobject(TStringTree* tree, TObjectType object, int key,
                                    int id) override;
  [[nodiscard]] bool StoreSubobject(TStringTree* tree, const TreeItem& item, int* key) override;
  /// Reads what the tree must hold into the image, storing the sub-objects. False if it is not
  /// whole. The default walks the descriptor's items.
  [[nodiscard]] virtual bool ReadContent(TStringTree* tree, RecordImage* image);
  /// Whether a row that equals the image in the descriptor's columns equals it in all else.
  [[nodiscard]] virtual bool IsEqualBeside(const RecordImage& /*image*/,
                                           QvPlatform::RowView /*row*/) const {
    return true;
  }
  /// A text in which two rows agree where IsEqualBeside finds what they say equal. The integrity
  /// check finds duplicates by it.
  [[nodiscard]] virtual std::string ComparableBeside(QvPlatform::RowView /*row*/) const {
    return {};
  }
  /// Whether objects of this type may be added; the type tables are closed.
  [[nodiscard]] virtual bool CanAppend() const { return true; }
  /// Adds what belongs to a new record beside it. The default adds the rows of its codes.
  virtual void AppendBeside(TStringTree* tree, const RecordImage& image, int key);
  /// An equal record was found: takes back what was stored for this image alone.
  virtual void DropBeside(const RecordImage& /*image*/) {}
  /// Removes what goes with the current record, which is removed next.
  virtual void DeleteBeside(int /*key*/) {}
  /// Removes the record of that key with what goes with it, if it is there; the neighbour is
  /// current then. Throws StorageError or DataSetError. To be called inside a group of changes.
  virtual void RemoveKey(int key, QvPlatform::TQvWriteGroup& group);
  /// Whether DeleteRecord asks the user.
  [[nodiscard]] virtual bool AsksToDelete() const { return true; }

  /// The descriptor's item of that id, the first of several.
  [[nodiscard]] const TreeItem& ItemOf(int id) const;
  [[nodiscard]] bool WriteItem(TStringTree* tree, const TreeItem& item, const RecordView& record) {
    return writer_.WriteItem(tree, item, record);
  }
  [[nodiscard]] bool ReadItem(TStringTree* tree, const TreeItem& item, RecordImage* image) {
    return reader_.ReadItem(tree, item, image);
  }
  /// Adds the rows of the codes that the tree holds for a new record of that key.
  void AppendCodes(const TStringTree& tree, std::span<const TreeItem> items, int key);
  /// Throws InvalidTypeError for a code that is no object type.
  [[nodiscard]] TQvRfDataProcessor& ProcessorOf(TObjectType type) const;
  /// Tells the user that the database could not be written.
  void ReportStorage(const std::exception& error);

  /// Field number of a column of this table; throws DataSetError if it has none.
  [[nodiscard]] int Column(std::string_view name) const { return columns_.Of(name); }
  [[nodiscard]] int CurrentInteger(std::string_view column) const;
  [[nodiscard]] const std::string& CurrentText(std::string_view column) const;
  [[nodiscard]] int KeyColumn() const { return keyField_; }
  [[nodiscard]] int NameColumn() const { return nameField_; }
  /// Removes the record of another type that the current record's column refers to, if no other
  /// record of this table refers to it. Nobody is asked.
  void DeleteIfUsedOnce(TObjectType object, std::string_view column);

  TdatamoduleQvRfData& data_;
  TableColumns columns_;
  CodeRows codes_;
  RecordWriter writer_;
  RecordReader reader_;

 private:
  int StoreFromTree(TStringTree* tree);
  [[nodiscard]] QvPlatform::RowView FindEqual(const RecordImage& image) const;
  [[nodiscard]] int AppendRecord(const RecordImage& image);
  void WriteResultNotes(TStringTree* tree, int key, bool inserted) const;
  [[nodiscard]] bool ConfirmDelete();
  /// Who is asked for before a record goes.
  enum class Users { kOfDescriptor, kOfCatalogue };
  [[nodiscard]] std::vector<QvPlatform::UsedByRow> UsersOf(int key, Users users) const;
  /// Takes in what others have written. False, after telling the user, if it cannot be read.
  [[nodiscard]] bool BringUpToDate();
  /// What became of a removal; the user was told why of kRefused.
  enum class Removal { kDone, kUsed, kRefused };
  /// Removes the record, unless somebody uses it by now.
  [[nodiscard]] Removal RemoveUnused(int key, Users users);
  [[nodiscard]] bool FindByName(std::string_view text, int step);

  WrittenSubtree written_;
  bool storageFailed_ = false;
  const ObjectDescriptor& descriptor_;
  int keyField_ = -1;
  int nameField_ = -1;
};

/// The processor of an object type of an open database; null for any other code.
[[nodiscard]] TQvRfDataProcessor* ProcessorFor(TdatamoduleQvRfData& data, int objectType);

/// Keeps a data set's controls disabled for a scope.
class ControlsGuard {
 public:
  /// `dataSet` must outlive the guard.
  explicit ControlsGuard(QvPlatform::TQvDataSet& dataSet) : dataSet_(dataSet) {
    dataSet_.DisableControls();
  }
  ~ControlsGuard() { dataSet_.EnableControls(); }
  ControlsGuard(const ControlsGuard&) = delete;
  ControlsGuard& operator=(const ControlsGuard&) = delete;

 private:
  QvPlatform::TQvDataSet& dataSet_;
};

}  // namespace QvRefSystem
