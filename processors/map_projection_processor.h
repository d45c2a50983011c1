#pragma once

#include "processors/data_processor.h"
#include "processors/type_processors.h"

namespace QvRefSystem {

/// Map projections. Their parameters are rows beside the record, as the data of the type says.
class TQvRfMapProjDataProcessor final : public TQvRfDataProcessor {
 public:
  explicit TQvRfMapProjDataProcessor(TdatamoduleQvRfData& data)
      : TQvRfDataProcessor(data, DescriptorOf(TObjectType::kMapProjection)),
        parameters_(data.datasetMapProjParam) {}

  /// Writes the MIF/MID code of systems of the current projection's type; false if it has none.
  [[nodiscard]] bool WriteMifProjectionType(TStringTree* tree);

 protected:
  [[nodiscard]] bool WriteOwnItem(TStringTree* tree, const TTreeItem& item) override;
  [[nodiscard]] bool ReadContent(TStringTree* tree, TRecordImage* image) override;
  [[nodiscard]] bool IsEqualBeside(const TRecordImage& image,
                                   QvPlatform::TRowView row) const override;
  void AppendBeside(TStringTree* tree, const TRecordImage& image, int key) override;
  void DeleteBeside(int key) override;

 private:
  /// The values of a projection's parameters. Where a code has several rows the first counts.
  class Values;
  [[nodiscard]] Values ValuesOf(int key, int type) const;

  TProjectionParameters parameters_;
};

}  // namespace QvRefSystem
