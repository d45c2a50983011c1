#pragma once

#include "processors/data_processor.h"

namespace QvRefSystem {

/// Datum shifts: three translations (type 1), or seven parameters (types 2 and 3). The type decides
/// which members a shift has and in which order they stand.
class TQvRfDatumShiftDataProcessor final : public TQvRfDataProcessor {
 public:
  /// Its table is open in `data`, which must outlive the processor.
  explicit TQvRfDatumShiftDataProcessor(TdatamoduleQvRfData& data)
      : TQvRfDataProcessor(data, DescriptorOf(TObjectType::kDatumShift)) {}

 protected:
  [[nodiscard]] bool WriteContent(TStringTree* tree) override;
  [[nodiscard]] bool ReadContent(TStringTree* tree, RecordImage* image) override;
};

}  // namespace QvRefSystem
