#include "processors/record_reader.h"

#include <string>
#include <utility>

namespace QvRefSystem {

using QvCommonUtils::TStringTree;

bool RecordReader::ReadItems(TStringTree* tree, std::span<const TreeItem> items,
                             RecordImage* image) {
  for (int turn = 0; turn <= kLastTurn; ++turn) {
    for (const TreeItem& item : items) {
      const bool isRead = item.turn == turn && item.reading == Reading::kRequired;
      if (isRead && !ReadItem(tree, item, image)) return false;
    }
  }
  return true;
}

bool RecordReader::ReadItem(TStringTree* tree, const TreeItem& item, RecordImage* image) {
  if (item.within != 0 && !EnterSubtree(&tree, item.within, 0)) return false;
  switch (item.kind) {
    case TreeItem::Kind::kField:
      return ReadField(*tree, item, image);
    case TreeItem::Kind::kSubobject:
      return ReadSubobject(tree, item, image);
    case TreeItem::Kind::kOwn:
      return own_.ReadOwnItem(tree, item, image);
    case TreeItem::Kind::kSubtree:  // what stands in it has rows of its own
    case TreeItem::Kind::kCode:     // is added once the record has a key
      break;
  }
  return true;
}

bool RecordReader::ReadField(const TStringTree& tree, const TreeItem& item,
                             RecordImage* image) const {
  const int column = columns_.Of(item);
  switch (item.form) {
    case ValueForm::kText: {
      std::string text;
      if (!tree.GetString(item.id, item.index, &text)) return false;
      image->SetText(column, std::move(text));
      return true;
    }
    case ValueForm::kInteger: {
      int number = 0;
      if (!tree.GetInteger(item.id, item.index, &number)) return false;
      image->SetInteger(column, number);
      return true;
    }
    case ValueForm::kDouble: {
      double number = 0;
      if (!tree.GetDouble(item.id, item.index, &number)) return false;
      image->SetDouble(column, number);
      return true;
    }
  }
  return false;
}

bool RecordReader::ReadSubobject(TStringTree* tree, const TreeItem& item, RecordImage* image) {
  int key = 0;
  if (!own_.StoreSubobject(tree, item, &key)) return false;
  image->SetInteger(columns_.Of(item), key);
  return true;
}

}  // namespace QvRefSystem
