#pragma once

#include <memory>
#include <vector>

namespace QvPlatform {

class TQvDataSet;

/// Several tables as they stand at one moment. While it lives nobody commits to them, and so it
/// should be short; whoever writes inside of it waits for himself and fails.
class TQvReadGroup {
 public:
  /// Takes the locks of a reader and brings the data sets up to date. Null and closed data sets are
  /// passed over; those in a write group are safe from others already. Throws StorageError.
  explicit TQvReadGroup(const std::vector<TQvDataSet*>& dataSets);
  ~TQvReadGroup();
  TQvReadGroup(const TQvReadGroup&) = delete;
  TQvReadGroup& operator=(const TQvReadGroup&) = delete;

 private:
  std::vector<std::shared_ptr<void>> holds_;
};

}  // namespace QvPlatform
