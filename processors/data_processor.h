#pragma once

#include <deque>
#include <initializer_list>
#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "database/data_module.h"
#include "platform/data/tree_members.h"
#include "platform/dbset/data_set.h"
#include "platform/ui/user_interface.h"
#include "processors/object_descriptor.h"

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

/// What InsertFromTree has read for a record: values by field number, in reading order.
class RecordImage {
 public:
  void SetInteger(int field, int value);
  void SetDouble(int field, double value);
  void SetText(int field, std::string value);
  [[nodiscard]] bool Has(int field) const { return Find(field) != nullptr; }
  /// 0 or "" for a field that was not set.
  [[nodiscard]] int Integer(int field) const;
  [[nodiscard]] double Double(int field) const;
  [[nodiscard]] const std::string& Text(int field) const;
  /// Writes all values into the data set's pending record.
  void Store(QvPlatform::TQvDataSet& dataSet) const;
  /// Values that belong to the object but not to its record, by code, in the order of the codes.
  std::map<int, std::string> Beside;

 private:
  using Value = std::variant<int, double, std::string>;
  [[nodiscard]] const Value* Find(int field) const;
  Value& Slot(int field);
  std::vector<std::pair<int, Value>> values_;
};

/// Stands between one table and everything above it: locating, describing, writing to a tree,
/// finding or adding from a tree, and deleting. Its state is the table's current record; it keeps
/// no copy of any record. One processor exists for each object type while a database is open.
///
/// The frames of WriteToTree, InsertFromTree, CheckNotUsed and DeleteRecord work over the object's
/// descriptor; a subclass overrides only the steps where its object differs.
class TQvRfDataProcessor {
 public:
  TQvRfDataProcessor(TdatamoduleQvRfData& data, const ObjectDescriptor& descriptor);
  TQvRfDataProcessor(const TQvRfDataProcessor&) = delete;
  TQvRfDataProcessor& operator=(const TQvRfDataProcessor&) = delete;
  virtual ~TQvRfDataProcessor() = default;

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
  /// False, after a warning, if the current record is under editing.
  virtual bool CheckNotEditing();
  /// Finds the equal record or adds one, its sub-objects first. Returns its key, or 0 if the tree
  /// does not hold a whole object; what the sub-objects added then stays. Objects without an
  /// equality are added whenever they come, and leave no notes of it in the tree.
  virtual int InsertFromTree(TStringTree* tree);
  /// False, after showing who refers to it, if the current record is used.
  virtual bool CheckNotUsed(TComponent* owner);

  /// Either pointer may be null. Gives the type's stored label (the text that dialogs show) and the
  /// current NAME.
  signed char GetNames(std::string* typeName, std::string* name) const;
  signed char GetDisplayNames(std::string* typeText, std::string* name) const;
  /// Key of the record behind the current one, or ahead of it if it is the last. `key` is the
  /// current record's; it is current again afterwards.
  [[nodiscard]] int GetNeighbourKey(int key);
  /// Locates the record with the greatest LAST_USE above 0, the first in table order of equals;
  /// returns its key, or 0 with the cursor behind the last record.
  int GetLastUsedKey();
  /// Closes and opens the table, back to the current record.
  void Reopen();
  void PushEditKey();
  void PopEditKey();
  [[nodiscard]] bool IsUnderEditing() const;
  /// Takes off all levels of disabled controls, so that a dialog over the table is live; the other
  /// puts them back.
  void ReleaseControls();
  void RestoreControls();
  [[nodiscard]] bool IsFileDatabase() const;

  [[nodiscard]] const ObjectDescriptor& Descriptor() const { return descriptor_; }
  [[nodiscard]] TdatamoduleQvRfData& Data() const { return data_; }

  signed char ObjectType;
  std::string TypeName;
  QvPlatform::TQvDataSet* DataSet;
  QvPlatform::TQvDataBuffer* DataBuffer;
  /// Keys of the records now open in edit dialogs: the editing lock. A key may stand twice.
  std::deque<int> EditKeys;
  int SuspendedControls = 0;

 protected:
  /// Writes the record's members into `tree`; the default walks the descriptor's items.
  [[nodiscard]] virtual bool WriteContent(TStringTree* tree);
  /// Writes a kOwn item.
  [[nodiscard]] virtual bool WriteOwnItem(TStringTree* /*tree*/, const TreeItem& /*item*/) {
    return true;
  }
  /// Reads what the tree must hold into the image, storing the sub-objects. False if it is not
  /// whole. The default walks the descriptor's items, fields ahead of sub-objects.
  [[nodiscard]] virtual bool ReadContent(TStringTree* tree, RecordImage* image);
  /// Whether a row that equals the image in the descriptor's columns equals it in all else.
  [[nodiscard]] virtual bool IsEqualBeside(const RecordImage& /*image*/,
                                           QvPlatform::RowView /*row*/) const {
    return true;
  }
  /// Whether objects of this type may be added; the type tables are closed.
  [[nodiscard]] virtual bool CanAppend() const { return true; }
  /// Adds what belongs to a new record beside it. The default adds the rows of its codes.
  virtual void AppendBeside(TStringTree* tree, const RecordImage& image, int key);
  /// An equal record was found: takes back what was stored for this image alone.
  virtual void DropBeside(const RecordImage& /*image*/) {}
  /// Removes what goes with the current record, which is removed next.
  virtual void DeleteBeside(int /*key*/) {}
  /// Removes the current record with what goes with it, or throws; the neighbour is current then.
  virtual void RemoveCurrent();
  /// Whether DeleteRecord asks the user.
  [[nodiscard]] virtual bool AsksToDelete() const { return true; }

