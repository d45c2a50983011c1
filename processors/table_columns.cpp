#include "processors/table_columns.h"

namespace QvRefSystem {

TableColumns::TableColumns(QvPlatform::TQvDataSet& dataSet, const ObjectDescriptor& descriptor)
    : typeName_(descriptor.typeName) {
  for (const FieldSpec& spec : TableOf(descriptor.table).fields) {
    const QvPlatform::TField* field = dataSet.FindField(spec.name);
    // A field that the file lacks fails when it is used.
    columns_.emplace_back(spec.name, field != nullptr ? field->GetIndex() : -1);
  }
  Bind(descriptor.items);
}

void TableColumns::Bind(std::span<const TreeItem> items) {
  Bound& bound = bound_.emplace_back();
  bound.items = items;
  for (const TreeItem& item : items)
    bound.numbers.push_back(item.column.empty() ? -1 : Of(item.column));
}

int TableColumns::Of(std::string_view name) const {
  for (const auto& [column, number] : columns_) {
    if (column == name && number >= 0) return number;
  }
  throw QvPlatform::DataSetError("the table of " + std::string(typeName_) + " has no field " +
                                 std::string(name));
}

int TableColumns::Search(const TreeItem& item) const {
  for (std::size_t i = 0; i < bound_.size(); ++i) {
    const std::size_t other = PlaceIn(bound_[i], item);
    if (other == kNowhere) continue;
    last_ = i;
    return bound_[i].numbers[other];
  }
  return Of(item.column);
}

}  // namespace QvRefSystem
