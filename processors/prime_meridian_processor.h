#pragma once

#include "processors/data_processor.h"

namespace QvRefSystem {

/// Prime meridians. Their own: the info line of the longitude with its unit.
class TQvRfPrimeMeridianDataProcessor final : public TQvRfDataProcessor {
 public:
  /// Its table is open in `data`, which must outlive the processor.
  explicit TQvRfPrimeMeridianDataProcessor(TdatamoduleQvRfData& data)
      : TQvRfDataProcessor(data, DescriptorOf(TObjectType::kPrimeMeridian)) {}

  bool GetInfoLines(TStrings* lines) override;
};

}  // namespace QvRefSystem
