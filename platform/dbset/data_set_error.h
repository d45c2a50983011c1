#pragma once

#include <stdexcept>

namespace QvPlatform {

/// An operation that the data set's state does not allow, or a change that the store refused.
class DataSetError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Another process changed or removed the row since it was read. The edit has been cancelled and
/// the data set shows what stands in the store now.
class StaleRecordError : public DataSetError {
 public:
  using DataSetError::DataSetError;
};

}  // namespace QvPlatform
