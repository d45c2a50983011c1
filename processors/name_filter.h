#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/dbset/data_set.h"

namespace QvRefSystem {

/// Answers, for each letter typed, which rows of a table have the text in their NAME, case aside:
/// the same test as FindNextByName. The folded names are kept until Invalidate.
class TNameFilter {
 public:
  explicit TNameFilter(QvPlatform::TQvDataSet& dataSet) : dataSet_(dataSet) {}
  /// To be called when rows of the data set changed.
  void Invalidate() { valid_ = false; }
  /// Positions of the matching rows in table order; all rows for an empty text.
  [[nodiscard]] std::vector<int> Match(std::string_view text);

 private:
  void Load();
  QvPlatform::TQvDataSet& dataSet_;
  bool valid_ = false;
  // All names one behind the other, each closed by a zero byte, so that one pass over one block
  // serves a search.
  std::string names_;
  std::vector<std::size_t> starts_;
};

}  // namespace QvRefSystem
