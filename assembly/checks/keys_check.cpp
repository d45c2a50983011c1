#include "assembly/checks/keys_check.h"

#include <set>

#include "platform/text/text.h"

namespace QvRefSystem {

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
  }
}

}  // namespace QvRefSystem
