#include "processors/name_filter.h"

#include <algorithm>

#include "platform/text/text.h"

namespace QvRefSystem {

void TNameFilter::Load() {
  names_.clear();
  starts_.clear();
  const int name = dataSet_.FieldByName("NAME").GetIndex();
  for (int at = 0; at < dataSet_.RecordCount(); ++at) {
    starts_.push_back(names_.size());
    std::string folded = QvPlatform::UpperCase(dataSet_.Row(at).GetText(name));
    std::ranges::replace(folded, '\0', ' ');
    names_ += folded;
    names_ += '\0';
  }
  valid_ = true;
}

std::vector<int> TNameFilter::Match(std::string_view text) {
  if (!valid_) Load();
  std::vector<int> rows;
  const std::string wanted = QvPlatform::UpperCase(text);
  if (wanted.find('\0') != std::string::npos) return rows;
  std::size_t from = 0;
  for (std::size_t row = 0; row < starts_.size(); ++row) {
    if (starts_[row] < from) continue;  // the last hit lies behind this row
    const std::size_t hit = wanted.empty() ? starts_[row] : names_.find(wanted, starts_[row]);
    if (hit == std::string::npos) break;
    // The name that holds the hit; the search goes on behind it.
    const auto next = std::ranges::upper_bound(starts_, hit);
    row = static_cast<std::size_t>(next - starts_.begin()) - 1;
    rows.push_back(static_cast<int>(row));
    from = next == starts_.end() ? names_.size() : *next;
  }
  return rows;
}

}  // namespace QvRefSystem
