#include "platform/storage/table_upgrade.h"

#include <utility>
#include <vector>

#include "platform/storage/record_sum.h"
#include "platform/storage/table_format.h"
#include "platform/storage/table_state.h"

namespace QvPlatform::detail {

namespace {

/// The records of one table, as they get their checksums.
class Summing {
 public:
  Summing(Connection& connection, std::string_view schema, const std::string& table)
      : connection_(connection),
        table_(QuoteName(schema) + '.' + QuoteName(table)),
        fields_(ReadFields(connection, table, schema)) {}

  void AddTo(TableState* state) {
    connection_.Execute("ALTER TABLE " + table_ + " ADD COLUMN " + QuoteName(kSumColumn) +
                        " INTEGER");
    const std::string key = QuoteName(KeyColumn(fields_));
    std::vector<std::pair<std::int64_t, std::int64_t>> sums = Read(key);
    Statement update = connection_.Prepare("UPDATE " + table_ + " SET " + QuoteName(kSumColumn) +
                                           " = ? WHERE " + key + " = ?");
    for (const auto& [id, sum] : sums) {
      update.BindInteger(1, sum);
      update.BindInteger(2, id);
      update.Run();
      state->digest = (state->digest + sum) & RecordSum::kMask;
    }
    state->rows = static_cast<std::int64_t>(sums.size());
  }

 private:
  [[nodiscard]] std::vector<std::pair<std::int64_t, std::int64_t>> Read(const std::string& key) {
    std::string columns = key + ", " + QuoteName(kVersionColumn);
    int count = 2;
    for (const FieldDescription& field : fields_) {
      if (QuoteName(field.name) == key) continue;
      columns += ", " + QuoteName(field.name);
      ++count;
    }
    Statement query = connection_.Prepare("SELECT " + columns + " FROM " + table_);
    std::vector<std::pair<std::int64_t, std::int64_t>> sums;
    RecordSum sum;
    while (query.Step()) {
      const std::int64_t id = query.ColumnInteger(0);
      sum.Begin(id, query.ColumnInteger(1));
      for (int column = 2; column < count; ++column)
        sum.AddColumn(query, column);
      sums.emplace_back(id, sum.Value());
    }
    return sums;
  }

  Connection& connection_;
  std::string table_;
  std::vector<FieldDescription> fields_;
};

std::vector<std::string> DescribedTables(Connection& connection, const std::string& schema) {
  Statement query =
      connection.Prepare("SELECT DISTINCT table_name FROM " + QuoteName(schema) + ".qv_fields");
  std::vector<std::string> tables;
  while (query.Step())
    tables.emplace_back(query.ColumnText(0));
  return tables;
}

}  // namespace

void AddSums(Connection& connection, const std::string& schema) {
  CreateStateTables(connection, schema);
  for (const std::string& table : DescribedTables(connection, schema)) {
    TableState state;
    Summing(connection, schema, table).AddTo(&state);
    Statement put = connection.Prepare("INSERT INTO " + QuoteName(schema) +
                                       ".qv_state VALUES (?, 1, ?, ?, 0, '')");
    put.BindText(1, table);
    put.BindInteger(2, state.rows);
    put.BindInteger(3, state.digest);
    put.Run();
  }
  connection.Execute("PRAGMA " + QuoteName(schema) +
                     ".user_version = " + std::to_string(kFormatVersion));
}

}  // namespace QvPlatform::detail
