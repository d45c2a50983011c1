#include "assembly/checks/duplicates_check.h"

#include <map>
#include <string>

#include "processors/data_processor.h"

namespace QvRefSystem {

void CheckDuplicates(const CheckedDatabase& database, Findings& findings) {
  for (const ObjectDescriptor& descriptor : ObjectDescriptors()) {
    if (descriptor.equality.empty()) continue;
    const TQvRfDataProcessor& objects =
        *ProcessorFor(database.Data(), static_cast<int>(descriptor.type));
    std::map<std::string, int> seen;
    for (const CheckedRow row : database.Of(descriptor.table)) {
      const auto [first, isNew] = seen.emplace(objects.ComparableRecord(row.Row()), row.Key());
      if (!isNew) findings.Add(row, "equal to key " + std::to_string(first->second));
    }
  }
}

}  // namespace QvRefSystem
