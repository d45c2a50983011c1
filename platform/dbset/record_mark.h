#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace QvPlatform::detail {

/// What tells whether a record is still the one that was read.
struct RecordMark {
  /// Identity of the record.
  std::int64_t id = 0;
  /// Its version.
  std::int64_t version = 0;
  /// Its checksum.
  std::int64_t sum = 0;
};

/// Identities of the records that were added or changed since the marks that are known were taken;
/// `removed` takes those of the records that are gone. Both run by rising identity.
[[nodiscard]] std::vector<std::int64_t> WrittenSince(std::span<const RecordMark> known,
                                                     std::span<const RecordMark> found,
                                                     std::vector<std::int64_t>* removed);

}  // namespace QvPlatform::detail
