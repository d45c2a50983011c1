// The way in: a tree to records.
#include <string>

#include "platform/dbset/write_group.h"
#include "platform/text/text.h"
#include "processors/data_processor.h"

namespace QvRefSystem {

using QvPlatform::DataSetError;
using QvPlatform::RowMatch;
using QvPlatform::RowView;
using QvPlatform::StorageError;
using QvPlatform::TQvWriteGroup;

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
  return ReadItems(tree, descriptor_.items, image);
}

bool TQvRfDataProcessor::ReadItems(TStringTree* tree, std::span<const TreeItem> items,
                                   RecordImage* image) {
  // All fields come first, so that a tree that is not whole adds no sub-object.
  for (const TreeItem::Kind kind : {TreeItem::Kind::kField, TreeItem::Kind::kSubobject}) {
    for (const TreeItem& item : items) {
      if (item.kind == kind && item.reading == Reading::kRequired && !ReadItem(tree, item, image)) {
        return false;
      }
    }
  }
  return true;
}

bool TQvRfDataProcessor::ReadItem(TStringTree* tree, const TreeItem& item, RecordImage* image) {
  const int column = ItemColumn(item);
  if (item.kind == TreeItem::Kind::kSubobject) {
    int key = 0;
    if (!StoreSubobject(tree, item.object, item.id, item.optional, &key)) return false;
    image->SetInteger(column, key);
    return true;
  }
  switch (item.form) {
    case ValueForm::kText: {
      std::string text;
      if (!tree->GetString(item.id, item.index, &text)) return false;
      image->SetText(column, std::move(text));
      return true;
    }
    case ValueForm::kInteger: {
      int number = 0;
      if (!tree->GetInteger(item.id, item.index, &number)) return false;
      image->SetInteger(column, number);
      return true;
    }
    case ValueForm::kDouble: {
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

RowView TQvRfDataProcessor::FindEqual(const RecordImage& image) const {
  if (descriptor_.equality.empty()) return {};
  const EqualityColumn& first = descriptor_.equality.front();
  const int column = Column(first.column);
  const RowMatch match = first.compare == Compare::kFoldedName
                             ? RowMatch::Folded(column, QvPlatform::FoldName(image.Text(column)))
                             : RowMatch::Integer(column, image.Integer(column));
  for (const RowView row : DataSet->FindAll({match}, QvPlatform::RowScope::kAll)) {
    if (IsEqualRow(image, row)) return row;
  }
  return {};
}

bool TQvRfDataProcessor::IsEqualRow(const RecordImage& image, RowView row) const {
  for (const EqualityColumn& equality : descriptor_.equality.subspan(1)) {
    const int column = Column(equality.column);
    if (!image.Has(column)) continue;
    bool equal = false;
    switch (equality.compare) {
      case Compare::kFoldedName:
        equal =
            QvPlatform::FoldName(row.GetText(column)) == QvPlatform::FoldName(image.Text(column));
        break;
      case Compare::kText:
        equal = row.GetText(column) == image.Text(column);
        break;
      case Compare::kTrimmedText:
        equal =
            QvPlatform::TrimView(row.GetText(column)) == QvPlatform::TrimView(image.Text(column));
        break;
      case Compare::kInteger:
        equal = row.GetInteger(column) == image.Integer(column);
        break;
      case Compare::kDouble:
        equal = row.GetFloat(column) == image.Double(column);
        break;
    }
    if (!equal) return false;
  }
  return IsEqualBeside(image, row);
}

int TQvRfDataProcessor::AppendRecord(const RecordImage& image) {
  DataSet->Append();
  DataSet->FieldByName("FAVOUR").SetInteger(0);
  DataSet->FieldByName("LAST_USE").SetFloat(QvPlatform::CurrentMoment());
  image.Store(*DataSet);
  return KeyOf(DataSet->Post());
}

void TQvRfDataProcessor::AppendBeside(TStringTree* tree, const RecordImage& /*image*/, int key) {
  for (const TreeItem& item : descriptor_.items) {
    if (item.kind != TreeItem::Kind::kCode) continue;
    int number = 0;
    std::string text;
    if (item.form == ValueForm::kInteger) {
      if (!tree->GetInteger(item.id, item.index, &number)) continue;
      text = std::to_string(number);
    } else if (!tree->GetString(item.id, item.index, &text)) {
      continue;
    }
    AppendParamValue(ObjectType, key, item.tag, 0, 0, text);
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

}  // namespace QvRefSystem
