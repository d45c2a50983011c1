#include "platform/dbset/row_index.h"

#include <algorithm>

#include "platform/dbset/row_set.h"

namespace QvPlatform::detail {

namespace {

/// Finishing steps of MurmurHash3 (A. Appleby, public domain): each bit of the input moves about
/// half of the bits of the result.
constexpr std::uint64_t Mix(std::uint64_t x) {
  x ^= x >> 33;
  x *= 0xFF51AFD7ED558CCDULL;
  x ^= x >> 33;
  x *= 0xC4CEB9FE1A85EC53ULL;
  x ^= x >> 33;
  return x;
}

std::uint64_t Seed(int field, TMatch::Kind kind) {
  return (static_cast<std::uint64_t>(static_cast<unsigned>(field)) << 8) |
         static_cast<std::uint64_t>(kind);
}

/// Hash of one condition; those of a look-up are added up, so that their order does not matter.
std::uint64_t PartHash(int field, TMatch::Kind kind, std::uint64_t content) {
  return Mix(content ^ Mix(Seed(field, kind) + 1));
}

std::uint64_t IntegerHash(int value) {
  return static_cast<std::uint64_t>(static_cast<unsigned>(value));
}

std::uint64_t TextHash(std::string_view text) {
  return std::hash<std::string_view>()(text);
}

std::uint64_t HashOfMatches(std::span<const TMatch> matches) {
  std::uint64_t hash = 0;
  for (const TMatch& match : matches) {
    const bool isNumber = match.kind == TMatch::Kind::kInteger;
    hash += PartHash(match.field, match.kind,
                     isNumber ? IntegerHash(match.integer) : TextHash(match.text));
  }
  return hash;
}

}  // namespace

RowIndex::RowIndex(std::vector<IndexPart> parts, const RowOrder& order)
    : parts_(std::move(parts)), order_(order) {}

const IndexPart* RowIndex::PartOf(const TMatch& match) const {
  for (const IndexPart& part : parts_) {
    if (part.field == match.field && part.kind == match.kind) return &part;
  }
  return nullptr;
}

bool RowIndex::Serves(std::span<const TMatch> matches) const {
  return matches.size() == parts_.size() &&
         std::ranges::all_of(matches,
                             [this](const TMatch& match) { return PartOf(match) != nullptr; });
}

std::uint64_t RowIndex::HashOf(const Row& row) const {
  std::uint64_t hash = 0;
  for (const IndexPart& part : parts_) {
    std::uint64_t content = 0;
    switch (part.kind) {
      case TMatch::Kind::kInteger:
        content = IntegerHash(CellInteger(row.At(part.field)));
        break;
      case TMatch::Kind::kText:
        content = TextHash(CellText(row.At(part.field)));
        break;
      case TMatch::Kind::kFolded:
        content = TextHash(row.folded[part.foldSlot]);
        break;
    }
    hash += PartHash(part.field, part.kind, content);
  }
  return hash;
}

bool RowIndex::Meets(const Row& row, std::span<const TMatch> matches, TRowScope scope) const {
  if (scope == TRowScope::kShown && !row.shows) return false;
  return std::ranges::all_of(matches, [this, &row](const TMatch& match) {
    switch (match.kind) {
      case TMatch::Kind::kInteger:
        return CellInteger(row.At(match.field)) == match.integer;
      case TMatch::Kind::kText:
        return CellText(row.At(match.field)) == match.text;
      case TMatch::Kind::kFolded:
        break;
    }
    return row.folded[PartOf(match)->foldSlot] == match.text;
  });
}

void RowIndex::Add(Row* row) {
  Bucket& bucket = buckets_[HashOf(*row)];
  if (bucket.first == nullptr) {
    bucket.first = row;
    return;
  }
  if (order_.Before(*row, *bucket.first)) std::swap(row, bucket.first);
  const auto place = std::ranges::upper_bound(
      bucket.more, row, [this](const Row* a, const Row* b) { return order_.Before(*a, *b); });
  bucket.more.insert(place, row);
}

void RowIndex::Remove(const Row* row) {
  const auto found = buckets_.find(HashOf(*row));
  if (found == buckets_.end()) return;
  Bucket& bucket = found->second;
  if (bucket.first == row) {
    if (bucket.more.empty()) {
      buckets_.erase(found);
    } else {
      bucket.first = bucket.more.front();
      bucket.more.erase(bucket.more.begin());
    }
    return;
  }
  const auto place = std::ranges::lower_bound(
      bucket.more, row, [this](const Row* a, const Row* b) { return order_.Before(*a, *b); });
  if (place != bucket.more.end() && *place == row) bucket.more.erase(place);
}

const Row* RowIndex::FindFirst(std::span<const TMatch> matches) const {
  const auto found = buckets_.find(HashOfMatches(matches));
  if (found == buckets_.end()) return nullptr;
  const Bucket& bucket = found->second;
  if (Meets(*bucket.first, matches, TRowScope::kShown)) return bucket.first;
  for (const Row* row : bucket.more) {
    if (Meets(*row, matches, TRowScope::kShown)) return row;
  }
  return nullptr;
}

void RowIndex::FindAll(std::span<const TMatch> matches, TRowScope scope,
                       std::vector<const Row*>* found) const {
  const auto place = buckets_.find(HashOfMatches(matches));
  if (place == buckets_.end()) return;
  const Bucket& bucket = place->second;
  if (Meets(*bucket.first, matches, scope)) found->push_back(bucket.first);
  for (const Row* row : bucket.more) {
    if (Meets(*row, matches, scope)) found->push_back(row);
  }
}

}  // namespace QvPlatform::detail
