#include "assembly/checks/duplicates_check.h"

#include <map>
#include <string>

#include "assembly/checks/double_records.h"
#include "processors/data_processor.h"

namespace QvRefSystem {
namespace {

std::string EqualTo(int key) {
  return "equal to key " + std::to_string(key);
}

// Records that a tree takes for one, but that differ in what it does not compare: which of them is
// the right one, only a person can tell.
void NoteTwins(const CheckedTable& table, const TQvRfDataProcessor& objects,
               const DoubleRecords& doubles, Findings& findings) {
  const TableId id = table.Spec().id;
  std::map<std::string, int> seen;
  for (const CheckedRow row : table) {
    if (doubles.KeptKey(id, row.Key()) != row.Key()) continue;
    const auto [first, isNew] = seen.emplace(objects.ComparableRecord(row.Row()), row.Key());
    if (!isNew) findings.Note(row, EqualTo(first->second) + " but for words or codes");
  }
}

}  // namespace

void CheckDuplicates(const CheckedDatabase& database, Findings& findings) {
  const DoubleRecords doubles(database);
  for (const MergedRecord& merge : doubles.Merges()) {
    const CheckedTable& table = database.Of(merge.table);
    const int key = table.Column(table.Spec().keyField);
    const auto row = table.DataSet().FindFirst({QvPlatform::RowMatch::Integer(key, merge.key)});
    if (row) findings.Add(CheckedRow(table, row), EqualTo(merge.into), merge);
  }
  for (const ObjectDescriptor& descriptor : ObjectDescriptors()) {
    if (descriptor.equality.empty()) continue;
    NoteTwins(database.Of(descriptor.table),
              *ProcessorFor(database.Data(), static_cast<int>(descriptor.type)), doubles, findings);
  }
}

}  // namespace QvRefSystem
