#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/storage/page_file.h"
#include "platform/storage/record_sum.h"
#include "platform/storage/table_format.h"

namespace QvPlatform::detail {

/// Checksum of a record with a value for each field of its table; the generated key counts as the
/// identity alone.
[[nodiscard]] std::int64_t SumOfRecord(const std::vector<FieldDescription>& fields, std::int64_t id,
                                       std::int64_t version,
                                       const std::vector<StoredValue>& values);

/// Makes the bytes of a table file out of records that come with their keys and versions.
class TableImage {
 public:
  /// A table without records.
  explicit TableImage(std::vector<FieldDescription> fields);

  /// Adds a record with a value for each field; that of a generated key counts for nothing, since
  /// `id` is it. False, with nothing added, for a record that the table cannot hold.
  [[nodiscard]] bool Add(std::int64_t id, std::int64_t version,
                         const std::vector<StoredValue>& values);
  /// The bytes of the file. No key up to `lastKey` will be given to a new record.
  [[nodiscard]] std::string Finish(std::int64_t lastKey);

 private:
  [[nodiscard]] std::string InsertSql() const;

  std::vector<FieldDescription> fields_;
  Connection memory_;
  // Goes before the connection.
  std::optional<Statement> insert_;
  std::int64_t rows_ = 0;
  std::int64_t digest_ = 0;
};

}  // namespace QvPlatform::detail
