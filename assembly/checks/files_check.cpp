#include "assembly/checks/files_check.h"

#include <algorithm>

#include "database/moments.h"

namespace QvRefSystem {

void CheckFiles(const CheckedDatabase& database, Findings& findings) {
  const std::vector<std::string> older = TablesOfOlderMoments(database.Data());
  for (const auto& [id, table] : database.Tables()) {
    for (const std::string& damage : table.DataSet().FindDamage())
      findings.Add(table, "the file is damaged: " + damage);
    // All tables of a container are one file.
    if (database.Data().ResourceForm) return;
    if (std::ranges::find(older, table.Spec().streamName) != older.end()) {
      findings.Add(table, "the file lacks a change that was made to it together with others");
    }
  }
}

}  // namespace QvRefSystem
