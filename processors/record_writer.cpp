#include "processors/record_writer.h"

#include <string>

namespace QvRefSystem {

using QvCommonUtils::TStringTree;

RecordWriter::RecordWriter(TObjectType type, const TableColumns& columns, const CodeRows& codes,
                           OwnMembers& own)
    : type_(static_cast<int>(type)),
      keyField_(columns.Of(TableOf(DescriptorOf(type).table).keyField)),
      columns_(columns),
      codes_(codes),
      own_(own) {}

bool RecordWriter::WriteItems(TStringTree* tree, std::span<const TreeItem> items,
                              const RecordView& record) {
  const std::span<const int> columns = columns_.OfAll(items);
  for (std::size_t i = 0; i < items.size(); ++i) {
    const bool written = columns.size() == items.size()
                             ? WriteMember(tree, items[i], columns[i], record)
                             : WriteItem(tree, items[i], record);
    if (!written) return false;
  }
  return true;
}

bool RecordWriter::WriteItem(TStringTree* tree, const TreeItem& item, const RecordView& record) {
  return WriteMember(tree, item, item.column.empty() ? -1 : columns_.Of(item), record);
}

bool RecordWriter::WriteMember(TStringTree* tree, const TreeItem& item, int column,
                               const RecordView& record) {
  if (item.within != 0 && !EnterSubtree(&tree, item.within, 0)) return false;
  switch (item.kind) {
    case TreeItem::Kind::kField:
      return WriteText(tree, item, column, record);
    case TreeItem::Kind::kSubtree:
      return EnsureSubtree(tree, item.id, item.index, item.label);
    case TreeItem::Kind::kSubobject: {
      const int key = record.Integer(column);
      return (item.optional && key == 0) || own_.WriteSubobject(tree, item.object, key, item.id);
    }
    case TreeItem::Kind::kCode:
      // A code is an addition: what becomes of it does not touch the result.
      if (record.IsStored()) WriteCode(tree, item, record);
      return true;
    case TreeItem::Kind::kOwn:
      return own_.WriteOwnItem(tree, item, record);
  }
  return false;
}

bool RecordWriter::WriteField(TStringTree* tree, const TreeItem& item,
                              const RecordView& record) const {
  return WriteText(tree, item, columns_.Of(item), record);
}

bool RecordWriter::WriteText(TStringTree* tree, const TreeItem& item, int column,
                             const RecordView& record) {
  // An integer without content is 0: who reads the tree finds a number.
  if (item.form == ValueForm::kInteger) {
    return EnsureField(tree, item.id, item.index, std::to_string(record.Integer(column)),
                       item.label);
  }
  const std::string& text = record.Text(column);
  // Only text fields have a text of their own; the others are put into words.
  if (!text.empty()) return EnsureField(tree, item.id, item.index, text, item.label);
  return EnsureField(tree, item.id, item.index, record.InWords(column), item.label);
}

void RecordWriter::WriteCode(TStringTree* tree, const TreeItem& item,
                             const RecordView& record) const {
  const int key = record.Integer(keyField_);
  const std::string* code = item.blank == BlankRule::kSkipBlank
                                ? codes_.FindFilled(type_, key, item.tag)
                                : codes_.Find(type_, key, item.tag);
  if (code != nullptr) EnsureField(tree, item.id, item.index, *code, item.label);
}

}  // namespace QvRefSystem
