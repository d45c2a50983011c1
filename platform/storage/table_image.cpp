#include "platform/storage/table_image.h"

#include <utility>

#include "platform/storage/table_state.h"

namespace QvPlatform::detail {

namespace {

/// Code of a field that holds the generated key.
constexpr int kGeneratedKeyNeed = 2;

void BindValue(Statement& statement, int parameter, const StoredValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    statement.BindInteger(parameter, *integer);
  } else if (const auto* number = std::get_if<double>(&value)) {
    statement.BindFloat(parameter, *number);
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    statement.BindText(parameter, *text);
  } else if (const auto* bytes = std::get_if<StoredBytes>(&value)) {
    statement.BindBytes(parameter, bytes->data);
  } else {
    statement.BindNull(parameter);
  }
}

void AddValue(const StoredValue& value, RecordSum* sum) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    sum->AddInteger(*integer);
  } else if (const auto* number = std::get_if<double>(&value)) {
    sum->AddFloat(*number);
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    sum->AddText(*text);
  } else {
    sum->AddNull();
  }
}

}  // namespace

std::int64_t SumOfRecord(const std::vector<FieldDescription>& fields, std::int64_t id,
                         std::int64_t version, const std::vector<StoredValue>& values) {
  RecordSum sum;
  sum.Begin(id, version);
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].need != kGeneratedKeyNeed) AddValue(values.at(i), &sum);
  }
  return sum.Value();
}

TableImage::TableImage(std::vector<FieldDescription> fields)
    : fields_(std::move(fields)), memory_(Connection::OpenMemory()) {
  memory_.Execute("PRAGMA application_id = " + std::to_string(kTableFileId) +
                  "; PRAGMA user_version = " + std::to_string(kFormatVersion) + "; BEGIN");
  CreateDescriptions(memory_);
  CreateRecordTable(memory_, kRecordTable, fields_);
}

std::string TableImage::InsertSql() const {
  const std::string key = KeyColumn(fields_);
  std::string columns =
      QuoteName(key) + ", " + QuoteName(kVersionColumn) + ", " + QuoteName(kSumColumn);
  std::string places = "?, ?, ?";
  for (const FieldDescription& field : fields_) {
    if (field.name == key) continue;
    columns += ", " + QuoteName(field.name);
    places += ", ?";
  }
  return "INSERT INTO " + QuoteName(kRecordTable) + " (" + columns + ") VALUES (" + places + ")";
}

bool TableImage::Add(std::int64_t id, std::int64_t version,
                     const std::vector<StoredValue>& values) {
  if (!insert_) insert_.emplace(memory_, InsertSql());
  Statement& insert = *insert_;
  insert.BindInteger(1, id);
  insert.BindInteger(2, version);
  const std::int64_t sum = SumOfRecord(fields_, id, version, values);
  insert.BindInteger(3, sum);
  int parameter = 4;
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (fields_[i].need != kGeneratedKeyNeed) BindValue(insert, parameter++, values.at(i));
  }
  try {
    insert.Run();
    ++rows_;
    digest_ = (digest_ + sum) & RecordSum::kMask;
    return true;
  } catch (const SqliteError&) {
    return false;
  }
}

std::string TableImage::Finish(std::int64_t lastKey) {
  const std::string table = QuoteText(kRecordTable);
  insert_.reset();
  PutState(memory_, kRecordTable, rows_, digest_);
  memory_.Execute("DELETE FROM sqlite_sequence WHERE name = " + table +
                  "; INSERT INTO sqlite_sequence (name, seq) VALUES (" + table + ", " +
                  std::to_string(lastKey) + "); COMMIT");
  return memory_.Serialize();
}

}  // namespace QvPlatform::detail
