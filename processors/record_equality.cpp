#include "processors/record_equality.h"

#include <algorithm>

#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

using QvPlatform::RowView;

bool IsEqual(Compare compare, int column, const RecordImage& image, RowView row) {
  switch (compare) {
    case Compare::kFoldedName:
      return QvPlatform::FoldName(row.GetText(column)) == QvPlatform::FoldName(image.Text(column));
    case Compare::kText:
      return row.GetText(column) == image.Text(column);
    case Compare::kTrimmedText:
      return QvPlatform::TrimView(row.GetText(column)) == QvPlatform::TrimView(image.Text(column));
    case Compare::kInteger:
      return row.GetInteger(column) == image.Integer(column);
    case Compare::kDouble:
      return row.GetFloat(column) == image.Double(column);
  }
  return false;
}

}  // namespace

bool HasEqualColumns(std::span<const EqualityColumn> equality, const TableColumns& columns,
                     const RecordImage& image, RowView row) {
  return std::ranges::all_of(equality, [&](const EqualityColumn& one) {
    const int column = columns.Of(one.column);
    return !image.Has(column) || IsEqual(one.compare, column, image, row);
  });
}

std::string ComparableText(const EqualityColumn& equality, int column, RowView row) {
  switch (equality.compare) {
    case Compare::kFoldedName:
      return QvPlatform::FoldName(row.GetText(column));
    case Compare::kTrimmedText:
      return QvPlatform::Trim(row.GetText(column));
    case Compare::kText:
    case Compare::kInteger:
    case Compare::kDouble:
      break;
  }
  return row.GetString(column);
}

std::string ComparableText(std::span<const EqualityColumn> equality, const TableColumns& columns,
                           RowView row) {
  std::string text;
  for (const EqualityColumn& one : equality)
    text += ComparableText(one, columns.Of(one.column), row) + '\n';
  return text;
}

}  // namespace QvRefSystem
