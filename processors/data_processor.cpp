#include "processors/data_processor.h"

#include <algorithm>
#include <atomic>
#include <functional>

#include "platform/dbset/write_group.h"
#include "platform/text/text.h"
#include "platform/ui/texts.h"

namespace QvRefSystem {

using QvPlatform::DataSetError;
using QvPlatform::MessageAnswer;
using QvPlatform::MessageButtons;
using QvPlatform::MessageKind;
using QvPlatform::RowMatch;
using QvPlatform::RowView;
using QvPlatform::SystemText;
using QvPlatform::TextId;
using QvPlatform::TQvDataSet;
using QvPlatform::TQvWriteGroup;
using QvPlatform::UsedByRow;

namespace {

// A file may hold its fields in an order of its own; one that it lacks fails when it is used.
int FieldNumber(TQvDataSet& dataSet, std::string_view name) {
  const QvPlatform::TField* field = dataSet.FindField(name);
  return field != nullptr ? field->GetIndex() : -1;
}

}  // namespace

TQvRfDataProcessor::TQvRfDataProcessor(TdatamoduleQvRfData& data,
                                       const ObjectDescriptor& descriptor)
    : ObjectType(static_cast<signed char>(descriptor.type)),
      TypeName(descriptor.typeName),
      DataSet(&data.DataSet(descriptor.table)),
      DataBuffer(DataSet->DataBuff),
      data_(data),
      descriptor_(descriptor) {
  for (const FieldSpec& spec : TableOf(descriptor.table).fields) {
    columns_.emplace_back(spec.name, FieldNumber(*DataSet, spec.name));
  }
  for (const FieldSpec& spec : TableOf(TableId::kParamValue).fields) {
    paramFields_.push_back(FieldNumber(data.datasetParamValue, spec.name));
  }
  for (const TreeItem& item : descriptor.items) {
    itemColumns_.push_back(item.column.empty() ? -1 : Column(item.column));
  }
  keyField_ = Column(TableOf(descriptor.table).keyField);
  nameField_ = Column("NAME");
}

int TQvRfDataProcessor::Column(std::string_view name) const {
  for (const auto& [column, number] : columns_) {
    if (column == name && number >= 0) return number;
  }
  throw DataSetError("the table of " + TypeName + " has no field " + std::string(name));
}

int TQvRfDataProcessor::ItemColumn(const TreeItem& item) const {
  const auto items = descriptor_.items;
  const bool ofDescriptor =
      !std::less<>()(&item, items.data()) && std::less<>()(&item, items.data() + items.size());
  if (ofDescriptor) return itemColumns_[static_cast<std::size_t>(&item - items.data())];
  return Column(item.column);
}

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

void TQvRfDataProcessor::PushEditKey() {
  EditKeys.push_back(GetCurrentKey());
}

void TQvRfDataProcessor::PopEditKey() {
  const auto at = std::ranges::find(EditKeys, GetCurrentKey());
  if (at != EditKeys.end()) EditKeys.erase(at);
}

bool TQvRfDataProcessor::IsUnderEditing() const {
  return std::ranges::find(EditKeys, GetCurrentKey()) != EditKeys.end();
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
  data_.Ui().ShowMessage(MessageKind::kError,
                         SystemText(TextId::kCannotWriteDatabase) + " (" + error.what() + ")",
                         MessageButtons::kOk);
}

// Deletion and its check.

std::vector<UsedByRow> TQvRfDataProcessor::CollectUsers(int key) const {
  std::vector<UsedByRow> rows;
  for (const UsedByScan& scan : descriptor_.usedBy) {
    const ObjectDescriptor& user = DescriptorOf(scan.object);
    TQvDataSet& table = data_.DataSet(user.table);
    const int column = table.FieldByName(scan.column).GetIndex();
    const int userKey = table.FieldByName("AUTOKEY").GetIndex();
    const int name = table.FieldByName("NAME").GetIndex();
    const int description = table.FieldByName("DESCRIPTION").GetIndex();
    // Rows that a filter hides refer to the object all the same.
    for (const RowView row :
         table.FindAll({RowMatch::Integer(column, key)}, QvPlatform::RowScope::kAll)) {
      rows.push_back({std::string(user.typeName), row.GetText(name), row.GetText(description),
                      static_cast<int>(scan.object), row.GetInteger(userKey)});
    }
  }
  return rows;
}

bool TQvRfDataProcessor::CheckNotUsed(TComponent* owner) {
  if (!CheckNotEditing()) return false;
  const int key = GetCurrentKey();
  for (;;) {
    const std::vector<UsedByRow> users = CollectUsers(key);
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

void TQvRfDataProcessor::RemoveCurrent() {
  const int key = GetCurrentKey();
  const int neighbour = GetNeighbourKey(key);
  TQvWriteGroup group(data_.WritableTables());
  LocateKey(key);
  DeleteBeside(key);
  if (LocateKey(key)) {
    DataSet->Delete();
    LocateKey(neighbour);
  }
  group.Commit();
}

bool TQvRfDataProcessor::DeleteRecord(TComponent* owner) {
  const ControlsGuard guard(*DataSet);
  if (!CheckNotUsed(owner)) return false;
  if (AsksToDelete() && !ConfirmDelete()) return true;
  try {
    RemoveCurrent();
    return true;
  } catch (const std::runtime_error& error) {
    ReportStorage(error);
    return false;
  }
}

bool TQvRfDataProcessor::DeleteWithConsent(TComponent* owner) {
  const bool declined = GetCurrentKey() != 0 && !AsksToDelete() && !ConfirmDelete();
  return declined || DeleteRecord(owner);
}

void TQvRfDataProcessor::DeleteIfUsedOnce(TObjectType object, std::string_view column) {
  const int key = CurrentInteger(column);
  const auto users =
      DataSet->FindAll({RowMatch::Integer(Column(column), key)}, QvPlatform::RowScope::kAll);
  TQvRfDataProcessor& processor = ProcessorOf(object);
  if (users.size() == 1 && processor.LocateKey(key)) processor.DataSet->Delete();
}

// Records to tree.

namespace {

// The tree that is being written on this thread: WriteToTree calls itself for sub-objects, and all
// they write stays where it is until the outermost call returns. No two trees have one number,
// whichever threads wrote them: processors remember it.
struct Writing {
  int depth = 0;
  unsigned long number = 0;
};
thread_local Writing currentWriting;

class WritingScope {
 public:
  WritingScope() {
    static std::atomic<unsigned long> last = 0;
    if (currentWriting.depth++ == 0) currentWriting.number = ++last;
  }
  ~WritingScope() { --currentWriting.depth; }
  WritingScope(const WritingScope&) = delete;
  WritingScope& operator=(const WritingScope&) = delete;
};

}  // namespace

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
  written_ = {currentWriting.number, key, cursor};
  return true;
}

bool TQvRfDataProcessor::WriteContent(TStringTree* tree) {
  return WriteItems(tree, descriptor_.items);
}

bool TQvRfDataProcessor::WriteItems(TStringTree* tree, std::span<const TreeItem> items) {
  // Rows stay where they are while a tree is written.
  const RowView row = DataSet->CurrentRow();
  return row && std::ranges::all_of(
                    items, [&](const TreeItem& item) { return WriteItem(tree, item, row); });
}

bool TQvRfDataProcessor::WriteItem(TStringTree* tree, const TreeItem& item, RowView row) {
  switch (item.kind) {
    case TreeItem::Kind::kField: {
      const int column = ItemColumn(item);
      // An integer without content is 0: who reads the tree finds a number.
      if (item.form == ValueForm::kInteger) {
        return EnsureField(tree, item.id, item.index, std::to_string(row.GetInteger(column)),
                           item.label);
      }
      const std::string& text = row.GetText(column);
      // Only text fields have a text of their own; the others are put into words.
      if (!text.empty()) return EnsureField(tree, item.id, item.index, text, item.label);
      return EnsureField(tree, item.id, item.index, row.GetString(column), item.label);
    }
    case TreeItem::Kind::kSubobject: {
      const int key = row.GetInteger(ItemColumn(item));
      return (item.optional && key == 0) || WriteSubobject(tree, item.object, key, item.id);
    }
    case TreeItem::Kind::kCode: {
      const int key = row.GetInteger(keyField_);
      const std::string* code = item.blank == BlankRule::kSkipBlank
                                    ? FindFilledCode(ObjectType, key, item.tag)
                                    : FindCode(ObjectType, key, item.tag);
      // A code is an addition: what becomes of it does not touch the result.
      if (code != nullptr) EnsureField(tree, item.id, item.index, *code, item.label);
      return true;
    }
    case TreeItem::Kind::kOwn:
      return WriteOwnItem(tree, item);
  }
  return false;
}

bool TQvRfDataProcessor::WriteSubobject(TStringTree* tree, TObjectType object, int key, int id) {
  TQvRfDataProcessor& processor = ProcessorOf(object);
  const Written& written = processor.written_;
  const bool repeats = currentWriting.depth > 0 && key != 0 && written.key == key &&
                       written.writing == currentWriting.number;
  if (!repeats) return processor.LocateKey(key) && processor.WriteToTree(tree, id, 0);
  if (!EnsureSubtree(tree, id, 0, written.subtree->Label)) return false;
  MergeTree(written.subtree, FindSubtree(tree, id, 0));
  return true;
}

// Codes and values beside the records.

const std::string* TQvRfDataProcessor::FindCode(int ownerContent, int ownerId, ParamTag tag) const {
  const RowView row = data_.datasetParamValue.FindFirst(
      {ParamMatch(kOwnerContent, ownerContent), ParamMatch(kOwnerId, ownerId),
       ParamMatch(kParamTag, static_cast<int>(tag))});
  return row ? &row.GetText(ParamField(kValue)) : nullptr;
}

const std::string* TQvRfDataProcessor::FindFilledCode(int ownerContent, int ownerId,
                                                      ParamTag tag) const {
  const std::string* value = FindCode(ownerContent, ownerId, tag);
  return value != nullptr && !QvPlatform::IsBlank(*value) ? value : nullptr;
}

void TQvRfDataProcessor::AppendParamValue(int ownerContent, int ownerId, ParamTag tag, int group,
                                          int code, std::string_view value) {
  TQvDataSet& values = data_.datasetParamValue;
  values.Append();
  values.Fields(ParamField(kOwnerContent)).SetInteger(ownerContent);
  values.Fields(ParamField(kOwnerId)).SetInteger(ownerId);
  values.Fields(ParamField(kParamTag)).SetInteger(static_cast<int>(tag));
  values.Fields(ParamField(kParamGroup)).SetInteger(group);
  values.Fields(ParamField(kParamCode)).SetInteger(code);
  values.Fields(ParamField(kValue)).SetString(value);
  values.Post();
}

void TQvRfDataProcessor::DeleteParamValues(std::initializer_list<RowMatch> matches, bool all) {
  TQvDataSet& values = data_.datasetParamValue;
  while (const RowView row = values.FindFirst(matches)) {
    values.MoveTo(row);
    values.Delete();
    if (!all) return;
  }
}

TQvRfDataProcessor* ProcessorFor(TdatamoduleQvRfData& data, int objectType) {
  const bool known = objectType >= 0 && objectType < kObjectTypeCodes;
  return known ? data.Processors[static_cast<std::size_t>(objectType)] : nullptr;
}

}  // namespace QvRefSystem
