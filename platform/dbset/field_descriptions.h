#pragma once

#include <vector>

#include "platform/dbset/db_header.h"
#include "platform/storage/table_format.h"

namespace QvPlatform::detail {

/// The declaration of a table in the form in which it is stored.
[[nodiscard]] inline std::vector<FieldDescription> Describe(const TQvDbHeader& header) {
  std::vector<FieldDescription> fields;
  for (const TQvDbField& field : header.Fields()) {
    fields.push_back(
        {field.name, static_cast<int>(field.type), static_cast<int>(field.need), field.length});
  }
  return fields;
}

/// A stored declaration as a header. Throws std::invalid_argument for one that AddField refuses.
[[nodiscard]] inline TQvDbHeader HeaderOf(const std::vector<FieldDescription>& fields) {
  TQvDbHeader header;
  for (const FieldDescription& field : fields) {
    header.AddField(field.name.c_str(), static_cast<unsigned char>(field.type),
                    static_cast<unsigned char>(field.need),
                    static_cast<unsigned char>(field.length));
  }
  return header;
}

}  // namespace QvPlatform::detail
