#include "platform/dbset/record_sql.h"

#include <utility>

#include "platform/dbset/field_descriptions.h"
#include "platform/storage/record_sum.h"
#include "platform/storage/table_state.h"

namespace QvPlatform::detail {

RecordSql::RecordSql(std::string schema, std::string table, const TQvDbHeader& header, bool hasSums)
    : schema_(std::move(schema)),
      table_(std::move(table)),
      header_(header),
      hasSums_(hasSums),
      key_(QuoteName(KeyColumn(Describe(header)))) {}

std::string RecordSql::FullName() const {
  return QuoteName(schema_) + '.' + QuoteName(table_);
}

std::string RecordSql::Service(const char* table) const {
  return QuoteName(schema_) + '.' + table;
}

std::string RecordSql::Sum() const {
  return hasSums_ ? QuoteName(kSumColumn) : std::string("NULL");
}

std::string RecordSql::Columns() const {
  std::string list = key_ + ", " + QuoteName(kVersionColumn) + ", " + Sum();
  for (const TQvDbField& field : header_.Fields())
    list += ", " + QuoteName(field.name);
  return list;
}

std::string RecordSql::OneRow() const {
  return " WHERE " + key_ + " = ?";
}

std::vector<std::string> RecordSql::OwnFields() const {
  std::vector<std::string> names;
  for (const TQvDbField& field : header_.Fields()) {
    if (field.need != FieldNeed::kGeneratedKey) names.push_back(QuoteName(field.name));
  }
  return names;
}

std::string RecordSql::ReadAll() const {
  return "SELECT " + Columns() + " FROM " + FullName() + " ORDER BY 1";
}

std::string RecordSql::ReadOne() const {
  return "SELECT " + Columns() + " FROM " + FullName() + OneRow();
}

std::string RecordSql::ReadMarks() const {
  return "SELECT " + key_ + ", " + QuoteName(kVersionColumn) + ", " + Sum() + " FROM " +
         FullName() + " ORDER BY 1";
}

std::string RecordSql::ReadSum() const {
  return "SELECT " + Sum() + " FROM " + FullName() + OneRow();
}

std::string RecordSql::Insert() const {
  std::string columns = key_ + ", " + QuoteName(kVersionColumn) + ", " + QuoteName(kSumColumn);
  std::string places = "?, 1, ?";
  for (const std::string& field : OwnFields()) {
    columns += ", " + field;
    places += ", ?";
  }
  return "INSERT INTO " + FullName() + " (" + columns + ") VALUES (" + places + ")";
}

std::string RecordSql::Update() const {
  const std::string version = QuoteName(kVersionColumn);
  std::string sets = key_ + " = ?, " + QuoteName(kSumColumn) + " = ?, ";
  for (const std::string& field : OwnFields())
    sets += field + " = ?, ";
  return "UPDATE " + FullName() + " SET " + sets + version + " = " + version + " + 1" + OneRow() +
         " AND " + version + " = ?";
}

std::string RecordSql::Delete() const {
  return "DELETE FROM " + FullName() + OneRow() + " AND " + QuoteName(kVersionColumn) + " = ?";
}

std::string RecordSql::LastKey() const {
  // The counter remembers keys of records that are gone; the records count where it was lost.
  return "SELECT max(coalesce((SELECT max(seq) FROM " + Service("sqlite_sequence") +
         " WHERE name = " + QuoteText(table_) + " COLLATE NOCASE), 0), coalesce((SELECT max(" +
         key_ + ") FROM " + FullName() + "), 0))";
}

std::string RecordSql::Count() const {
  return "UPDATE " + Service("qv_state") +
         " SET changes = changes + 1, rows = rows + ?, digest = (digest + ?) & " +
         std::to_string(RecordSum::kMask) + " WHERE table_name = " + QuoteText(table_);
}

std::string RecordSql::Changes() const {
  return "SELECT changes FROM " + Service("qv_state") + " WHERE table_name = " + QuoteText(table_);
}

}  // namespace QvPlatform::detail
