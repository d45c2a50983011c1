#pragma once

#include "processors/data_processor.h"

namespace QvRefSystem {

/// Datums: an ellipsoid and a datum shift under a name. In simple mode a shift that only this
/// datum uses goes with it.
class TQvRfDatumDataProcessor final : public TQvRfDataProcessor {
 public:
  /// Its table is open in `data`, which must outlive the processor.
  explicit TQvRfDatumDataProcessor(TdatamoduleQvRfData& data)
      : TQvRfDataProcessor(data, DescriptorOf(TObjectType::kDatum)) {}

  /// Writes the MIF/MID code of the current datum's ellipsoid as that of a user datum; false if it
  /// has none.
  [[nodiscard]] bool WriteMifUserDatumEllipsoid(TStringTree* tree);

 protected:
  void DeleteBeside(int key) override;
};

}  // namespace QvRefSystem
