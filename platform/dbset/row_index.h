#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/dbset/row.h"
#include "platform/dbset/row_match.h"
#include "platform/dbset/row_order.h"

namespace QvPlatform::detail {

/// Which fields a look-up compares, and how.
struct IndexPart {
  /// Number of the field, from 0.
  int field = -1;
  /// How its content is compared.
  RowMatch::Kind kind = RowMatch::Kind::kInteger;
  /// Where Row::folded holds the folded content; it counts for folded parts only.
  std::size_t foldSlot = 0;
  /// What sets the hash of this part apart from that of equal contents in others.
  std::uint64_t seed = 0;
};

/// A hash index over a set of fields, with all rows of a table, also those that do not show. Rows
/// of one hash stand in table order.
class RowIndex {
 public:
  /// The order has to outlive the index, which is empty at first.
  RowIndex(std::vector<IndexPart> parts, const RowOrder& order);

  /// Whether the index serves these conditions, whatever their order. None may come twice.
  [[nodiscard]] bool Serves(std::span<const RowMatch> matches) const;
  /// Takes in a row, which must not change while it is in.
  void Add(Row* row);
  /// Takes a row out, which has to be as it was when it was added.
  void Remove(const Row* row);
  /// The first row in table order that shows and meets all conditions, which the index has to
  /// serve; null if none does.
  [[nodiscard]] const Row* FindFirst(std::span<const RowMatch> matches) const;
  /// Appends the rows that meet all conditions, which the index has to serve, in table order.
  void FindAll(std::span<const RowMatch> matches, RowScope scope,
               std::vector<const Row*>* found) const;

 private:
  /// All rows of one hash: mostly one, so that the first one stands outside of the list.
  struct Bucket {
    std::uint64_t hash = 0;
    /// Null in a free place.
    Row* first = nullptr;
    std::unique_ptr<std::vector<Row*>> more;
  };

  [[nodiscard]] std::uint64_t HashOf(const Row& row) const;
  [[nodiscard]] std::uint64_t HashOf(std::span<const RowMatch> matches) const;
  [[nodiscard]] bool Meets(const Row& row, std::span<const RowMatch> matches, RowScope scope) const;
  [[nodiscard]] const IndexPart* PartOf(const RowMatch& match) const;
  [[nodiscard]] std::size_t Mask() const { return buckets_.size() - 1; }
  /// Where the bucket of a hash is, or would be.
  [[nodiscard]] std::size_t PlaceOf(std::uint64_t hash) const;
  void Grow();
  void Free(std::size_t place);

  std::vector<IndexPart> parts_;
  const RowOrder& order_;
  /// Open addressing with linear probing; the size is a power of two, at most half of it in use.
  std::vector<Bucket> buckets_;
  std::size_t used_ = 0;
};

}  // namespace QvPlatform::detail
