#pragma once

#include <span>
#include <string>

#include "processors/object_descriptor.h"
#include "processors/record_image.h"
#include "processors/table_columns.h"

namespace QvRefSystem {

/// Whether a row agrees with what a tree gave in all of the columns. One that the tree did not give
/// takes no part.
[[nodiscard]] bool HasEqualColumns(std::span<const EqualityColumn> equality,
                                   const TableColumns& columns, const RecordImage& image,
                                   QvPlatform::RowView row);
/// A text in which two rows agree where they are equal in that column, which is field `column`.
[[nodiscard]] std::string ComparableText(const EqualityColumn& equality, int column,
                                         QvPlatform::RowView row);
/// A text in which two rows agree where they are equal in all of the columns.
[[nodiscard]] std::string ComparableText(std::span<const EqualityColumn> equality,
                                         const TableColumns& columns, QvPlatform::RowView row);

}  // namespace QvRefSystem
