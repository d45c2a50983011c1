#include "assembly/checks/double_records.h"

#include <algorithm>

#include "processors/object_descriptor.h"

namespace QvRefSystem {
namespace {

using QvPlatform::RowMatch;
using QvPlatform::RowScope;

bool IsMergeable(const ObjectDescriptor& descriptor) {
  // The records of the type tables are known by their type, which is no generated key.
  return !descriptor.equality.empty() && TableOf(descriptor.table).keyField == "AUTOKEY";
}

bool IsOfNoMeaning(std::string_view field) {
  return field == "AUTOKEY" || field == "FAVOUR" || field == "LAST_USE";
}

TableId RefersTo(const TableSpec& table, std::string_view field) {
  const auto spec = std::ranges::find(table.fields, field, &FieldSpec::name);
  return spec == table.fields.end() ? TableId::kNone : spec->refersTo;
}

// The table of the owner of a row of param_value; kNone for a number that is no owner's.
TableId OwnerTable(int content) {
  if (content == kProjectionParameterOwner) return TableId::kMapProj;
  const TObjectType type = ObjectTypeOf(content);
  return type == TObjectType::kNone ? TableId::kNone : DescriptorOf(type).table;
}

}  // namespace

DoubleRecords::DoubleRecords(const CheckedDatabase& database) : database_(database) {
  for (const ObjectDescriptor& descriptor : ObjectDescriptors()) {
    if (IsMergeable(descriptor)) Collect(descriptor.table);
  }
  ReadValues();
  // What a record refers to may become one only by a merge.
  bool merged = true;
  while (merged) {
    merged = false;
    for (const Table& table : tables_)
      merged = MergeIn(table) || merged;
  }
}

void DoubleRecords::Collect(TableId id) {
  const CheckedTable& records = database_.Of(id);
  std::map<std::string, int> names;
  for (const CheckedRow row : records)
    ++names[row.Text("NAME")];
  Table table{id, {}, {}};
  for (const CheckedRow row : records) {
    if (names[row.Text("NAME")] > 1) table.candidates.push_back({row.Key(), row.Row(), {}});
  }
  if (table.candidates.empty()) return;
  const auto& fields = records.DataSet().Header().Fields();
  for (int number = 0; number < static_cast<int>(fields.size()); ++number) {
    const std::string& name = fields[static_cast<std::size_t>(number)].name;
    if (!IsOfNoMeaning(name)) table.columns.push_back({number, RefersTo(records.Spec(), name)});
  }
  std::ranges::sort(table.candidates, {}, &Candidate::key);
  tables_.push_back(std::move(table));
}

void DoubleRecords::ReadValues() {
  std::map<std::pair<TableId, int>, std::string*> owners;
  for (Table& table : tables_) {
    for (Candidate& candidate : table.candidates)
      owners[{table.id, candidate.key}] = &candidate.values;
  }
  if (owners.empty()) return;
  for (const CheckedRow row : database_.Of(TableId::kParamValue)) {
    const int content = row.Integer("OWNER_CONTENT");
    const auto owner = owners.find({OwnerTable(content), row.Integer("OWNER_ID")});
    if (owner == owners.end()) continue;
    *owner->second += std::to_string(content);
    for (const auto field : {"PARAM_TAG", "PARAM_GROUP", "PARAM_CODE"})
      *owner->second += ' ' + std::to_string(row.Integer(field));
    *owner->second += ' ' + row.Text("VALUE") + '\n';
  }
}

int DoubleRecords::KeptKey(TableId table, int key) const {
  auto kept = kept_.find({table, key});
  while (kept != kept_.end()) {
    key = kept->second;
    kept = kept_.find({table, key});
  }
  return key;
}

std::string DoubleRecords::TextOf(const Table& table, const Candidate& candidate) const {
  std::string text;
  for (const auto& [number, refersTo] : table.columns) {
    text += refersTo == TableId::kNone
                ? candidate.row.GetString(number)
                : std::to_string(KeptKey(refersTo, candidate.row.GetInteger(number)));
    text += '\0';
  }
  return text + candidate.values;
}

bool DoubleRecords::MergeIn(const Table& table) {
  const std::size_t before = merges_.size();
  std::map<std::string, int> seen;
  for (const Candidate& candidate : table.candidates) {
    if (kept_.contains({table.id, candidate.key})) continue;
    const auto [first, isNew] = seen.emplace(TextOf(table, candidate), candidate.key);
    // A key that stands twice is a fault of another kind.
    if (isNew || first->second == candidate.key) continue;
    const int name = database_.Of(table.id).Column("NAME");
    merges_.push_back({table.id, candidate.key, first->second, candidate.row.GetText(name),
                       CountReferences(table.id, candidate.key)});
    kept_[{table.id, candidate.key}] = first->second;
  }
  return merges_.size() > before;
}

int DoubleRecords::CountReferences(TableId table, int key) const {
  std::size_t count = 0;
  for (const auto& [id, users] : database_.Tables()) {
    for (const FieldSpec& field : users.Spec().fields) {
      if (field.refersTo != table) continue;
      const auto match = RowMatch::Integer(users.Column(field.name), key);
      count += users.DataSet().FindAll({match}, RowScope::kAll).size();
    }
  }
  return static_cast<int>(count);
}

}  // namespace QvRefSystem
