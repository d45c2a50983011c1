#include "assembly/checks/checked_database.h"

namespace QvRefSystem {

int CheckedRow::Integer(std::string_view field) const {
  return row_.GetInteger(table_->Column(field));
}

double CheckedRow::Float(std::string_view field) const {
  return row_.GetFloat(table_->Column(field));
}

const std::string& CheckedRow::Text(std::string_view field) const {
  return row_.GetText(table_->Column(field));
}

int CheckedRow::Key() const {
  return table_->HasKeys() ? Integer(table_->Spec().keyField) : 0;
}

CheckedTable::CheckedTable(TdatamoduleQvRfData& data, TableId id)
    : spec_(&TableOf(id)), dataSet_(&data.DataSet(id)) {
  for (const FieldSpec& field : spec_->fields)
    columns_[field.name] = dataSet_->FieldByName(field.name).GetIndex();
}

CheckedDatabase::CheckedDatabase(TdatamoduleQvRfData& data) : data_(data) {
  for (const TableSpec& spec : TableCatalogue()) {
    if (spec.tag == kUnopenedTag) continue;
    const CheckedTable& table = tables_.emplace(spec.id, CheckedTable(data, spec.id)).first->second;
    if (!table.HasKeys()) continue;
    for (const CheckedRow row : table)
      keys_[spec.id].insert(row.Key());
  }
}

bool CheckedDatabase::Has(TableId table, int key) const {
  const auto keys = keys_.find(table);
  return keys != keys_.end() && keys->second.contains(key);
}

}  // namespace QvRefSystem
