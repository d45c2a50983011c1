#pragma once

#include "processors/data_processor.h"

namespace QvRefSystem {

// The units are one family: all that tells them apart stands in their descriptors.

class TQvRfLinearUnitDataProcessor final : public TQvRfDataProcessor {
 public:
  explicit TQvRfLinearUnitDataProcessor(TdatamoduleQvRfData& data)
      : TQvRfDataProcessor(data, DescriptorOf(TObjectType::kLinearUnit)) {}
};

class TQvRfAngularUnitDataProcessor final : public TQvRfDataProcessor {
 public:
  explicit TQvRfAngularUnitDataProcessor(TdatamoduleQvRfData& data)
      : TQvRfDataProcessor(data, DescriptorOf(TObjectType::kAngularUnit)) {}
};

class TQvRfScaleUnitDataProcessor final : public TQvRfDataProcessor {
 public:
  explicit TQvRfScaleUnitDataProcessor(TdatamoduleQvRfData& data)
      : TQvRfDataProcessor(data, DescriptorOf(TObjectType::kScaleUnit)) {}
};

}  // namespace QvRefSystem
