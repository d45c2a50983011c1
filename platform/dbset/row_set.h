#pragma once

#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include "platform/dbset/db_header.h"
#include "platform/dbset/row.h"
#include "platform/dbset/row_index.h"
#include "platform/dbset/row_match.h"
#include "platform/dbset/row_move.h"
#include "platform/dbset/row_order.h"

namespace QvPlatform::detail {

/// Which rows show, and in which order.
struct Arrangement {
  /// Number of the field that the rows are sorted by; -1 for the order of making.
  int sortField = -1;
  /// Whether greater values come first; equals stay in the order of making.
  bool descending = false;
  /// Number of the integer field that decides what shows; -1 where all rows do.
  int filterField = -1;
  /// What that field holds in the rows that show.
  int filterValue = 0;
  /// UserLocaleVersion under which texts are sorted and folded.
  unsigned locale = 0;
  bool operator==(const Arrangement&) const = default;
};

/// All rows of a table in memory, those that show under the filter in table order, and the hash
/// indexes over all of them.
class RowSet {
 public:
  /// A table without rows.
  RowSet(TQvDbHeader header, const Arrangement& arrangement);
  RowSet(const RowSet&) = delete;
  RowSet& operator=(const RowSet&) = delete;

  /// How the table is declared.
  [[nodiscard]] const TQvDbHeader& Header() const { return header_; }
  /// The filter and the order of the last Arrange.
  [[nodiscard]] const Arrangement& Arranged() const { return arrangement_; }

  /// Takes rows in any order; Arrange has to follow.
  void AddLoaded(std::unique_ptr<Row> row);
  /// Filters and sorts anew.
  void Arrange(const Arrangement& arrangement);

  /// Number of rows that show.
  [[nodiscard]] int Count() const { return static_cast<int>(shown_.size()); }
  /// The row at this place, which has to be one, from 0.
  [[nodiscard]] Row* At(int position) const { return shown_[static_cast<std::size_t>(position)]; }
  /// Place of a row of the set; -1 for one that does not show.
  [[nodiscard]] int PositionOf(const Row* row) const;
  /// The row of this identity, whether it shows or not; null if there is none.
  [[nodiscard]] Row* FindById(std::int64_t id) const;

  /// All rows, whether they show or not, in no order.
  [[nodiscard]] const std::vector<std::unique_ptr<Row>>& All() const { return rows_; }

  /// Takes in a new row and gives its place; -1 if it does not show.
  int Insert(std::unique_ptr<Row> row);
  /// Gives a row the content, identity and version of another, and tells how it moved.
  RowMove Change(Row* row, Row content);
  /// Drops a row and gives the place that it had; -1 if it did not show.
  int Remove(Row* row);

  /// The first row in table order that shows and meets all conditions; null if none does, and for
  /// no conditions.
  [[nodiscard]] const Row* FindFirst(std::span<const RowMatch> matches);
  /// All such rows in table order; `scope` may add those that do not show.
  [[nodiscard]] std::vector<const Row*> FindAll(std::span<const RowMatch> matches, RowScope scope);

 private:
  [[nodiscard]] bool MeetsFilter(const Row& row) const;
  void SetSortKey(Row* row) const;
  [[nodiscard]] auto PlaceOf(const Row* row) const;
  /// Takes a row into the order and the indexes, and out of them again, while it is unchanged.
  int Enter(Row* row);
  int Withdraw(Row* row);
  [[nodiscard]] std::vector<Row*> AllInOrder() const;
  /// Null for conditions that no index can serve.
  RowIndex* IndexFor(std::span<const RowMatch> matches);
  std::size_t FoldSlotOf(int field);
  [[nodiscard]] bool Serves(std::span<const RowMatch> matches) const;

  TQvDbHeader header_;
  Arrangement arrangement_;
  RowOrder order_;
  std::vector<std::unique_ptr<Row>> rows_;
  /// Made at the first look-up of an identity.
  mutable std::unordered_map<std::int64_t, Row*> byId_;
  std::vector<Row*> shown_;
  std::vector<int> foldedFields_;
  std::vector<std::unique_ptr<RowIndex>> indexes_;
};

}  // namespace QvPlatform::detail