  /// The descriptor's item of that id, the first of several.
  [[nodiscard]] const TreeItem& ItemOf(int id) const;
  /// Walks the items and writes each.
  [[nodiscard]] bool WriteItems(TStringTree* tree, std::span<const TreeItem> items);
  [[nodiscard]] bool WriteItem(TStringTree* tree, const TreeItem& item, QvPlatform::RowView row);
  [[nodiscard]] bool ReadItems(TStringTree* tree, std::span<const TreeItem> items,
                               RecordImage* image);
  [[nodiscard]] bool ReadItem(TStringTree* tree, const TreeItem& item, RecordImage* image);
  /// Locates the record of another type by key and has it write the subtree.
  [[nodiscard]] bool WriteSubobject(TStringTree* tree, TObjectType object, int key, int id);
  /// Stores the subtree (id, 0) with the processor of that type. False if it is missing (an
  /// optional one reads as key 0) or its processor returns 0.
  [[nodiscard]] bool StoreSubobject(TStringTree* tree, TObjectType object, int id, bool optional,
                                    int* key);
  [[nodiscard]] TQvRfDataProcessor& ProcessorOf(TObjectType type) const;
  /// Tells the user that the database could not be written.
  void ReportStorage(const std::exception& error);

  /// Field numbers in the file of param_value, by its fields as the catalogue states them.
  enum ParamColumn { kOwnerContent, kOwnerId, kParamTag, kParamGroup, kParamCode, kValue };
  [[nodiscard]] int ParamField(ParamColumn field) const {
    return paramFields_[static_cast<std::size_t>(field)];
  }
  [[nodiscard]] QvPlatform::RowMatch ParamMatch(ParamColumn field, int value) const {
    return QvPlatform::RowMatch::Integer(ParamField(field), value);
  }
  /// Field number of a column of this table; throws DataSetError if it has none.
  [[nodiscard]] int Column(std::string_view name) const;
  [[nodiscard]] int CurrentInteger(std::string_view column) const;
  [[nodiscard]] const std::string& CurrentText(std::string_view column) const;
  [[nodiscard]] int NameColumn() const { return nameField_; }
  /// VALUE of the first code row of an owner; null if there is none.
  [[nodiscard]] const std::string* FindCode(int ownerContent, int ownerId, ParamTag tag) const;
  /// The same where a blank VALUE counts as none.
  [[nodiscard]] const std::string* FindFilledCode(int ownerContent, int ownerId,
                                                  ParamTag tag) const;
  void AppendParamValue(int ownerContent, int ownerId, ParamTag tag, int group, int code,
                        std::string_view value);
  /// Removes the record of another type that the current record's column refers to, if no other
  /// record of this table refers to it. Nobody is asked.
  void DeleteIfUsedOnce(TObjectType object, std::string_view column);
  /// Removes the rows of param_value that meet the conditions, all or the first.
  void DeleteParamValues(std::initializer_list<QvPlatform::RowMatch> matches, bool all);

  TdatamoduleQvRfData& data_;

 private:
  int StoreFromTree(TStringTree* tree);
  [[nodiscard]] QvPlatform::RowView FindEqual(const RecordImage& image) const;
  [[nodiscard]] bool IsEqualRow(const RecordImage& image, QvPlatform::RowView row) const;
  [[nodiscard]] int AppendRecord(const RecordImage& image);
  void WriteResultNotes(TStringTree* tree, int key, bool inserted) const;
  [[nodiscard]] bool ConfirmDelete();
  [[nodiscard]] bool FindByName(std::string_view text, int step);
  [[nodiscard]] std::vector<QvPlatform::UsedByRow> CollectUsers(int key) const;

  [[nodiscard]] int ItemColumn(const TreeItem& item) const;

  /// The subtree that this processor has written last, in the tree that is being written now. The
  /// units and the datum of a system stand in its tree several times: a copy spares the look-ups.
  struct Written {
    unsigned long writing = 0;
    int key = 0;
    const TStringTree* subtree = nullptr;
  };
  Written written_;

  const ObjectDescriptor& descriptor_;
  // Field numbers in the file, found once: a search by name for each field of each record would
  // cost more than the rest of an export.
  std::vector<std::pair<std::string_view, int>> columns_;
  std::vector<int> itemColumns_;
  std::vector<int> paramFields_;
  int keyField_ = -1;
  int nameField_ = -1;
};

/// The processor of an object type of an open database; null for any other code.
[[nodiscard]] TQvRfDataProcessor* ProcessorFor(TdatamoduleQvRfData& data, int objectType);

/// Keeps a data set's controls disabled for a scope.
class ControlsGuard {
 public:
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
