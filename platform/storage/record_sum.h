#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/storage/sqlite.h"

namespace QvPlatform::detail {

/// Checksum of one record, over what SQLite gives back for it: its identity, its version and the
/// contents of its fields in their order, without a generated key, which is the identity. It is the
/// same in every form of a database.
class RecordSum {
 public:
  /// Begins the sum of a record.
  void Begin(std::int64_t id, std::int64_t version);
  /// Adds a field without content.
  void AddNull();
  /// Adds an integer.
  void AddInteger(std::int64_t value);
  /// Adds a number. One that is not a number counts as no content, and -0 as 0, since SQLite keeps
  /// them so.
  void AddFloat(double value);
  /// Adds a text of any bytes.
  void AddText(std::string_view text);
  /// Adds a column of the row that a query stands on, by what it holds.
  void AddColumn(const Statement& query, int column);
  /// The sum of what was added since Begin, from 0 to kMask.
  [[nodiscard]] std::int64_t Value() const;

  /// Sums and digests are numbers of 48 bits, so that adding two never leaves 64 bits with a sign.
  static constexpr std::int64_t kMask = (std::int64_t{1} << 48) - 1;

 private:
  void AddNumber(char kind, std::uint64_t bits);

  /// Kept from record to record, so that room is made once.
  std::string bytes_;
};

/// Checksum of bytes of any size, from 0 to RecordSum::kMask.
[[nodiscard]] std::int64_t SumOfBytes(std::string_view bytes);

}  // namespace QvPlatform::detail
