#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/dbset/data_set.h"

namespace QvRefSystem {

/// Answers, for each letter typed, which rows of a table have the text in their NAME, case aside:
/// the same test as FindNextByName. Where no name has it, the rows are told that have it in their
/// DESCRIPTION, so that a code of a registry finds its system. The folded texts are kept until
/// Invalidate.
class NameFilter {
 public:
  /// `dataSet` has the columns NAME and DESCRIPTION, and must outlive the filter.
  explicit NameFilter(QvPlatform::TQvDataSet& dataSet) : dataSet_(dataSet) {}
  /// To be called when rows of the data set changed.
  void Invalidate() { valid_ = false; }
  /// Positions of the matching rows in table order; all rows for an empty text.
  [[nodiscard]] std::vector<int> Match(std::string_view text);

 private:
  // The texts of one column one behind the other, each closed by a zero byte, so that one pass over
  // one block serves a search.
  struct Column {
    std::string texts;
    std::vector<std::size_t> starts;
  };
  void Load(Column* column, const char* field);
  [[nodiscard]] static std::vector<int> Search(const Column& column, const std::string& wanted);

  QvPlatform::TQvDataSet& dataSet_;
  bool valid_ = false;
  Column names_;
  Column descriptions_;
};

}  // namespace QvRefSystem
