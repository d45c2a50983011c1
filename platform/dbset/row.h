#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/dbset/db_header.h"

namespace QvPlatform::detail {

/// Content of one field. Without content it reads as 0 or "".
using Cell = std::variant<std::monostate, std::int64_t, double, std::string>;

inline const Cell kNoContent;
inline const std::string kNoText;

/// One record in memory. Its address stays the same as long as the record exists.
struct Row {
  std::vector<Cell> cells;
  /// Identity in the store, in the order of making.
  std::int64_t id = 0;
  std::int64_t version = 0;
  /// What the row is sorted by: collation bytes of a text, or the value of a number.
  std::string sortText;
  double sortNumber = 0;
  /// Folded contents of the fields that are looked up so, in the order of the row set's list.
  std::vector<std::string> folded;
  /// Whether the row shows under the filter.
  bool shows = false;
  /// Place in the list that owns the row, which is in no order.
  std::size_t slot = 0;

  /// The cell of a field, an empty one for a number that is no field's.
  [[nodiscard]] const Cell& At(int field) const {
    const auto index = static_cast<std::size_t>(field);
    return index < cells.size() ? cells[index] : kNoContent;
  }
};

/// 0 for what is no number; other numbers are rounded, and 0 if they do not fit.
[[nodiscard]] int CellInteger(const Cell& cell);
[[nodiscard]] double CellFloat(const Cell& cell);
[[nodiscard]] std::string CellString(const Cell& cell);
/// "" for what is no text.
[[nodiscard]] inline const std::string& CellText(const Cell& cell) {
  const auto* text = std::get_if<std::string>(&cell);
  return text != nullptr ? *text : kNoText;
}

/// The nearest integer; false if the value is not finite or out of range.
[[nodiscard]] bool RoundToInteger(double value, int* out);

/// What a mandatory field holds as long as nothing was written into it.
[[nodiscard]] Cell EmptyContent(FieldType type);

}  // namespace QvPlatform::detail
