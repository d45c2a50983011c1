#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>

#include "database/data_module.h"

/// How the checks of a database read it: by the names of the catalogue, in the order in which the
/// records stand, without moving a cursor. All of it must go before the data module does, and sees
/// no change that is made while it lives.
namespace QvRefSystem {

class CheckedTable;

/// A record of a checked table. Field names are those of the catalogue; any other one throws
/// std::out_of_range.
class CheckedRow {
 public:
  /// A row of the table, which must outlive this.
  CheckedRow(const CheckedTable& table, QvPlatform::RowView row) : table_(&table), row_(row) {}

  /// The table in which the record stands.
  [[nodiscard]] const CheckedTable& Table() const { return *table_; }
  /// The content of an integer field.
  [[nodiscard]] int Integer(std::string_view field) const;
  /// The content of a floating-point field.
  [[nodiscard]] double Float(std::string_view field) const;
  /// The content of a text field, as it is stored.
  [[nodiscard]] const std::string& Text(std::string_view field) const;
  /// The record as the processor of its type takes it.
  [[nodiscard]] QvPlatform::RowView Row() const { return row_; }
  /// The number by which the record is known; 0 in the service tables, whose records have no key.
  [[nodiscard]] int Key() const;

 private:
  const CheckedTable* table_;
  QvPlatform::RowView row_;
};

/// One open table, which gives its records to a range-for.
class CheckedTable {
 public:
  /// Throws DataSetError if the open table lacks a field of the catalogue.
  CheckedTable(TdatamoduleQvRfData& data, TableId id);

  /// What the catalogue states of the table.
  [[nodiscard]] const TableSpec& Spec() const { return *spec_; }
  /// Whether its records have a key and a name: all tables but those of the services have.
  [[nodiscard]] bool HasKeys() const { return !spec_->keyField.empty(); }
  /// The open table itself, for its fields and look-ups.
  [[nodiscard]] QvPlatform::TQvDataSet& DataSet() const { return *dataSet_; }
  /// The place of a field in the open table.
  [[nodiscard]] int Column(std::string_view field) const { return columns_.at(field); }

  /// Walks over the records by their position.
  class Iterator {
   public:
    /// Stands at a position from 0 to the number of records.
    Iterator(const CheckedTable& table, int position) : table_(&table), position_(position) {}
    CheckedRow operator*() const { return {*table_, table_->dataSet_->Row(position_)}; }
    Iterator& operator++() {
      ++position_;
      return *this;
    }
    bool operator==(const Iterator&) const = default;

   private:
    const CheckedTable* table_;
    int position_;
  };
  /// The first record, in the order of the table's sort field.
  [[nodiscard]] Iterator begin() const { return {*this, 0}; }
  /// The place behind the last record.
  [[nodiscard]] Iterator end() const { return {*this, dataSet_->RecordCount()}; }

 private:
  const TableSpec* spec_;
  QvPlatform::TQvDataSet* dataSet_;
  std::map<std::string_view, int> columns_;
};

/// All tables that are opened with a database, and the keys that stand in them.
class CheckedDatabase {
 public:
  /// Throws DataSetError for a table that lacks a field of the catalogue.
  explicit CheckedDatabase(TdatamoduleQvRfData& data);

  /// The data module, for what lies beside the tables and for the rules of its processors.
  [[nodiscard]] TdatamoduleQvRfData& Data() const { return data_; }
  /// The tables in the order of the catalogue.
  [[nodiscard]] const std::map<TableId, CheckedTable>& Tables() const { return tables_; }
  /// Throws std::out_of_range for a table that is not opened with the others.
  [[nodiscard]] const CheckedTable& Of(TableId id) const { return tables_.at(id); }
  /// Whether a record of that key stands in the table; never in a service table.
  [[nodiscard]] bool Has(TableId table, int key) const;

 private:
  TdatamoduleQvRfData& data_;
  std::map<TableId, CheckedTable> tables_;
  std::map<TableId, std::set<int>> keys_;
};

}  // namespace QvRefSystem
