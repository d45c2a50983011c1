#include "platform/dbset/sqlite_store.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/dbset/data_set_error.h"
#include "platform/storage/file_identity.h"
#include "platform/storage/table_upgrade.h"

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

void AddCell(const Cell& cell, RecordSum* sum) {
  if (const auto* integer = std::get_if<std::int64_t>(&cell)) {
    sum->AddInteger(*integer);
  } else if (const auto* number = std::get_if<double>(&cell)) {
    sum->AddFloat(*number);
  } else if (const auto* text = std::get_if<std::string>(&cell)) {
    sum->AddText(*text);
  } else {
    sum->AddNull();
  }
}

/// How far a digest goes when the checksum of a record goes from one value to another.
std::int64_t DigestStep(std::int64_t from, std::int64_t to) {
  return (to - from) & RecordSum::kMask;
}

}  // namespace

void SqliteStore::SetHeader(const TQvDbHeader& header) {
  header_ = header;
  keyField_ = -1;
  for (std::size_t i = 0; i < header.Fields().size(); ++i) {
    if (header.Fields()[i].need == FieldNeed::kGeneratedKey) keyField_ = static_cast<int>(i);
  }
}

// --- the state of the store -------------------------------------------------------------------

void SqliteStore::TakeSums() {
  summed_ = HasSums(Db(), Link().Schema());
}

TableState SqliteStore::RequireState() {
  if (!summed_) return {};
  std::optional<TableState> state = ReadState(Db(), Link().Schema(), Link().Table());
  if (!state) RefuseDamaged("the state of its table is gone");
  return *std::move(state);
}

void SqliteStore::RefuseDamaged(const std::string& what) {
  throw StorageError("\"" + Db().Name() + "\" is damaged: " + what);
}

std::int64_t SqliteStore::ReadChanges() {
  if (!summed_) return Db().ChangeCounter(Link().Schema());
  Statement& query = Prepared(&TableLink::changes, &RecordSql::Changes);
  const StatementScope scope(query);
  return query.Step() ? query.ColumnInteger(0) : -1;
}

void SqliteStore::NoteLoaded(const TableState& state) {
  Session& session = Link().Transactions();
  // What was read inside a transaction may still be undone.
  if (session.Active()) session.Join(this);
  counter_ = Db().ChangeCounter(Link().Schema());
  changes_ = summed_ ? state.changes : counter_;
  loaded_ = true;
}

bool SqliteStore::IsCurrent() {
  // The first read takes the lock, and with it waits for a writer's end.
  TakeSums();
  const std::uint32_t counter = Db().ChangeCounter(Link().Schema());
  if (ReadChanges() != changes_) return false;
  counter_ = counter;
  return true;
}

bool SqliteStore::HasMoved() {
  if (!loaded_) return true;
  if (Db().ChangeCounter(Link().Schema()) == counter_) return false;
  const ReadScope scope(Link().Transactions());
  return !IsCurrent();
}

bool SqliteStore::IsReplaced() {
  return Own().Db().HasMoved("main");
}

std::shared_ptr<void> SqliteStore::Hold() {
  auto scope = std::make_shared<ReadScope>(Own());
  static_cast<void>(Own().Db().QueryInteger("SELECT count(*) FROM sqlite_master"));
  return scope;
}

std::string SqliteStore::StateNow() {
  const std::string file = FileIdentity(Path());
  return file.empty() ? file : file + ':' + Link().Table() + ':' + std::to_string(changes_);
}

std::string SqliteStore::MirroredState() {
  try {
    if (!loaded_ || Link().Transactions().Active()) return {};
    const ReadScope scope(Link().Transactions());
    return IsCurrent() ? StateNow() : std::string();
  } catch (const StorageError&) {
    return {};
  }
}

bool SqliteStore::TakeOver(const std::string& state, const TQvDbHeader& header) {
  if (state.empty() || Link().Transactions().Active()) return false;
  const ReadScope scope(Link().Transactions());
  TakeSums();
  changes_ = ReadChanges();
  if (StateNow() != state) return false;
  SetHeader(header);
  counter_ = Db().ChangeCounter(Link().Schema());
  loaded_ = true;
  return true;
}

void SqliteStore::OnCommitted() {
  before_.reset();
}

