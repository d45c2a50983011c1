#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "platform/dbset/data_set.h"
#include "platform/dbset/row.h"

namespace QvPlatform::detail {

class RowOrder;

/// Which fields a look-up compares, and how.
struct IndexPart {
  int field = -1;
  TMatch::Kind kind = TMatch::Kind::kInteger;
  /// Where Row::folded holds the folded content; only for folded parts.
  std::size_t foldSlot = 0;
};

/// A hash index over a set of fields, with all rows of a table, also those that do not show. Rows
/// of one hash stand in table order.
class RowIndex {
 public:
  RowIndex(std::vector<IndexPart> parts, const RowOrder& order);

  /// Whether the index serves these conditions, whatever their order. None may come twice.
  [[nodiscard]] bool Serves(std::span<const TMatch> matches) const;
  void Add(Row* row);
  /// Has to be called while the row is still as it was when it was added.
  void Remove(const Row* row);
  /// Of the rows that show.
  [[nodiscard]] const Row* FindFirst(std::span<const TMatch> matches) const;
  void FindAll(std::span<const TMatch> matches, TRowScope scope,
               std::vector<const Row*>* found) const;

 private:
  /// Mostly one row, so that the first one stands outside of the list.
  struct Bucket {
    Row* first = nullptr;
    std::vector<Row*> more;
  };
  /// The hashes are spread well already.
  struct Itself {
    std::size_t operator()(std::uint64_t hash) const { return static_cast<std::size_t>(hash); }
  };

  [[nodiscard]] std::uint64_t HashOf(const Row& row) const;
  [[nodiscard]] bool Meets(const Row& row, std::span<const TMatch> matches, TRowScope scope) const;
  [[nodiscard]] const IndexPart* PartOf(const TMatch& match) const;

  std::vector<IndexPart> parts_;
  const RowOrder& order_;
  std::unordered_map<std::uint64_t, Bucket, Itself> buckets_;
};

}  // namespace QvPlatform::detail
