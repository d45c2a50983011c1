#include "platform/dbset/sqlite_store.h"

#include <limits>

#include "platform/dbset/data_set_error.h"
#include "platform/dbset/field_descriptions.h"

namespace QvPlatform::detail {

namespace {

bool FitsKey(std::int64_t key) {
  return key > 0 && key <= std::numeric_limits<int>::max();
}

void BindCell(Statement& statement, int parameter, const Cell& cell) {
  if (const auto* integer = std::get_if<std::int64_t>(&cell)) {
    statement.BindInteger(parameter, *integer);
  } else if (const auto* number = std::get_if<double>(&cell)) {
    statement.BindFloat(parameter, *number);
  } else if (const auto* text = std::get_if<std::string>(&cell)) {
    statement.BindText(parameter, *text);
  } else {
    statement.BindNull(parameter);
  }
}

}  // namespace

void SqliteStore::SetHeader(const TQvDbHeader& header) {
  header_ = header;
  keyColumn_ = KeyColumn(Describe(header));
  keyField_ = -1;
  for (std::size_t i = 0; i < header.Fields().size(); ++i) {
    if (header.Fields()[i].need == FieldNeed::kGeneratedKey) keyField_ = static_cast<int>(i);
  }
}

std::string SqliteStore::ColumnList() const {
  std::string list = QuoteName(keyColumn_) + ", " + QuoteName(kVersionColumn);
  for (const TQvDbField& field : header_.Fields())
    list += ", " + QuoteName(field.name);
  return list;
}

Cell SqliteStore::CellFrom(Statement& query, int column, const TQvDbField& field) const {
  const Statement::Kind kind = query.ColumnKind(column);
  if (kind == Statement::Kind::kNull) return {};
  switch (field.type) {
    case FieldType::kText:
      if (kind == Statement::Kind::kText) return std::string(query.ColumnText(column));
      break;
    case FieldType::kInteger: {
      const std::int64_t value = query.ColumnInteger(column);
      const bool fits =
          value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
      if (kind == Statement::Kind::kInteger && fits) return value;
      break;
    }
    case FieldType::kFloat:
    case FieldType::kDateTime:
      if (kind == Statement::Kind::kFloat) return query.ColumnFloat(column);
      break;
  }
  throw StorageError("a record has a content of the wrong kind in its field \"" + field.name +
                     "\"");
}

std::unique_ptr<Row> SqliteStore::RowFrom(Statement& query) const {
  auto row = std::make_unique<Row>();
  row->id = query.ColumnInteger(0);
  row->version = query.ColumnInteger(1);
  row->cells.reserve(header_.Fields().size());
  int column = 2;
  for (const TQvDbField& field : header_.Fields()) {
    row->cells.push_back(CellFrom(query, column++, field));
  }
  return row;
}

LoadedTable SqliteStore::Load() {
  TableLink& link = Link();
  const ReadScope scope(link.Transactions());
  CheckSound();
  LoadedTable table;
  table.header = header_;
  Statement query = link.Transactions().Db().Prepare(
      "SELECT " + ColumnList() + " FROM " + link.FullName() + " ORDER BY " + QuoteName(keyColumn_));
  try {
    while (query.Step())
      table.rows.push_back(RowFrom(query));
  } catch (const SqliteError&) {
    throw;
  } catch (const StorageError& error) {
    throw StorageError("\"" + link.Transactions().Db().Name() + "\": " + error.what());
  }
  NoteLoaded();
  return table;
}

std::string SqliteStore::OneRowCondition() const {
  return " WHERE " + QuoteName(keyColumn_) + " = ?";
}

std::string SqliteStore::InsertSql() {
  std::string columns;
  std::string places;
  for (const TQvDbField& field : header_.Fields()) {
    if (field.need == FieldNeed::kGeneratedKey) continue;
    columns += QuoteName(field.name) + ", ";
    places += "?, ";
  }
  return "INSERT INTO " + Link().FullName() + " (" + columns + QuoteName(kVersionColumn) +
         ") VALUES (" + places + "1)";
}

std::string SqliteStore::UpdateSql() {
  const std::string version = QuoteName(kVersionColumn);
  std::string sets;
  for (const TQvDbField& field : header_.Fields())
    sets += QuoteName(field.name) + " = ?, ";
  return "UPDATE " + Link().FullName() + " SET " + sets + version + " = " + version + " + 1" +
         OneRowCondition() + " AND " + version + " = ?";
}

std::string SqliteStore::DeleteSql() {
  return "DELETE FROM " + Link().FullName() + OneRowCondition() + " AND " +
         QuoteName(kVersionColumn) + " = ?";
}

std::string SqliteStore::ReadSql() {
  return "SELECT " + ColumnList() + " FROM " + Link().FullName() + OneRowCondition();
}

Statement& SqliteStore::Prepared(std::optional<Statement> TableLink::*statement,
                                 std::string (SqliteStore::*makeSql)()) {
  std::optional<Statement>& place = Link().*statement;
  if (!place) place.emplace(Link().Transactions().Db(), (this->*makeSql)());
  return *place;
}

std::unique_ptr<Row> SqliteStore::ReadRow(std::int64_t id) {
  Statement& query = Prepared(&TableLink::read, &SqliteStore::ReadSql);
  query.BindInteger(1, id);
  const StatementScope scope(query);
  return query.Step() ? RowFrom(query) : nullptr;
}

int SqliteStore::BindFields(Statement& statement, const Row& row, bool withKey) const {
  int parameter = 1;
  for (int field = 0; field < static_cast<int>(row.cells.size()); ++field) {
    if (field != keyField_ || withKey) BindCell(statement, parameter++, row.At(field));
  }
  return parameter;
}

void SqliteStore::Insert(Row* row) {
  TableLink& link = Link();
  Statement& insert = Prepared(&TableLink::insert, &SqliteStore::InsertSql);
  WriteScope scope(link.Transactions());
  BindFields(insert, *row, false);
  insert.Run();
  const std::int64_t id = link.Transactions().Db().LastRowId();
  if (keyField_ >= 0 && !FitsKey(id)) throw DataSetError("the table has no keys left");
  scope.Done(this);
  row->id = id;
  row->version = 1;
  if (keyField_ >= 0) row->cells[static_cast<std::size_t>(keyField_)] = id;
}

void SqliteStore::RaiseLastKey(std::int64_t key) {
  TableLink& link = Link();
  Statement raise = link.Transactions().Db().Prepare(
      "UPDATE " + QuoteName(link.Schema()) +
      ".sqlite_sequence SET seq = max(seq, ?) WHERE name = ? COLLATE NOCASE");
  raise.BindInteger(1, key);
  raise.BindText(2, link.Table());
  raise.Run();
}

bool SqliteStore::Update(std::int64_t id, Row* row) {
  TableLink& link = Link();
  Statement& update = Prepared(&TableLink::update, &SqliteStore::UpdateSql);
  const std::int64_t newId = keyField_ >= 0 ? CellInteger(row->At(keyField_)) : id;
  if (keyField_ >= 0 && !FitsKey(newId)) throw DataSetError("a key has to be positive");
  WriteScope scope(link.Transactions(), newId != id);
  if (newId != id) RaiseLastKey(newId);
  const int parameter = BindFields(update, *row, true);
  update.BindInteger(parameter, id);
  update.BindInteger(parameter + 1, row->version);
  try {
    update.Run();
  } catch (const SqliteError& error) {
    if (!error.IsTakenKey()) throw;
    throw DataSetError("another record has the key " + std::to_string(newId));
  }
  if (link.Transactions().Db().Changes() == 0) return false;
  scope.Done(this);
  row->id = newId;
  ++row->version;
  return true;
}

bool SqliteStore::Delete(std::int64_t id, std::int64_t version) {
  TableLink& link = Link();
  Statement& remove = Prepared(&TableLink::remove, &SqliteStore::DeleteSql);
  WriteScope scope(link.Transactions());
  remove.BindInteger(1, id);
  remove.BindInteger(2, version);
  remove.Run();
  if (link.Transactions().Db().Changes() == 0) return false;
  scope.Done(this);
  return true;
}

}  // namespace QvPlatform::detail
