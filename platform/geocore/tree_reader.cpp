#include "platform/geocore/tree_reader.h"

#include <utility>

namespace QvRefSystem {

using QvCommonUtils::FindField;
using QvCommonUtils::FindSubtree;
using QvCommonUtils::TStringTree;

TreeReader::TreeReader(const TStringTree* tree, std::string path, std::string* error)
    : tree_(tree), path_(std::move(path)), error_(error) {}

void TreeReader::Refuse(std::string_view reason) const {
  if (error_->empty()) *error_ = path_ + ": " + std::string(reason);
}

void TreeReader::RefuseField(std::string_view what, const TreeIds::Item& item, int index) const {
  std::string reason = std::string(what) + " " + std::to_string(item.id);
  if (index != 0) reason += " at index " + std::to_string(index);
  Refuse(reason + " \"" + std::string(item.label) + "\"");
}

std::string TreeReader::Text(const TreeIds::Item& item, int index) const {
  std::string text;
  if (!tree_ || !tree_->GetString(item.id, index, &text)) {
    RefuseField("missing field", item, index);
  }
  return text;
}

std::string TreeReader::TextOr(const TreeIds::Item& item, std::string_view fallback,
                               int index) const {
  std::string text;
  return tree_ && tree_->GetString(item.id, index, &text) ? text : std::string(fallback);
}

int TreeReader::Integer(const TreeIds::Item& item, int index) const {
  int value = 0;
  if (!tree_ || !tree_->GetInteger(item.id, index, &value)) {
    const bool there = tree_ && FindField(tree_, item.id, index);
    RefuseField(there ? "no integer in field" : "missing field", item, index);
  }
  return value;
}

int TreeReader::IntegerOr(const TreeIds::Item& item, int fallback) const {
  int value = fallback;
  return tree_ && tree_->GetInteger(item.id, 0, &value) ? value : fallback;
}

double TreeReader::Double(const TreeIds::Item& item) const {
  double value = 0;
  if (!tree_ || !tree_->GetDouble(item.id, 0, &value)) {
    const bool there = tree_ && FindField(tree_, item.id, 0);
    RefuseField(there ? "no number in field" : "missing field", item, 0);
  }
  return value;
}

TreeReader TreeReader::Level(const TreeIds::Item& item) const {
  const TStringTree* below = tree_ ? FindSubtree(tree_, item.id, 0) : nullptr;
  if (!below) RefuseField("missing subtree", item, 0);
  return {below, path_ + " / " + std::string(item.label), error_};
}

std::optional<TreeReader> TreeReader::LevelIfAny(const TreeIds::Item& item) const {
  if (!tree_ || !FindSubtree(tree_, item.id, 0)) return std::nullopt;
  return Level(item);
}

}  // namespace QvRefSystem
