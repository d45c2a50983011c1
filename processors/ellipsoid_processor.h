#pragma once

#include "processors/data_processor.h"

namespace QvRefSystem {

/// Ellipsoids and spheres. Their own: which of sphere flag, flattening and minor semi-axis tells
/// the shape, in this order of precedence, as the tree says it.
class TQvRfEllipsoidDataProcessor final : public TQvRfDataProcessor {
 public:
  explicit TQvRfEllipsoidDataProcessor(TdatamoduleQvRfData& data)
      : TQvRfDataProcessor(data, DescriptorOf(TObjectType::kEllipsoid)) {}

 protected:
  [[nodiscard]] bool ReadContent(TStringTree* tree, RecordImage* image) override;
  [[nodiscard]] bool IsEqualBeside(const RecordImage& image,
                                   QvPlatform::RowView row) const override;
  [[nodiscard]] std::string ComparableBeside(QvPlatform::RowView row) const override;
};

}  // namespace QvRefSystem
