#include "processors/name_filter.h"

#include <algorithm>

#include "platform/text/text.h"

namespace QvRefSystem {

void NameFilter::Load(Column* column, const char* field) {
  column->texts.clear();
  column->starts.clear();
  const int number = dataSet_.FieldByName(field).GetIndex();
  for (int at = 0; at < dataSet_.RecordCount(); ++at) {
    column->starts.push_back(column->texts.size());
    std::string folded = QvPlatform::UpperCase(dataSet_.Row(at).GetText(number));
    std::ranges::replace(folded, '\0', ' ');
    column->texts += folded;
    column->texts += '\0';
  }
}

std::vector<int> NameFilter::Match(std::string_view text) {
  if (!valid_) {
    Load(&names_, "NAME");
    Load(&descriptions_, "DESCRIPTION");
    valid_ = true;
  }
  const std::string wanted = QvPlatform::UpperCase(text);
  if (wanted.find('\0') != std::string::npos) return {};
  std::vector<int> rows = Search(names_, wanted);
  return rows.empty() ? Search(descriptions_, wanted) : rows;
}

std::vector<int> NameFilter::Search(const Column& column, const std::string& wanted) {
  std::vector<int> rows;
  const auto& [texts, starts] = column;
  for (std::size_t row = 0; row < starts.size(); ++row) {
    const std::size_t hit = wanted.empty() ? starts[row] : texts.find(wanted, starts[row]);
    if (hit == std::string::npos) break;
    // The row whose text holds the hit; the search goes on with the one behind it.
    row = static_cast<std::size_t>(std::ranges::upper_bound(starts, hit) - starts.begin()) - 1;
    rows.push_back(static_cast<int>(row));
  }
  return rows;
}

}  // namespace QvRefSystem
