#include "processors/data_processor.h"

#include <algorithm>
#include <string>

#include "platform/dbset/read_group.h"
#include "platform/dbset/write_group.h"
#include "platform/text/text.h"
#include "platform/ui/texts.h"
#include "processors/object_users.h"
#include "processors/record_equality.h"

namespace QvRefSystem {

using QvPlatform::DataSetError;
using QvPlatform::MessageAnswer;
using QvPlatform::MessageButtons;
using QvPlatform::MessageKind;
using QvPlatform::RowMatch;
using QvPlatform::RowView;
using QvPlatform::StorageError;
using QvPlatform::SystemText;
using QvPlatform::TextId;
using QvPlatform::TQvDataSet;
using QvPlatform::TQvWriteGroup;
using QvPlatform::UsedByRow;

TQvRfDataProcessor::TQvRfDataProcessor(TdatamoduleQvRfData& data,
                                       const ObjectDescriptor& descriptor)
    : ObjectType(static_cast<signed char>(descriptor.type)),
      TypeName(descriptor.typeName),
      DataSet(&data.DataSet(descriptor.table)),
      DataBuffer(DataSet->DataBuff),
      data_(data),
      columns_(*DataSet, descriptor),
      codes_(data.datasetParamValue),
      writer_(descriptor.type, columns_, codes_, *this),
      reader_(columns_, *this),
      descriptor_(descriptor),
      keyField_(Column(TableOf(descriptor.table).keyField)),
      nameField_(Column("NAME")) {}

const TreeItem& TQvRfDataProcessor::ItemOf(int id) const {
  return *std::ranges::find(descriptor_.items, id, &TreeItem::id);
}

int TQvRfDataProcessor::CurrentInteger(std::string_view column) const {
  const RowView row = DataSet->CurrentRow();
  return row ? row.GetInteger(Column(column)) : 0;
}

const std::string& TQvRfDataProcessor::CurrentText(std::string_view column) const {
  static const std::string kNone;
  const RowView row = DataSet->CurrentRow();
  return row ? row.GetText(Column(column)) : kNone;
}

int TQvRfDataProcessor::GetCurrentKey() const {
  const RowView row = DataSet->CurrentRow();
  return row ? row.GetInteger(keyField_) : 0;
}

bool TQvRfDataProcessor::LocateKey(int key) {
  if (key != 0 && GetCurrentKey() == key) return true;
  if (key < 1) return false;
  const RowView row = DataSet->FindFirst({RowMatch::Integer(keyField_, key)});
  if (row && DataSet->MoveTo(row)) return true;
  DataSet->MoveBehindLast();
  return false;
}

RowView TQvRfDataProcessor::RowOfKey(int key) const {
  if (key < 1) return {};
  const auto rows =
      DataSet->FindAll({RowMatch::Integer(keyField_, key)}, QvPlatform::RowScope::kAll);
  return rows.empty() ? RowView() : rows.front();
}

bool TQvRfDataProcessor::FindByName(std::string_view text, int step) {
  if (text.empty()) return true;
  const std::string wanted = QvPlatform::UpperCase(text);
  const int count = DataSet->RecordCount();
  for (int at = DataSet->Position() + step; at >= 0 && at < count; at += step) {
    const std::string name = QvPlatform::UpperCase(DataSet->Row(at).GetText(nameField_));
    if (name.find(wanted) != std::string::npos) {
      DataSet->MoveTo(at);
      return true;
    }
  }
  return false;
}

bool TQvRfDataProcessor::FindNextByName(std::string_view text) {
  return FindByName(text, 1);
}
bool TQvRfDataProcessor::FindPriorByName(std::string_view text) {
  return FindByName(text, -1);
}

bool TQvRfDataProcessor::GetInfoLines(TStrings* lines) {
  const RowView row = DataSet->CurrentRow();
  if (!row) return false;
  lines->clear();
  for (const InfoLine& line : descriptor_.infoLines) {
    lines->push_back(SystemText(line.label) + ": " + row.GetString(Column(line.column)));
  }
  return true;
}

bool TQvRfDataProcessor::CheckNotEditing() {
  if (!IsUnderEditing()) return true;
  data_.Ui().ShowMessage(MessageKind::kWarning, SystemText(TextId::kUnderEditing),
                         MessageButtons::kOk);
  return false;
}

signed char TQvRfDataProcessor::GetNames(std::string* typeName, std::string* name) const {
  if (typeName != nullptr) *typeName = TypeName;
  if (name != nullptr) *name = CurrentText("NAME");
  return ObjectType;
}

signed char TQvRfDataProcessor::GetDisplayNames(std::string* typeText, std::string* name) const {
  if (typeText != nullptr) *typeText = SystemText(descriptor_.displayName);
  return GetNames(nullptr, name);
}

int TQvRfDataProcessor::GetNeighbourKey(int key) {
  const ControlsGuard guard(*DataSet);
  const int position = DataSet->Position();
  const int neighbour =
      position + 1 < DataSet->RecordCount() ? position + 1 : std::max(position - 1, 0);
  const RowView row = DataSet->Row(neighbour);
  const int neighbourKey = row ? row.GetInteger(keyField_) : 0;
  LocateKey(key);
  return neighbourKey;
}

int TQvRfDataProcessor::GetLastUsedKey() {
  const int lastUse = Column("LAST_USE");
  double latest = 0;
  int key = 0;
  for (int at = 0; at < DataSet->RecordCount(); ++at) {
    const RowView row = DataSet->Row(at);
    if (row.GetFloat(lastUse) > latest) {
      latest = row.GetFloat(lastUse);
      key = row.GetInteger(keyField_);
    }
  }
  if (key != 0) {
    LocateKey(key);
  } else {
    DataSet->MoveBehindLast();
  }
  return key;
}

void TQvRfDataProcessor::Reopen() {
  const int key = GetCurrentKey();
  DataSet->Close();
  DataBuffer->Close();
  DataSet->Open();
  LocateKey(key);
}

void TQvRfDataProcessor::ReleaseControls() {
  while (DataSet->ControlsDisabled()) {
    DataSet->EnableControls();
    ++SuspendedControls;
  }
}

void TQvRfDataProcessor::RestoreControls() {
  for (; SuspendedControls > 0; --SuspendedControls)
    DataSet->DisableControls();
}

bool TQvRfDataProcessor::IsFileDatabase() const {
  return DataBuffer->GetDataBufferType() == QvPlatform::QvDataBufferType::dtFileStream;
}

TQvRfDataProcessor& TQvRfDataProcessor::ProcessorOf(TObjectType type) const {
  TQvRfDataProcessor* processor = ProcessorFor(data_, static_cast<int>(type));
  if (processor == nullptr) throw InvalidTypeError("there is no processor of this object type");
  return *processor;
}

void TQvRfDataProcessor::ReportStorage(const std::exception& error) {
  data_.Ui().ShowMessage(
      MessageKind::kError,
      SystemText(TextId::kCannotWriteDatabase) + " (" + QvPlatform::ReasonOf(error) + ")",
      MessageButtons::kOk);
}

// Deletion and its check.

std::vector<UsedByRow> TQvRfDataProcessor::UsersOf(int key, Users users) const {
  return users == Users::kOfDescriptor ? UsersByDescriptor(data_, descriptor_, key)
                                       : UsersByCatalogue(data_, descriptor_.table, key);
}

bool TQvRfDataProcessor::CheckNotUsed(TComponent* owner) {
  if (!CheckNotEditing()) return false;
  const int key = GetCurrentKey();
  for (;;) {
    const std::vector<UsedByRow> users = UsersOf(key, Users::kOfDescriptor);
    if (users.empty()) break;
    const QvPlatform::UsedByAnswer answer =
        data_.Ui().ShowUsedBy(owner, users, data_.DialogMode != kSimpleMode);
    if (answer == QvPlatform::UsedByAnswer::kClosed) {
      LocateKey(key);
      return false;
    }
  }
  // A record that was viewed meanwhile may be of this table and be current now.
  return LocateKey(key);
}

bool TQvRfDataProcessor::ConfirmDelete() {
  std::string typeText;
  std::string name;
  GetDisplayNames(&typeText, &name);
  const std::string question =
      SystemText(TextId::kConfirmDelete) + " \"" + name + "\"(" + typeText + ")?";
  return data_.Ui().ShowMessage(MessageKind::kConfirmation, question, MessageButtons::kYesNo) ==
         MessageAnswer::kYes;
}

void TQvRfDataProcessor::RemoveKey(int key, TQvWriteGroup& /*group*/) {
  if (!LocateKey(key)) return;
  const int neighbour = GetNeighbourKey(key);
  DeleteBeside(key);
  if (!LocateKey(key)) return;
  DataSet->Delete();
  LocateKey(neighbour);
}

TQvRfDataProcessor::Removal TQvRfDataProcessor::RemoveUnused(int key, Users users) {
  try {
    TQvWriteGroup group(data_.WritableTables());
    const bool unused = UsersOf(key, users).empty();
    if (unused) RemoveKey(key, group);
    group.Commit();
    return unused ? Removal::kDone : Removal::kUsed;
  } catch (const std::runtime_error& error) {
    ReportStorage(error);
    return Removal::kRefused;
  }
}

bool TQvRfDataProcessor::BringUpToDate() {
  try {
    const QvPlatform::TQvReadGroup moment(data_.OpenedTables());
    return true;
  } catch (const std::runtime_error& error) {
    ReportStorage(error);
    return false;
  }
}

bool TQvRfDataProcessor::DeleteRecord(TComponent* owner) {
  const ControlsGuard guard(*DataSet);
  const int key = GetCurrentKey();
  // A user that somebody else has removed is none, and a record that is gone needs no removal.
  if (!BringUpToDate()) return false;
  if (key != 0 && !LocateKey(key)) return true;
  if (!CheckNotUsed(owner)) return false;
  if (AsksToDelete() && !ConfirmDelete()) return true;
  Removal removal = RemoveUnused(key, Users::kOfDescriptor);
  // Somebody has come to use it while the user was asked: the users are shown as usual.
  while (removal == Removal::kUsed && LocateKey(key) && CheckNotUsed(owner))
    removal = RemoveUnused(key, Users::kOfDescriptor);
  return removal == Removal::kDone;
}

bool TQvRfDataProcessor::DeleteWithConsent(TComponent* owner) {
  const bool declined = GetCurrentKey() != 0 && !AsksToDelete() && !ConfirmDelete();
  return declined || DeleteRecord(owner);
}

bool TQvRfDataProcessor::DeleteUnused(TComponent* owner) {
  if (AsksToDelete()) return DeleteRecord(owner);
  const int key = GetCurrentKey();
  if (!BringUpToDate()) return false;
  if (!LocateKey(key)) return true;
  for (bool confirmed = false;; confirmed = true) {
    const std::vector<UsedByRow> users = UsersOf(key, Users::kOfCatalogue);
    if (!users.empty()) {
      data_.Ui().ShowUsedBy(owner, users, false);
      return false;
    }
    if (!confirmed && key != 0 && !ConfirmDelete()) return true;
    const Removal removal = RemoveUnused(key, Users::kOfCatalogue);
    if (removal != Removal::kUsed) return removal == Removal::kDone;
  }
}

void TQvRfDataProcessor::DeleteIfUsedOnce(TObjectType object, std::string_view column) {
  const int key = CurrentInteger(column);
  const auto users =
      DataSet->FindAll({RowMatch::Integer(Column(column), key)}, QvPlatform::RowScope::kAll);
  TQvRfDataProcessor& processor = ProcessorOf(object);
  if (users.size() == 1 && processor.LocateKey(key)) processor.DataSet->Delete();
}

// Records to tree.

bool TQvRfDataProcessor::WriteToTree(TStringTree* tree, int id, int index) {
  if (tree == nullptr) return false;
  const WritingScope scope;
  const ControlsGuard guard(*DataSet);
  if (id == 0) {
    ClearTree(tree);
    return WriteContent(tree);
  }
  RemoveSubtree(tree, id, index);
  const int key = GetCurrentKey();
  TStringTree* cursor = tree;
  if (!EnsureSubtree(tree, id, index, descriptor_.subtreeLabel) ||
      !EnterSubtree(&cursor, id, index) || !WriteContent(cursor)) {
    return false;
  }
  written_.Remember(key, cursor);
  return true;
}

bool TQvRfDataProcessor::WriteContent(TStringTree* tree) {
  // Rows stay where they are while a tree is written.
  const RowView row = DataSet->CurrentRow();
  return row && writer_.WriteItems(tree, descriptor_.items, row);
}

bool TQvRfDataProcessor::WriteOwnItem(TStringTree* /*tree*/, const TreeItem& /*item*/,
                                      const RecordView& /*record*/) {
  return true;
}

bool TQvRfDataProcessor::WriteSubobject(TStringTree* tree, TObjectType object, int key, int id) {
  TQvRfDataProcessor& processor = ProcessorOf(object);
  const TStringTree* written = processor.written_.Find(key);
  if (written == nullptr) return processor.LocateKey(key) && processor.WriteToTree(tree, id, 0);
  if (!EnsureSubtree(tree, id, 0, written->Label)) return false;
  MergeTree(written, FindSubtree(tree, id, 0));
  return true;
}

// A tree to records.

int TQvRfDataProcessor::InsertFromTree(TStringTree* tree) {
  storageFailed_ = false;
  if (tree == nullptr) return 0;
  try {
    TQvWriteGroup group(data_.WritableTables());
    int key = 0;
    try {
      key = StoreFromTree(tree);
    } catch (const InvalidTypeError&) {
      // What the sub-objects have added stays, as with any other refusal.
      group.Commit();
      throw;
    }
    group.Commit();
    return key;
  } catch (const ToldStorageError&) {
    // The user knows more of it than is known here.
  } catch (const StorageError& error) {
    ReportStorage(error);
  } catch (const DataSetError& error) {
    ReportStorage(error);
  }
  storageFailed_ = true;
  return 0;
}

int TQvRfDataProcessor::StoreFromTree(TStringTree* tree) {
  const ControlsGuard guard(*DataSet);
  RecordImage image;
  if (!ReadContent(tree, &image)) return 0;
  const RowView found = FindEqual(image);
  const bool inserted = !found;
  int key = 0;
  if (found) {
    key = KeyOf(found);
    DropBeside(image);
  } else if (CanAppend()) {
    key = AppendRecord(image);
    AppendBeside(tree, image, key);
  }
  if (!descriptor_.equality.empty()) WriteResultNotes(tree, key, inserted);
  if (key != 0) LocateKey(key);
  return key;
}

bool TQvRfDataProcessor::ReadContent(TStringTree* tree, RecordImage* image) {
  return reader_.ReadItems(tree, descriptor_.items, image);
}

bool TQvRfDataProcessor::ReadOwnItem(TStringTree* /*tree*/, const TreeItem& /*item*/,
                                     RecordImage* /*image*/) {
  return true;
}

bool TQvRfDataProcessor::StoreSubobject(TStringTree* tree, const TreeItem& item, int* key) {
  TStringTree* cursor = tree;
  if (!EnterSubtree(&cursor, item.id, 0)) {
    *key = 0;
    return item.optional;
  }
  *key = ProcessorOf(item.object).StoreFromTree(cursor);
  return *key != 0;
}

RowView TQvRfDataProcessor::FindEqual(const RecordImage& image) const {
  if (descriptor_.equality.empty()) return {};
  const EqualityColumn& first = descriptor_.equality.front();
  const int column = Column(first.column);
  const RowMatch match = first.compare == Compare::kFoldedName
                             ? RowMatch::Folded(column, QvPlatform::FoldName(image.Text(column)))
                             : RowMatch::Integer(column, image.Integer(column));
  for (const RowView row : DataSet->FindAll({match}, QvPlatform::RowScope::kAll)) {
    if (HasEqualColumns(descriptor_.equality.subspan(1), columns_, image, row) &&
        IsEqualBeside(image, row)) {
      return row;
    }
  }
  return {};
}

std::string TQvRfDataProcessor::ComparableRecord(RowView row) const {
  return ComparableText(descriptor_.equality, columns_, row) + ComparableBeside(row);
}

int TQvRfDataProcessor::AppendRecord(const RecordImage& image) {
  DataSet->Append();
  DataSet->FieldByName("FAVOUR").SetInteger(0);
  DataSet->FieldByName("LAST_USE").SetFloat(QvPlatform::CurrentMoment());
  image.Store(*DataSet);
  return KeyOf(DataSet->Post());
}

void TQvRfDataProcessor::AppendBeside(TStringTree* tree, const RecordImage& /*image*/, int key) {
  AppendCodes(*tree, descriptor_.items, key);
}

void TQvRfDataProcessor::AppendCodes(const TStringTree& tree, std::span<const TreeItem> items,
                                     int key) {
  for (const TreeItem& item : items) {
    if (item.kind != TreeItem::Kind::kCode || item.reading != Reading::kRequired) continue;
    int number = 0;
    std::string text;
    if (item.form == ValueForm::kInteger) {
      if (!tree.GetInteger(item.id, item.index, &number)) continue;
      text = std::to_string(number);
    } else if (!tree.GetString(item.id, item.index, &text)) {
      continue;
    }
    codes_.Append({.ownerContent = ObjectType, .ownerId = key, .tag = item.tag}, text);
  }
}

void TQvRfDataProcessor::WriteResultNotes(TStringTree* tree, int key, bool inserted) const {
  const TreeIds::Item& keyNote = inserted ? TreeIds::kInsertedKeyNote : TreeIds::kFoundKeyNote;
  for (const TreeIds::Item& note : {keyNote, TreeIds::kContentNote, TreeIds::kInsertedNote})
    RemoveField(tree, note.id, note.index);
  EnsureField(tree, keyNote, std::to_string(key));
  EnsureField(tree, TreeIds::kInsertedNote, inserted ? "1" : "0");
  EnsureField(tree, TreeIds::kContentNote, std::to_string(ObjectType));
}

TQvRfDataProcessor* ProcessorFor(TdatamoduleQvRfData& data, int objectType) {
  const bool known = objectType >= 0 && objectType < kObjectTypeCodes;
  return known ? data.Processors[static_cast<std::size_t>(objectType)] : nullptr;
}

}  // namespace QvRefSystem