void SqliteStore::OnRolledBack() noexcept {
  undoneFrom_ = before_.value_or(changes_);
  undoneTo_ = changes_;
  if (!Link().Transactions().Active()) before_.reset();
  loaded_ = false;
  TellUndone();
}

CommitOutcome SqliteStore::Outcome() {
  try {
    const ReadScope scope(Link().Transactions());
    TakeSums();
    const std::int64_t now = ReadChanges();
    if (now == undoneFrom_) return CommitOutcome::kUndone;
    if (now == undoneTo_) return CommitOutcome::kCommitted;
  } catch (const StorageError&) {
    // Nothing can be proven of a store that cannot be read.
  }
  return CommitOutcome::kUnknown;
}

std::vector<std::string> SqliteStore::FindDamage() {
  std::vector<std::string> found;
  Statement query = Own().Db().Prepare("PRAGMA integrity_check(20)");
  while (query.Step()) {
    if (query.ColumnText(0) != "ok") found.emplace_back(query.ColumnText(0));
  }
  return found;
}

GroupMark SqliteStore::LastGroup() {
  GroupMark mark;
  if (!summed_) return mark;
  const ReadScope scope(Link().Transactions());
  const TableState state = RequireState();
  mark.number = state.seq;
  for (std::size_t at = 0; at < state.names.size();) {
    const std::size_t end = std::min(state.names.find('/', at), state.names.size());
    mark.files.push_back(state.names.substr(at, end - at));
    at = end + 1;
  }
  return mark;
}

// --- reading ----------------------------------------------------------------------------------

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

std::int64_t SqliteStore::SumOf(std::int64_t id, std::int64_t version,
                                const std::vector<Cell>& cells) {
  sum_.Begin(id, version);
  for (int field = 0; field < static_cast<int>(cells.size()); ++field) {
    if (field != keyField_) AddCell(cells[static_cast<std::size_t>(field)], &sum_);
  }
  return sum_.Value();
}

std::unique_ptr<Row> SqliteStore::RowFrom(Statement& query) {
  auto row = std::make_unique<Row>();
  row->id = query.ColumnInteger(0);
  row->version = query.ColumnInteger(1);
  row->cells.reserve(header_.Fields().size());
  int column = 3;
  for (const TQvDbField& field : header_.Fields()) {
    row->cells.push_back(CellFrom(query, column++, field));
  }
  if (summed_) {
    row->sum = SumOf(row->id, row->version, row->cells);
    if (row->sum != query.ColumnInteger(2)) {
      throw StorageError("the record " + std::to_string(row->id) +
                         " is damaged: it is not what was written");
    }
  }
  return row;
}

LoadedTable SqliteStore::Load() {
  TableLink& link = Link();
  const ReadScope scope(link.Transactions());
  CheckSound();
  TakeSums();
  const TableState state = RequireState();
  LoadedTable table;
  table.header = header_;
  Statement query = Db().Prepare(Sql().ReadAll());
  std::int64_t digest = 0;
  try {
    while (query.Step()) {
      table.rows.push_back(RowFrom(query));
      digest = (digest + table.rows.back()->sum) & RecordSum::kMask;
    }
  } catch (const SqliteError&) {
    throw;
  } catch (const StorageError& error) {
    throw StorageError("\"" + Db().Name() + "\": " + error.what());
  }
  RequireWhole(state, table.rows.size(), digest);
  NoteLoaded(state);
  return table;
}

void SqliteStore::RequireWhole(const TableState& state, std::size_t rows, std::int64_t digest) {
  const bool whole = std::cmp_equal(rows, state.rows) && digest == state.digest;
  if (summed_ && !whole) RefuseDamaged("records are missing, or are those of another moment");
}

std::vector<RecordMark> SqliteStore::ReadMarks(const TableState& state) {
  std::vector<RecordMark> marks;
  std::int64_t digest = 0;
  Statement query = Db().Prepare(Sql().ReadMarks());
  while (query.Step()) {
    marks.push_back({query.ColumnInteger(0), query.ColumnInteger(1), query.ColumnInteger(2)});
    digest = (digest + marks.back().sum) & RecordSum::kMask;
  }
  RequireWhole(state, marks.size(), digest);
  return marks;
}

