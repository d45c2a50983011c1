#include "platform/data/string_tree_node.h"

#include <charconv>
#include <utility>

#include "platform/data/string_tree_pool.h"

namespace QvCommonUtils {

using Field = TDataField<std::string>;
using Tree = TDataTree<std::string>;

namespace {

std::size_t ValueCount(int count) {
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

template <typename T>
std::size_t PositionOf(const TPtrVector<T>& items, int id, int index) {
  std::size_t i = 0;
  while (i < items.size() && (items[i]->Id != id || items[i]->Index != index))
    ++i;
  return i;
}

template <typename T>
T* FirstAt(const TPtrVector<T>& items, int id, int index) {
  const std::size_t i = PositionOf(items, id, index);
  return i < items.size() ? items[i] : nullptr;
}

template <typename T>
void EraseFirstAt(TPtrVector<T>* items, int id, int index) {
  const std::size_t i = PositionOf(*items, id, index);
  if (i < items->size()) items->erase(i);
}

/// Number of nodes above a child of `parent`.
int DepthBelow(const Tree* parent) {
  int depth = 0;
  for (const Tree* node = parent; node != nullptr && depth <= kMaxTreeDepth; node = node->Parent)
    ++depth;
  return depth;
}

void CopyField(const Field& source, TStringTree* target) {
  auto copy = target->CreateField(source.Id, source.Index, source.Values.begin(), source.Count,
                                  source.Label);
  target->Fields.push_back(std::move(copy));
}

bool SameField(const Field& a, const Field& b) {
  if (a.Id != b.Id || a.Index != b.Index || a.Count != b.Count || a.Label != b.Label) return false;
  for (int i = 0; i < a.Count; ++i) {
    if (a.GetValueText(i) != b.GetValueText(i)) return false;
  }
  return true;
}

bool SameFields(const Tree& a, const Tree& b) {
  std::size_t i = 0;
  std::size_t j = 0;
  while (true) {
    while (i < a.Fields.size() && a.Fields[i]->IsNote())
      ++i;
    while (j < b.Fields.size() && b.Fields[j]->IsNote())
      ++j;
    if (i == a.Fields.size() || j == b.Fields.size()) break;
    if (!SameField(*a.Fields[i++], *b.Fields[j++])) return false;
  }
  return i == a.Fields.size() && j == b.Fields.size();
}

bool SameContent(const Tree& a, const Tree& b) {
  if (a.Subtrees.size() != b.Subtrees.size() || !SameFields(a, b)) return false;
  for (std::size_t i = 0; i < a.Subtrees.size(); ++i) {
    const Tree& left = *a.Subtrees[i];
    const Tree& right = *b.Subtrees[i];
    if (left.Id != right.Id || left.Index != right.Index || left.Label != right.Label) return false;
    if (!SameContent(left, right)) return false;
  }
  return true;
}

}  // namespace

Field::TDataField(int id, int index, int count, std::string_view label)
    : Id(id), Index(index), Count(count), Values(ValueCount(count)), Label(label) {}

Field::TDataField(int id, int index, std::string_view value, std::string_view label)
    : Id(id), Index(index), Count(1), Values(value), Label(label) {}

int Field::WriteValueText(int, char*, int) const {
  return 0;
}
std::string Field::GetValueText(int) const {
  return {};
}
void Field::SetValueFromText(const char*, int, int) {}
void Field::SetValueText(const std::string&, int) {}

std::size_t Field::PutValueText(int valueIndex, char* out) const {
  return static_cast<std::size_t>(WriteValueText(valueIndex, out, 0));
}

std::size_t Field::BoundValueText(int valueIndex) const {
  return PutValueText(valueIndex, nullptr);
}

TStringField::TStringField(int id, int index, int count, std::string_view label)
    : TDataField(id, index, count, label) {}

TStringField::TStringField(int id, int index, std::string_view value, std::string_view label)
    : TDataField(id, index, value, label) {}

std::string TStringField::GetValueText(int valueIndex) const {
  return HasValue(valueIndex) ? Values[static_cast<std::size_t>(valueIndex)] : std::string();
}

void TStringField::SetValueText(const std::string& text, int valueIndex) {
  if (HasValue(valueIndex)) Values[static_cast<std::size_t>(valueIndex)] = text;
}

void TStringField::SetValueFromText(const char* text, int length, int valueIndex) {
  if (length >= 0) SetValueFromView({text, static_cast<std::size_t>(length)}, valueIndex);
}

void* TStringField::operator new(std::size_t size) {
  return detail::AllocateNode<TStringField>(size);
}

void TStringField::operator delete(void* memory, std::size_t size) noexcept {
  detail::ReleaseNode<TStringField>(memory, size);
}

void* TStringTree::operator new(std::size_t size) {
  return detail::AllocateNode<TStringTree>(size);
}

void TStringTree::operator delete(void* memory, std::size_t size) noexcept {
  detail::ReleaseNode<TStringTree>(memory, size);
}

bool TStringTree::GetInteger(int id, int index, int* out) const {
  const Field* field = FirstAt(Fields, id, index);
  return field != nullptr && QvPlatform::TextToInteger(field->GetValueText(0), out);
}

bool TStringTree::GetDouble(int id, int index, double* out) const {
  const Field* field = FirstAt(Fields, id, index);
  return field != nullptr && QvPlatform::TextToDouble(field->GetValueText(0), out);
}

bool TStringTree::GetString(int id, int index, std::string* out) const {
  const Field* field = FirstAt(Fields, id, index);
  if (field == nullptr) return false;
  *out = field->GetValueText(0);
  return true;
}

void TStringTree::InsertInteger(std::string_view label, int id, int index, int value) {
  char digits[16];
  const auto result = std::to_chars(digits, digits + sizeof digits, value);
  InsertString(label, id, index, {digits, static_cast<std::size_t>(result.ptr - digits)});
}

void TStringTree::InsertString(std::string_view label, int id, int index, std::string_view value) {
  Fields.push_back(CreateField(id, index, value, label));
}

std::unique_ptr<Tree> TStringTree::CreateSubtree(int id, int index, std::string_view label) {
  if (DepthBelow(this) > kMaxTreeDepth) {
    throw TreeFormatError("a tree has more than " + std::to_string(kMaxTreeDepth) +
                          " levels of subtrees");
  }
  auto subtree = std::make_unique<TStringTree>();
  subtree->Parent = this;
  subtree->Id = id;
  subtree->Index = index;
  subtree->Label = label;
  return subtree;
}

std::unique_ptr<Field> TStringTree::CreateField(int id, int index, const std::string* values,
                                                int count, std::string_view label) {
  auto field = std::make_unique<TStringField>(id, index, count, label);
  if (values != nullptr) {
    for (std::size_t i = 0; i < field->Values.size(); ++i)
      field->Values[i] = values[i];
  }
  return field;
}

std::unique_ptr<Field> TStringTree::CreateField(int id, int index, std::string_view value,
                                                std::string_view label) {
  return std::make_unique<TStringField>(id, index, value, label);
}

void TStringTree::Adopt(TStringTree* other) {
  Id = other->Id;
  Index = other->Index;
  Label = other->Label;
  Fields.swap(other->Fields);
  Subtrees.swap(other->Subtrees);
  for (const auto& subtree : Subtrees)
    subtree->Parent = this;
}

void RemoveSubtree(TStringTree* tree, int id, int index) {
  if (tree != nullptr) EraseFirstAt(&tree->Subtrees, id, index);
}

void RemoveField(TStringTree* tree, int id, int index) {
  if (tree != nullptr) EraseFirstAt(&tree->Fields, id, index);
}

bool EnsureSubtree(TStringTree* tree, int id, int index, std::string_view label) {
  if (tree == nullptr || FindSubtree(tree, id, index) != nullptr) return false;
  tree->Subtrees.push_back(tree->CreateSubtree(id, index, label));
  return true;
}

bool EnsureField(TStringTree* tree, int id, int index, std::string_view value,
                 std::string_view label) {
  if (tree == nullptr || FindField(tree, id, index) != nullptr) return false;
  tree->Fields.push_back(tree->CreateField(id, index, value, label));
  return true;
}

TStringTree* FindSubtree(const TStringTree* tree, int id, int index) {
  if (tree == nullptr) return nullptr;
  // Only CreateSubtree makes subtrees, and a string tree's makes string trees.
  return static_cast<TStringTree*>(FirstAt(tree->Subtrees, id, index));
}

Field* FindField(const TStringTree* tree, int id, int index) {
  return tree != nullptr ? FirstAt(tree->Fields, id, index) : nullptr;
}

bool EnterSubtree(TStringTree** cursor, int id, int index) {
  TStringTree* subtree = FindSubtree(*cursor, id, index);
  if (subtree == nullptr) return false;
  *cursor = subtree;
  return true;
}

bool LeaveSubtree(TStringTree** cursor) {
  if (*cursor == nullptr || (*cursor)->Parent == nullptr) return false;
  *cursor = static_cast<TStringTree*>((*cursor)->Parent);
  return true;
}

void ClearTree(TStringTree* tree) {
  if (tree == nullptr) return;
  tree->Subtrees.clear();
  tree->Fields.clear();
}

void MergeTree(const TStringTree* source, TStringTree* target) {
  for (const auto& field : source->Fields)
    CopyField(*field, target);
  const std::size_t before = target->Subtrees.size();
  for (const auto& item : source->Subtrees) {
    // Only what stood there before is filled further, so that two subtrees of the source that
    // share an address stay two.
    std::size_t i = 0;
    while (i < before &&
           (target->Subtrees[i]->Id != item->Id || target->Subtrees[i]->Index != item->Index)) {
      ++i;
    }
    Tree* place =
        i < before
            ? target->Subtrees[i]
            : target->Subtrees.push_back(target->CreateSubtree(item->Id, item->Index, item->Label));
    MergeTree(static_cast<const TStringTree*>(item.get()), static_cast<TStringTree*>(place));
  }
}

bool SameTree(const TStringTree* a, const TStringTree* b) {
  if (a == nullptr || b == nullptr) return a == b;
  return SameContent(*a, *b);
}

}  // namespace QvCommonUtils
