#include "assembly/checks/files_check.h"

#include <map>

namespace QvRefSystem {
namespace {

// A group of changes writes into each of its files which files it has changed. One that does not
// know of a group that changed it is of an earlier moment than the others: a part of a folder was
// copied or put back.
void CheckMoments(const CheckedDatabase& database, Findings& findings) {
  std::map<std::string, const CheckedTable*, std::less<>> files;
  for (const auto& [id, table] : database.Tables())
    files.emplace(table.Spec().streamName, &table);
  for (const auto& [id, table] : database.Tables()) {
    const QvPlatform::GroupMark mark = table.DataSet().LastGroup();
    for (const std::string& name : mark.files) {
      const auto other = files.find(name);
      if (other == files.end() || other->second->DataSet().LastGroup().number >= mark.number) {
        continue;
      }
      findings.Add(*other->second, "the file lacks a change that " +
                                       std::string(table.Spec().streamName) +
                                       " has: the files are of different moments");
    }
  }
}

}  // namespace

void CheckFiles(const CheckedDatabase& database, Findings& findings) {
  for (const auto& [id, table] : database.Tables()) {
    for (const std::string& damage : table.DataSet().FindDamage())
      findings.Add(table, "the file is damaged: " + damage);
    // All tables of a container are one file.
    if (database.Data().ResourceForm) return;
  }
  CheckMoments(database, findings);
}

}  // namespace QvRefSystem
