// The way in: a tree to records.
#include <string>

#include "platform/text/text.h"
#include "processors/data_processor.h"

namespace QvRefSystem {

using QvPlatform::DataSetError;
using QvPlatform::StorageError;
using QvPlatform::TMatch;
using QvPlatform::TQvWriteGroup;
using QvPlatform::TRowView;

int TQvRfDataProcessor::InsertFromTree(TStringTree* tree) {
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
    return 0;
  } catch (const StorageError& error) {
    ReportStorage(error);
  } catch (const DataSetError& error) {
    ReportStorage(error);
  }
  return 0;
}

int TQvRfDataProcessor::StoreFromTree(TStringTree* tree) {
  const TControlsGuard guard(*DataSet);
  TRecordImage image;
  if (!ReadContent(tree, &image)) return 0;
  const TRowView found = FindEqual(image);
  const bool inserted = !found;
  int key = 0;
  if (found) {
    key = found.GetInteger(keyField_);
    DropBeside(image);
  } else if (CanAppend()) {
    key = AppendRecord(image);
    AppendBeside(tree, image, key);
  }
  if (!descriptor_.equality.empty()) WriteResultNotes(tree, key, inserted);
  if (key != 0) LocateKey(key);
  return key;
}

bool TQvRfDataProcessor::ReadContent(TStringTree* tree, TRecordImage* image) {
  return ReadItems(tree, descriptor_.items, image);
}

bool TQvRfDataProcessor::ReadItems(TStringTree* tree, std::span<const TTreeItem> items,
                                   TRecordImage* image) {
  // All fields come first, so that a tree that is not whole adds no sub-object.
  for (const TTreeItem::Kind kind : {TTreeItem::Kind::kField, TTreeItem::Kind::kSubobject}) {
    for (const TTreeItem& item : items) {
      if (item.kind == kind && item.reading == TReading::kRequired &&
          !ReadItem(tree, item, image)) {
        return false;
      }
    }
  }
  return true;
}

bool TQvRfDataProcessor::ReadItem(TStringTree* tree, const TTreeItem& item, TRecordImage* image) {
  const int column = ItemColumn(item);
  if (item.kind == TTreeItem::Kind::kSubobject) {
    int key = 0;
    if (!StoreSubobject(tree, item.object, item.id, item.optional, &key)) return false;
    image->SetInteger(column, key);
    return true;
  }
  switch (item.form) {
    case TValueForm::kText: {
      std::string text;
      if (!tree->GetString(item.id, item.index, &text)) return false;
      image->SetText(column, std::move(text));
      return true;
    }
    case TValueForm::kInteger: {
      int number = 0;
      if (!tree->GetInteger(item.id, item.index, &number)) return false;
      image->SetInteger(column, number);
      return true;
    }
    case TValueForm::kDouble: {
      double number = 0;
      if (!tree->GetDouble(item.id, item.index, &number)) return false;
      image->SetDouble(column, number);
      return true;
    }
  }
  return false;
}

bool TQvRfDataProcessor::StoreSubobject(TStringTree* tree, TObjectType object, int id,
                                        bool optional, int* key) {
  TStringTree* cursor = tree;
  if (!EnterSubtree(&cursor, id, 0)) {
    *key = 0;
    return optional;
  }
  *key = ProcessorOf(object).StoreFromTree(cursor);
  return *key != 0;
}

TRowView TQvRfDataProcessor::FindEqual(const TRecordImage& image) const {
  if (descriptor_.equality.empty()) return {};
  const TEqualityColumn& first = descriptor_.equality.front();
  const int column = Column(first.column);
  const TMatch match = first.compare == TCompare::kFoldedName
                           ? TMatch::Folded(column, QvPlatform::FoldName(image.Text(column)))
                           : TMatch::Integer(column, image.Integer(column));
  for (const TRowView row : DataSet->FindAll({match}, QvPlatform::TRowScope::kAll)) {
    if (IsEqualRow(image, row)) return row;
  }
  return {};
}

bool TQvRfDataProcessor::IsEqualRow(const TRecordImage& image, TRowView row) const {
  for (const TEqualityColumn& equality : descriptor_.equality.subspan(1)) {
    const int column = Column(equality.column);
    if (!image.Has(column)) continue;
    bool equal = false;
    switch (equality.compare) {
      case TCompare::kFoldedName:
        equal =
            QvPlatform::FoldName(row.GetText(column)) == QvPlatform::FoldName(image.Text(column));
        break;
      case TCompare::kText:
        equal = row.GetText(column) == image.Text(column);
        break;
      case TCompare::kTrimmedText:
        equal =
            QvPlatform::TrimView(row.GetText(column)) == QvPlatform::TrimView(image.Text(column));
        break;
      case TCompare::kInteger:
        equal = row.GetInteger(column) == image.Integer(column);
        break;
      case TCompare::kDouble:
        equal = row.GetFloat(column) == image.Double(column);
        break;
    }
    if (!equal) return false;
  }
  return IsEqualBeside(image, row);
}

int TQvRfDataProcessor::AppendRecord(const TRecordImage& image) {
  DataSet->Append();
  DataSet->FieldByName("FAVOUR").SetInteger(0);
  DataSet->FieldByName("LAST_USE").SetFloat(QvPlatform::CurrentMoment());
  image.Store(*DataSet);
  // A filter may hide the new record, and another one is current then.
  return DataSet->Post().GetInteger(keyField_);
}

void TQvRfDataProcessor::AppendBeside(TStringTree* tree, const TRecordImage& /*image*/, int key) {
  for (const TTreeItem& item : descriptor_.items) {
    if (item.kind != TTreeItem::Kind::kCode) continue;
    int number = 0;
    std::string text;
    if (item.form == TValueForm::kInteger) {
      if (!tree->GetInteger(item.id, item.index, &number)) continue;
      text = std::to_string(number);
    } else if (!tree->GetString(item.id, item.index, &text)) {
      continue;
    }
    AppendParamValue(ObjectType, key, item.tag, 0, 0, text);
  }
}

void TQvRfDataProcessor::WriteResultNotes(TStringTree* tree, int key, bool inserted) const {
  constexpr int kKeyNote = 201001;
  constexpr int kContentNote = 201002;
  constexpr int kInsertedNote = 201003;
  constexpr int kNoteIndex = -1;
  for (const int id : {kKeyNote, kContentNote, kInsertedNote})
    RemoveField(tree, id, kNoteIndex);
  EnsureField(tree, kKeyNote, kNoteIndex, std::to_string(key),
              inserted ? "Inserted ID" : "Found ID");
  EnsureField(tree, kInsertedNote, kNoteIndex, inserted ? "1" : "0", "Inserted");
  EnsureField(tree, kContentNote, kNoteIndex, std::to_string(ObjectType), "Content");
}

}  // namespace QvRefSystem
