#pragma once

#include <memory>
#include <span>
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
  int sortField = -1;
  bool descending = false;
  int filterField = -1;
  int filterValue = 0;
  /// UserLocaleVersion under which texts are sorted and folded.
  unsigned locale = 0;
  bool operator==(const Arrangement&) const = default;
};

/// All rows of a table in memory, those that show under the filter in table order, and the hash
/// indexes over all of them.
class RowSet {
 public:
  RowSet(TQvDbHeader header, const Arrangement& arrangement);
  RowSet(const RowSet&) = delete;
  RowSet& operator=(const RowSet&) = delete;

  [[nodiscard]] const TQvDbHeader& Header() const { return header_; }
  [[nodiscard]] const Arrangement& Arranged() const { return arrangement_; }

  /// Takes rows in any order; Arrange has to follow.
  void AddLoaded(std::unique_ptr<Row> row);
  /// Filters and sorts anew.
  void Arrange(const Arrangement& arrangement);

  [[nodiscard]] int Count() const { return static_cast<int>(shown_.size()); }
  [[nodiscard]] Row* At(int position) const { return shown_[static_cast<std::size_t>(position)]; }
  /// -1 for a row that does not show.
  [[nodiscard]] int PositionOf(const Row* row) const;
  /// The row of this identity, whether it shows or not; null if there is none.
  [[nodiscard]] Row* FindById(std::int64_t id) const;

  /// The new row's position, -1 if it does not show.
  int Insert(std::unique_ptr<Row> row);
  /// Gives a row the content, identity and version of another.
  RowMove Change(Row* row, Row content);
  /// The position that the row had.
  int Remove(Row* row);

  [[nodiscard]] const Row* FindFirst(std::span<const RowMatch> matches);
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
  std::vector<Row*> shown_;
  std::vector<int> foldedFields_;
  std::vector<std::unique_ptr<RowIndex>> indexes_;
};

}  // namespace QvPlatform::detail
