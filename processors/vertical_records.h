#pragma once

#include <span>
#include <string>

#include "platform/data/height_kind.h"
#include "processors/data_processor.h"

namespace QvRefSystem {

/// The columns in which two height systems of that kind have to agree to be the same.
[[nodiscard]] std::span<const EqualityColumn> VerticalEqualityOf(int kind);

/// What reference systems ask of the processor of their height systems, which stands in a room
/// above theirs.
class VerticalRecords : public TQvRfDataProcessor {
 public:
  using TQvRfDataProcessor::TQvRfDataProcessor;

  /// Whether systems of that kind have a record. Throws InvalidTypeError for an unknown kind.
  [[nodiscard]] static bool IsStoredKind(int kind);
  /// Whether the current record and that of the other key say the same. False for a key that is not
  /// there.
  [[nodiscard]] bool IsSameRecord(int otherKey) const;
  /// A text in which two height systems agree where IsSameRecord finds them equal; for a key that
  /// is not there, one that no other key has.
  [[nodiscard]] std::string ComparableHeights(int key) const;
  /// Removes the record of that key with its height file, if it is there. Nobody is asked. Throws
  /// StorageError or DataSetError.
  void Remove(int key);
};

}  // namespace QvRefSystem
