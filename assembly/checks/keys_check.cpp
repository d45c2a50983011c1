#include "assembly/checks/keys_check.h"

#include <set>

#include "database/key_counters.h"
#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

void CheckCounter(const CheckedDatabase& database, const CheckedTable& table, Findings& findings) {
  const int last = table.DataSet().LastKey();
  const int named = GreatestNamedKey(
      [&](TableId id) -> QvPlatform::TQvDataSet& { return database.Data().DataSet(id); },
      table.Spec().id);
  if (named <= last) return;
  findings.Add(table,
               "key " + std::to_string(named) + " is named, and new keys begin behind " +
                   std::to_string(last),
               RaisedCounter{table.Spec().id, named});
}

}  // namespace

void CheckKeys(const CheckedDatabase& database, Findings& findings) {
  for (const auto& [id, table] : database.Tables()) {
    if (!table.HasKeys()) continue;
    std::set<int> keys;
    for (const CheckedRow row : table) {
      const int key = row.Key();
      if (key < 1) findings.Add(row, "the key is not above 0");
      if (!keys.insert(key).second) findings.Add(row, "the key stands twice");
      if (QvPlatform::IsBlank(row.Text("NAME"))) findings.Add(row, "there is no name");
    }
    if (table.Spec().keyField == "AUTOKEY") CheckCounter(database, table, findings);
  }
}

}  // namespace QvRefSystem
