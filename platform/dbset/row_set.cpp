#include "platform/dbset/row_set.h"

#include <algorithm>

#include "platform/text/locale.h"

namespace QvPlatform::detail {

namespace {

bool IsField(const TQvDbHeader& header, int field) {
  return field >= 0 && static_cast<std::size_t>(field) < header.Fields().size();
}

FieldType TypeOf(const TQvDbHeader& header, int field) {
  return header.Fields()[static_cast<std::size_t>(field)].type;
}

}  // namespace

RowSet::RowSet(TQvDbHeader header, const Arrangement& arrangement)
    : header_(std::move(header)), arrangement_(arrangement) {}

void RowSet::AddLoaded(std::unique_ptr<Row> row) {
  row->slot = rows_.size();
  if (!byId_.empty()) byId_[row->id] = row.get();
  rows_.push_back(std::move(row));
}

bool RowSet::MeetsFilter(const Row& row) const {
  return arrangement_.filterField < 0 ||
         CellInteger(row.At(arrangement_.filterField)) == arrangement_.filterValue;
}

void RowSet::SetSortKey(Row* row) const {
  const int field = arrangement_.sortField;
  if (!IsField(header_, field)) return;
  if (TypeOf(header_, field) == FieldType::kText) {
    row->sortText = CollationKey(CellText(row->At(field)));
  } else {
    row->sortNumber = CellFloat(row->At(field));
  }
}

void RowSet::Arrange(const Arrangement& arrangement) {
  const bool newKeys = arrangement.sortField != arrangement_.sortField ||
                       arrangement.locale != arrangement_.locale || shown_.empty();
  if (arrangement.locale != arrangement_.locale) {
    for (const auto& row : rows_)
      row->folded.clear();
    foldedFields_.clear();
  }
  arrangement_ = arrangement;
  const bool sorted = IsField(header_, arrangement.sortField);
  const bool byText = sorted && TypeOf(header_, arrangement.sortField) == FieldType::kText;
  order_ = RowOrder(byText, sorted && !byText, arrangement.descending);
  indexes_.clear();
  shown_.clear();
  shown_.reserve(rows_.size());
  for (const auto& row : rows_) {
    if (newKeys) SetSortKey(row.get());
    row->shows = MeetsFilter(*row);
    if (row->shows) shown_.push_back(row.get());
  }
  std::ranges::sort(shown_, [this](const Row* a, const Row* b) { return order_.Before(*a, *b); });
}

auto RowSet::PlaceOf(const Row* row) const {
  return std::ranges::lower_bound(
      shown_, row, [this](const Row* a, const Row* b) { return order_.Before(*a, *b); });
}

int RowSet::PositionOf(const Row* row) const {
  return row->shows ? static_cast<int>(PlaceOf(row) - shown_.begin()) : -1;
}

Row* RowSet::FindById(std::int64_t id) const {
  if (byId_.empty()) {
    for (const auto& row : rows_)
      byId_[row->id] = row.get();
  }
  const auto found = byId_.find(id);
  return found != byId_.end() ? found->second : nullptr;
}

int RowSet::Enter(Row* row) {
  for (const auto& index : indexes_)
    index->Add(row);
  row->shows = MeetsFilter(*row);
  if (!row->shows) return -1;
  const auto place = shown_.insert(PlaceOf(row), row);
  return static_cast<int>(place - shown_.begin());
}

int RowSet::Withdraw(Row* row) {
  for (const auto& index : indexes_)
    index->Remove(row);
  const int position = PositionOf(row);
  if (position >= 0) shown_.erase(shown_.begin() + position);
  row->shows = false;
  return position;
}

int RowSet::Insert(std::unique_ptr<Row> row) {
  Row* const added = row.get();
  AddLoaded(std::move(row));
  SetSortKey(added);
  added->folded.clear();
  for (const int field : foldedFields_)
    added->folded.push_back(FoldName(CellText(added->At(field))));
  return Enter(added);
}

RowMove RowSet::Change(Row* row, Row content) {
  RowMove move;
  move.from = Withdraw(row);
  const bool sortsAnew = row->At(arrangement_.sortField) != content.At(arrangement_.sortField);
  for (std::size_t slot = 0; slot < foldedFields_.size(); ++slot) {
    const int field = foldedFields_[slot];
    if (row->At(field) != content.At(field))
      row->folded[slot] = FoldName(CellText(content.At(field)));
  }
  row->cells = std::move(content.cells);
  if (row->id != content.id) {
    byId_.clear();
  }
  row->id = content.id;
  row->version = content.version;
  row->sum = content.sum;
  if (sortsAnew) SetSortKey(row);
  move.to = Enter(row);
  return move;
}

int RowSet::Remove(Row* row) {
  const int position = Withdraw(row);
  byId_.erase(row->id);
  const std::size_t slot = row->slot;
  if (slot + 1 != rows_.size()) {
    std::swap(rows_[slot], rows_.back());
    rows_[slot]->slot = slot;
  }
  rows_.pop_back();
  return position;
}

std::size_t RowSet::FoldSlotOf(int field) {
  const auto known = std::ranges::find(foldedFields_, field);
  const auto slot = static_cast<std::size_t>(known - foldedFields_.begin());
  if (known != foldedFields_.end()) return slot;
  foldedFields_.push_back(field);
  for (const auto& row : rows_)
    row->folded.push_back(FoldName(CellText(row->At(field))));
  return slot;
}

std::vector<Row*> RowSet::AllInOrder() const {
  if (shown_.size() == rows_.size()) return shown_;
  std::vector<Row*> all;
  all.reserve(rows_.size());
  for (const auto& row : rows_)
    all.push_back(row.get());
  std::ranges::sort(all, [this](const Row* a, const Row* b) { return order_.Before(*a, *b); });
  return all;
}

RowIndex* RowSet::IndexFor(std::span<const RowMatch> matches) {
  for (const auto& index : indexes_) {
    if (index->Serves(matches)) return index.get();
  }
  std::vector<IndexPart> parts;
  for (const RowMatch& match : matches) {
    // Two conditions on one field and kind would hide each other in the hash.
    const bool twice = std::ranges::any_of(parts, [&match](const IndexPart& part) {
      return part.field == match.field && part.kind == match.kind;
    });
    if (twice) return nullptr;
    const bool folded = match.kind == RowMatch::Kind::kFolded;
    parts.push_back({match.field, match.kind, folded ? FoldSlotOf(match.field) : 0});
  }
  auto index = std::make_unique<RowIndex>(std::move(parts), order_);
  for (Row* row : AllInOrder())
    index->Add(row);
  indexes_.push_back(std::move(index));
  return indexes_.back().get();
}

bool RowSet::Serves(std::span<const RowMatch> matches) const {
  return !matches.empty() && std::ranges::all_of(matches, [this](const RowMatch& match) {
    return IsField(header_, match.field);
  });
}

const Row* RowSet::FindFirst(std::span<const RowMatch> matches) {
  if (!Serves(matches)) return nullptr;
  if (const RowIndex* index = IndexFor(matches)) return index->FindFirst(matches);
  const std::vector<const Row*> found = FindAll(matches, RowScope::kShown);
  return found.empty() ? nullptr : found.front();
}

std::vector<const Row*> RowSet::FindAll(std::span<const RowMatch> matches, RowScope scope) {
  std::vector<const Row*> found;
  if (!Serves(matches)) return found;
  if (const RowIndex* index = IndexFor(matches)) {
    index->FindAll(matches, scope, &found);
    return found;
  }
  // Of conditions that no one index serves, each for itself is served by one.
  found = FindAll(matches.first(1), scope);
  for (std::size_t i = 1; i < matches.size(); ++i) {
    const std::vector<const Row*> others = FindAll(matches.subspan(i, 1), scope);
    std::erase_if(found, [&others](const Row* row) {
      return std::ranges::find(others, row) == others.end();
    });
  }
  return found;
}

}  // namespace QvPlatform::detail
