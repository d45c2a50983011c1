#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "assembly/checks/checked_database.h"
#include "assembly/checks/mending.h"

namespace QvRefSystem {

/// The records that say the same as another one: equal in every field but the key and the stamps
/// FAVOUR and LAST_USE, and in all rows of param_value. References count as equal where they lead
/// to records that are merged themselves. Height systems belong to one owner and are never merged,
/// nor are the closed type tables.
class DoubleRecords {
 public:
  /// Looks through `database`, which must outlive this.
  explicit DoubleRecords(const CheckedDatabase& database);

  /// The merges in the order in which they make further ones possible.
  [[nodiscard]] const std::vector<MergedRecord>& Merges() const { return merges_; }
  /// The key under which a record stands after all merges.
  [[nodiscard]] int KeptKey(TableId table, int key) const;

 private:
  /// A record whose name stands twice in its table.
  struct Candidate {
    int key;
    QvPlatform::RowView row;
    /// Its rows of param_value.
    std::string values;
  };
  /// A field that says something of a record, and what it refers to.
  struct Column {
    int number;
    TableId refersTo;
  };
  struct Table {
    TableId id;
    std::vector<Column> columns;
    std::vector<Candidate> candidates;
  };

  void Collect(TableId id);
  void ReadValues();
  [[nodiscard]] std::string TextOf(const Table& table, const Candidate& candidate) const;
  bool MergeIn(const Table& table);
  [[nodiscard]] int CountReferences(TableId table, int key) const;

  const CheckedDatabase& database_;
  std::vector<Table> tables_;
  std::map<std::pair<TableId, int>, int> kept_;
  std::vector<MergedRecord> merges_;
};

}  // namespace QvRefSystem
