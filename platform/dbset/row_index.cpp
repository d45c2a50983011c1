#include "platform/dbset/row_index.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <string_view>
#include <utility>

namespace QvPlatform::detail {

namespace {

constexpr std::size_t kFirstSize = 16;

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

std::uint64_t SeedOf(int field, RowMatch::Kind kind) {
  const auto number = static_cast<std::uint64_t>(static_cast<unsigned>(field));
  return Mix((number << 8) + static_cast<std::uint64_t>(kind) + 1);
}

std::uint64_t IntegerHash(int value) {
  return static_cast<std::uint64_t>(static_cast<unsigned>(value));
}

std::uint64_t TextHash(std::string_view text) {
  return std::hash<std::string_view>()(text);
}

}  // namespace

RowIndex::RowIndex(std::vector<IndexPart> parts, const RowOrder& order)
    : parts_(std::move(parts)), order_(order), buckets_(kFirstSize) {
  for (IndexPart& part : parts_)
    part.seed = SeedOf(part.field, part.kind);
}

bool RowIndex::Before(const Row& a, const Row& b) const {
  return order_.Before(a, b);
}

const IndexPart* RowIndex::PartOf(const RowMatch& match) const {
  for (const IndexPart& part : parts_) {
    if (part.field == match.field && part.kind == match.kind) return &part;
  }
  return nullptr;
}

bool RowIndex::Serves(std::span<const RowMatch> matches) const {
  return matches.size() == parts_.size() &&
         std::ranges::all_of(matches,
                             [this](const RowMatch& match) { return PartOf(match) != nullptr; });
}

// The hashes of the parts are added up, so that the order of the conditions does not matter.

std::uint64_t RowIndex::HashOf(const Row& row) const {
  std::uint64_t hash = 0;
  for (const IndexPart& part : parts_) {
    std::uint64_t content = 0;
    switch (part.kind) {
      case RowMatch::Kind::kInteger:
        content = IntegerHash(CellInteger(row.At(part.field)));
        break;
      case RowMatch::Kind::kText:
        content = TextHash(CellText(row.At(part.field)));
        break;
      case RowMatch::Kind::kFolded:
        content = TextHash(row.folded[part.foldSlot]);
        break;
    }
    hash += Mix(content ^ part.seed);
  }
  return hash;
}

std::uint64_t RowIndex::HashOf(std::span<const RowMatch> matches) const {
  std::uint64_t hash = 0;
  for (const RowMatch& match : matches) {
    const bool isNumber = match.kind == RowMatch::Kind::kInteger;
    hash +=
        Mix((isNumber ? IntegerHash(match.integer) : TextHash(match.text)) ^ PartOf(match)->seed);
  }
  return hash;
}

bool RowIndex::Meets(const Row& row, std::span<const RowMatch> matches, RowScope scope) const {
  if (scope == RowScope::kShown && !row.shows) return false;
  return std::ranges::all_of(matches, [this, &row](const RowMatch& match) {
    switch (match.kind) {
      case RowMatch::Kind::kInteger:
        return CellInteger(row.At(match.field)) == match.integer;
      case RowMatch::Kind::kText:
        return CellText(row.At(match.field)) == match.text;
      case RowMatch::Kind::kFolded:
        break;
    }
    return row.folded[PartOf(match)->foldSlot] == match.text;
  });
}

std::size_t RowIndex::PlaceOf(std::uint64_t hash) const {
  std::size_t place = static_cast<std::size_t>(hash) & Mask();
  while (buckets_[place].first != nullptr && buckets_[place].hash != hash)
    place = (place + 1) & Mask();
  return place;
}

void RowIndex::Grow() {
  std::vector<Bucket> old = std::exchange(buckets_, std::vector<Bucket>(buckets_.size() * 2));
  for (Bucket& bucket : old) {
    if (bucket.first != nullptr) buckets_[PlaceOf(bucket.hash)] = std::move(bucket);
  }
}

void RowIndex::Free(std::size_t place) {
  --used_;
  buckets_[place] = Bucket();
  // Close the gap: a later bucket moves into it unless it would then stand ahead of its home.
  for (std::size_t next = (place + 1) & Mask(); buckets_[next].first != nullptr;
       next = (next + 1) & Mask()) {
    const std::size_t home = static_cast<std::size_t>(buckets_[next].hash) & Mask();
    if (((next - home) & Mask()) < ((next - place) & Mask())) continue;
    buckets_[place] = std::exchange(buckets_[next], Bucket());
    place = next;
  }
}

void RowIndex::Add(Row* row) {
  const std::uint64_t hash = HashOf(*row);
  std::size_t place = PlaceOf(hash);
  if (buckets_[place].first == nullptr) {
    if (2 * (used_ + 1) > buckets_.size()) {
      Grow();
      place = PlaceOf(hash);
    }
    ++used_;
    buckets_[place].hash = hash;
    buckets_[place].first = row;
    return;
  }
  Bucket& bucket = buckets_[place];
  if (Before(*row, *bucket.first)) std::swap(row, bucket.first);
  if (bucket.more == nullptr) bucket.more = std::make_unique<std::vector<Row*>>();
  const auto behind = std::ranges::upper_bound(
      *bucket.more, row, [this](const Row* a, const Row* b) { return Before(*a, *b); });
  bucket.more->insert(behind, row);
}

void RowIndex::Remove(const Row* row) {
  const std::size_t place = PlaceOf(HashOf(*row));
  Bucket& bucket = buckets_[place];
  if (bucket.first == row) {
    if (bucket.more == nullptr || bucket.more->empty()) {
      Free(place);
      return;
    }
    bucket.first = bucket.more->front();
    bucket.more->erase(bucket.more->begin());
  } else if (bucket.more != nullptr) {
    const auto found = std::ranges::lower_bound(
        *bucket.more, row, [this](const Row* a, const Row* b) { return Before(*a, *b); });
    if (found != bucket.more->end() && *found == row) bucket.more->erase(found);
  }
}

const Row* RowIndex::FindFirst(std::span<const RowMatch> matches) const {
  const Bucket& bucket = buckets_[PlaceOf(HashOf(matches))];
  if (bucket.first == nullptr) return nullptr;
  if (Meets(*bucket.first, matches, RowScope::kShown)) return bucket.first;
  if (bucket.more == nullptr) return nullptr;
  const auto found = std::ranges::find_if(
      *bucket.more, [&](const Row* row) { return Meets(*row, matches, RowScope::kShown); });
  return found != bucket.more->end() ? *found : nullptr;
}

void RowIndex::FindAll(std::span<const RowMatch> matches, RowScope scope,
                       std::vector<const Row*>* found) const {
  const Bucket& bucket = buckets_[PlaceOf(HashOf(matches))];
  if (bucket.first == nullptr) return;
  if (Meets(*bucket.first, matches, scope)) found->push_back(bucket.first);
  if (bucket.more == nullptr) return;
  std::ranges::copy_if(*bucket.more, std::back_inserter(*found),
                       [&](const Row* row) { return Meets(*row, matches, scope); });
}

}  // namespace QvPlatform::detail
