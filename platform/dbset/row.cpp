#include "platform/dbset/row.h"

#include <cmath>
#include <limits>

#include "platform/text/numbers.h"

namespace QvPlatform::detail {

bool RoundToInteger(double value, int* out) {
  const double nearest = std::nearbyint(value);
  constexpr double kLeast = std::numeric_limits<int>::min();
  constexpr double kGreatest = std::numeric_limits<int>::max();
  // Written so that a value that is no number fails too.
  if (!(nearest >= kLeast && nearest <= kGreatest)) return false;
  *out = static_cast<int>(nearest);
  return true;
}

int CellInteger(const Cell& cell) {
  // Integers of the store are checked to fit when they are read.
  if (const auto* integer = std::get_if<std::int64_t>(&cell)) return static_cast<int>(*integer);
  int value = 0;
  static_cast<void>(RoundToInteger(CellFloat(cell), &value));
  return value;
}

double CellFloat(const Cell& cell) {
  if (const auto* number = std::get_if<double>(&cell)) return *number;
  if (const auto* integer = std::get_if<std::int64_t>(&cell)) return static_cast<double>(*integer);
  double value = 0;
  if (const auto* text = std::get_if<std::string>(&cell)) {
    static_cast<void>(TextToDouble(*text, &value));
  }
  return value;
}

std::string CellString(const Cell& cell) {
  if (const auto* integer = std::get_if<std::int64_t>(&cell)) return std::to_string(*integer);
  if (const auto* number = std::get_if<double>(&cell)) return DoubleToText(*number);
  return CellText(cell);
}

Cell EmptyContent(FieldType type) {
  switch (type) {
    case FieldType::kText:
      return std::string();
    case FieldType::kInteger:
      return std::int64_t{0};
    case FieldType::kFloat:
    case FieldType::kDateTime:
      break;
  }
  return 0.0;
}

}  // namespace QvPlatform::detail