std::optional<TableChanges> SqliteStore::LoadChanges(std::span<const RecordMark> known) {
  const ReadScope scope(Link().Transactions());
  const TQvDbHeader before = header_;
  const bool wasSummed = summed_;
  CheckSound();
  TakeSums();
  if (!loaded_ || !summed_ || !wasSummed || header_ != before) return std::nullopt;
  const TableState state = RequireState();
  TableChanges changes;
  for (const std::int64_t id : WrittenSince(known, ReadMarks(state), &changes.removed))
    changes.written.push_back(ReadRow(id));
  NoteLoaded(state);
  return changes;
}

RecordSql SqliteStore::Sql() {
  return {Link().Schema(), Link().Table(), header_, summed_};
}

Statement& SqliteStore::Prepared(std::optional<Statement> TableLink::*statement,
                                 std::string (RecordSql::*makeSql)() const) {
  Link().MakeAnew(summed_);
  std::optional<Statement>& place = Link().*statement;
  if (!place) place.emplace(Db(), (Sql().*makeSql)());
  return *place;
}

std::unique_ptr<Row> SqliteStore::ReadRow(std::int64_t id) {
  Statement& query = Prepared(&TableLink::read, &RecordSql::ReadOne);
  query.BindInteger(1, id);
  const StatementScope scope(query);
  return query.Step() ? RowFrom(query) : nullptr;
}

// --- writing ----------------------------------------------------------------------------------

void SqliteStore::BindFields(Statement& statement, const Row& row, std::int64_t id,
                             std::int64_t sum) const {
  statement.BindInteger(1, id);
  statement.BindInteger(2, sum);
  int parameter = 3;
  for (int field = 0; field < static_cast<int>(row.cells.size()); ++field) {
    if (field != keyField_) BindCell(statement, parameter++, row.At(field));
  }
}

std::int64_t SqliteStore::StoredSum(std::int64_t id) {
  Statement query = Db().Prepare(Sql().ReadSum());
  query.BindInteger(1, id);
  return query.Step() ? query.ColumnInteger(0) : 0;
}

void SqliteStore::BeginChange() {
  TableLink& link = Link();
  link.Transactions().BeginFile(link.Schema());
  if (summed_) return;
  TakeSums();
  if (!summed_) AddSums(Db(), link.Schema());
  summed_ = true;
  changes_ = ReadChanges();
}

void SqliteStore::CountChange(int rows, std::int64_t digest) {
  Session& session = Link().Transactions();
  try {
    Statement& count = Prepared(&TableLink::count, &RecordSql::Count);
    count.BindInteger(1, rows);
    count.BindInteger(2, digest);
    count.Run();
    if (session.Db().Changes() != 1) RefuseDamaged("the state of its table is gone");
  } catch (...) {
    // The record is changed and the count is not.
    session.Doom();
    throw;
  }
  if (!before_) before_ = changes_;
  ++changes_;
}

/// One change with the count of it. Where it does not come about, the rows in memory are no longer
/// known to be those of the store.
class SqliteStore::Change {
 public:
  explicit Change(SqliteStore& store, bool severalStatements = false)
      : store_(store),
        own_(!store.Link().Transactions().Active()),
        scope_(store.Link().Transactions(), severalStatements) {
    store_.BeginChange();
  }
  ~Change() {
    if (done_ || !own_) return;
    store_.before_.reset();
    store_.loaded_ = false;
  }
  Change(const Change&) = delete;
  Change& operator=(const Change&) = delete;

  void Done(int rows, std::int64_t digest) {
    store_.CountChange(rows, digest);
    scope_.Done(&store_);
    done_ = true;
  }

 private:
  SqliteStore& store_;
  bool own_;
  WriteScope scope_;
  bool done_ = false;
};

std::int64_t SqliteStore::LastKey() {
  Statement& query = Prepared(&TableLink::nextKey, &RecordSql::LastKey);
  const StatementScope scope(query);
  return query.Step() ? query.ColumnInteger(0) : 0;
}

