#include "assembly/checks/references_check.h"

namespace QvRefSystem {
namespace {

void CheckField(const CheckedDatabase& database, const CheckedTable& table, const FieldSpec& field,
                Findings& findings) {
  for (const CheckedRow row : table) {
    const int key = row.Integer(field.name);
    if (key == 0 || database.Has(field.refersTo, key)) continue;
    findings.Add(row, std::string(field.name) + " refers to " + std::to_string(key) +
                          ", which is not in " + std::string(TableOf(field.refersTo).streamName));
  }
}

}  // namespace

void CheckReferences(const CheckedDatabase& database, Findings& findings) {
  for (const auto& [id, table] : database.Tables()) {
    for (const FieldSpec& field : table.Spec().fields) {
      if (field.refersTo != TableId::kNone) CheckField(database, table, field, findings);
    }
  }
}

}  // namespace QvRefSystem
