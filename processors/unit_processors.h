#pragma once

#include "processors/data_processor.h"

namespace QvRefSystem {

// The units are one family: all that tells them apart stands in their descriptors.

/// Units of lengths; their base unit is the metre.
class TQvRfLinearUnitDataProcessor final : public TQvRfDataProcessor {
 public:
  /// Its table is open in `data`, which must outlive the processor.
  explicit TQvRfLinearUnitDataProcessor(TdatamoduleQvRfData& data)
      : TQvRfDataProcessor(data, DescriptorOf(TObjectType::kLinearUnit)) {}
};

/// Units of angles; their base unit is the radian.
class TQvRfAngularUnitDataProcessor final : public TQvRfDataProcessor {
 public:
  /// Its table is open in `data`, which must outlive the processor.
  explicit TQvRfAngularUnitDataProcessor(TdatamoduleQvRfData& data)
      : TQvRfDataProcessor(data, DescriptorOf(TObjectType::kAngularUnit)) {}
};

/// Units of scale factors and differences; their base unit is unity.
class TQvRfScaleUnitDataProcessor final : public TQvRfDataProcessor {
 public:
  /// Its table is open in `data`, which must outlive the processor.
  explicit TQvRfScaleUnitDataProcessor(TdatamoduleQvRfData& data)
      : TQvRfDataProcessor(data, DescriptorOf(TObjectType::kScaleUnit)) {}
};

}  // namespace QvRefSystem