void SqliteStore::Insert(Row* row) {
  Change change(*this);
  const std::int64_t id = LastKey() + 1;
  if (keyField_ >= 0 && !FitsKey(id)) throw DataSetError("the table has no keys left");
  const std::int64_t sum = SumOf(id, 1, row->cells);
  Statement& insert = Prepared(&TableLink::insert, &RecordSql::Insert);
  BindFields(insert, *row, id, sum);
  insert.Run();
  change.Done(1, sum);
  row->id = id;
  row->version = 1;
  row->sum = sum;
  if (keyField_ >= 0) row->cells[static_cast<std::size_t>(keyField_)] = id;
}

void SqliteStore::RaiseLastKey(std::int64_t key) {
  WriteScope scope(Link().Transactions(), true);
  const std::string sequence = QuoteName(Link().Schema()) + ".sqlite_sequence";
  const std::string raised = std::to_string(std::max(key, LastKey()));
  Db().Execute("DELETE FROM " + sequence + " WHERE name = " + QuoteText(Link().Table()) +
               " COLLATE NOCASE; INSERT INTO " + sequence + " (name, seq) VALUES (" +
               QuoteText(Link().Table()) + ", " + raised + ")");
  scope.Done(nullptr);
}

bool SqliteStore::Update(std::int64_t id, Row* row) {
  const std::int64_t newId = keyField_ >= 0 ? CellInteger(row->At(keyField_)) : id;
  if (keyField_ >= 0 && !FitsKey(newId)) throw DataSetError("a key has to be positive");
  Change change(*this, newId != id);
  if (newId != id) RaiseLastKey(newId);
  const std::int64_t oldSum = row->sum != kNoSum ? row->sum : StoredSum(id);
  const std::int64_t sum = SumOf(newId, row->version + 1, row->cells);
  Statement& update = Prepared(&TableLink::update, &RecordSql::Update);
  BindFields(update, *row, newId, sum);
  const int parameter = static_cast<int>(row->cells.size()) + (keyField_ >= 0 ? 2 : 3);
  update.BindInteger(parameter, id);
  update.BindInteger(parameter + 1, row->version);
  try {
    update.Run();
  } catch (const SqliteError& error) {
    if (!error.IsTakenKey()) throw;
    throw DataSetError("another record has the key " + std::to_string(newId));
  }
  if (Db().Changes() == 0) return false;
  change.Done(0, DigestStep(oldSum, sum));
  row->id = newId;
  ++row->version;
  row->sum = sum;
  return true;
}

bool SqliteStore::Delete(const Row& row) {
  Change change(*this);
  const std::int64_t oldSum = row.sum != kNoSum ? row.sum : StoredSum(row.id);
  Statement& remove = Prepared(&TableLink::remove, &RecordSql::Delete);
  remove.BindInteger(1, row.id);
  remove.BindInteger(2, row.version);
  remove.Run();
  if (Db().Changes() == 0) return false;
  Db().Execute("DELETE FROM " + QuoteName(Link().Schema()) + ".qv_notes WHERE table_name = " +
               QuoteText(Link().Table()) + " AND record = " + std::to_string(row.id));
  change.Done(-1, DigestStep(oldSum, 0));
  return true;
}

// --- notes ------------------------------------------------------------------------------------

std::optional<std::string> SqliteStore::Note(std::int64_t id, std::string_view kind) {
  if (!summed_) return std::nullopt;
  const ReadScope scope(Link().Transactions());
  Statement query = Db().Prepare("SELECT value FROM " + QuoteName(Link().Schema()) +
                                 ".qv_notes WHERE table_name = ? AND record = ? AND kind = ?");
  query.BindText(1, Link().Table());
  query.BindInteger(2, id);
  query.BindText(3, kind);
  return query.Step() ? std::optional<std::string>(query.ColumnText(0)) : std::nullopt;
}

void SqliteStore::SetNote(std::int64_t id, std::string_view kind, std::string_view value) {
  Change change(*this);
  Statement put = Db().Prepare("INSERT INTO " + QuoteName(Link().Schema()) +
                               ".qv_notes VALUES (?1, ?2, ?3, ?4) ON CONFLICT DO UPDATE SET "
                               "value = ?4");
  put.BindText(1, Link().Table());
  put.BindInteger(2, id);
  put.BindText(3, kind);
  put.BindText(4, value);
  put.Run();
  change.Done(0, 0);
}

}  // namespace QvPlatform::detail
