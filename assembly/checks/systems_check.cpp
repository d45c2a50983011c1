#include "assembly/checks/systems_check.h"

#include "processors/system_bodies.h"

namespace QvRefSystem {

void CheckReferenceSystems(const CheckedDatabase& database, Findings& findings) {
  for (const CheckedRow row : database.Of(TableId::kRefSystem)) {
    const int type = row.Integer("TYPE");
    if (const auto kind = SystemKindOf(type)) {
      for (const std::string_view field : RequiredReferences(*kind))
        findings.NeedReference(row, field);
    } else {
      findings.Add(row, "TYPE " + std::to_string(type) + " is no kind of system");
    }
    if (row.Integer("PRIMARY_REFSYSTEM_AUTOKEY") == row.Key()) {
      findings.Add(row, "the system is its own primary system");
    }
  }
}

}  // namespace QvRefSystem
