#pragma once

#include <string>
#include <vector>

#include "processors/data_processor.h"

namespace QvRefSystem {

/// What a store says of one record, as far as two users can disagree about it: its fields but for
/// the stamps that choosing and editing leave, and the rows of codes that belong to it.
class RecordContent {
 public:
  /// The content of no record.
  RecordContent() = default;
  /// The content of the record of that key, as the tables in memory have it. Moves no cursor.
  RecordContent(const TQvRfDataProcessor& processor, int key);

  /// Whether there is such a record.
  [[nodiscard]] bool Exists() const { return exists_; }
  /// Two contents are equal if nobody could tell one record from the other by what it says.
  bool operator==(const RecordContent&) const = default;

 private:
  void ReadCodes(const TQvRfDataProcessor& processor, int key);

  bool exists_ = false;
  std::vector<std::string> fields_;
  /// Each with all that it says, in an order of their own.
  std::vector<std::string> codes_;
};

}  // namespace QvRefSystem
