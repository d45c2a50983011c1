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

/// What is read where there is no field or no row.
inline const Cell kNoContent;
/// What is read as text where there is none.
inline const std::string kNoText;

/// What stands for the checksum of a record that has none.
inline constexpr std::int64_t kNoSum = -1;

/// One record in memory. Its address stays the same as long as the record exists.
struct Row {
  /// The contents of the fields, in their order.
  std::vector<Cell> cells;
  /// Identity in the store, in the order of making.
  std::int64_t id = 0;
  /// How often the record has been changed in the store, from 1; a change of another version is
  /// refused.
  std::int64_t version = 0;
  /// Checksum of the record in the store; kNoSum where it is not known.
  std::int64_t sum = kNoSum;
  /// The collation bytes that the row is sorted by in an order of texts.
  std::string sortText;
  /// The value that the row is sorted by in an order of numbers.
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

/// The content as an integer: numbers are rounded. 0 for what is no number or does not fit.
[[nodiscard]] int CellInteger(const Cell& cell);
/// The number, or the one that a text says; 0 for what is none.
[[nodiscard]] double CellFloat(const Cell& cell);
/// Integers in decimal, floats in the shortest form that reads back the same.
[[nodiscard]] std::string CellString(const Cell& cell);
/// The text, valid as long as the cell; "" for what is no text.
[[nodiscard]] inline const std::string& CellText(const Cell& cell) {
  const auto* text = std::get_if<std::string>(&cell);
  return text != nullptr ? *text : kNoText;
}

/// Gives the nearest integer. False, with `out` unchanged, if the value is not finite or does not
/// fit.
[[nodiscard]] bool RoundToInteger(double value, int* out);

/// What a mandatory field holds as long as nothing was written into it.
[[nodiscard]] Cell EmptyContent(FieldType type);

}  // namespace QvPlatform::detail
