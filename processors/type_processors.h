#pragma once

#include "processors/data_processor.h"

namespace QvRefSystem {

/// The type tables are closed lists known by their TYPE: nothing is ever added to them or removed.
class TypeTableProcessor : public TQvRfDataProcessor {
 public:
  using TQvRfDataProcessor::TQvRfDataProcessor;
  /// Always false, silently.
  bool CheckNotUsed(TComponent* owner) override;

 protected:
  [[nodiscard]] bool CanAppend() const override { return false; }
};

class TQvRfDatumShiftTypeDataProcessor final : public TypeTableProcessor {
 public:
  explicit TQvRfDatumShiftTypeDataProcessor(TdatamoduleQvRfData& data)
      : TypeTableProcessor(data, DescriptorOf(TObjectType::kDatumShiftType)) {}
};

class TQvRfRefSystemTypeDataProcessor final : public TypeTableProcessor {
 public:
  explicit TQvRfRefSystemTypeDataProcessor(TdatamoduleQvRfData& data)
      : TypeTableProcessor(data, DescriptorOf(TObjectType::kReferenceSystemType)) {}
};

/// One parameter of a map projection type.
struct ProjectionParameterRow {
  int tag = 0;
  std::string_view name;
  int kind = 0;
  int unitType = 0;
  int code = 0;
};

/// The parameters of map projection types, as the table says.
class ProjectionParameters {
 public:
  explicit ProjectionParameters(QvPlatform::TQvDataSet& table);
  /// Those of one type in table order. The names are valid until the table next changes.
  [[nodiscard]] std::vector<ProjectionParameterRow> OfType(int type) const;

 private:
  QvPlatform::TQvDataSet& table_;
  // Field numbers in the file.
  int type_, tag_, name_, kind_, unitType_, code_;
};

/// Its own: the names of the type's parameters, and no notes for a type that is not there.
class TQvRfMapProjTypeDataProcessor final : public TypeTableProcessor {
 public:
  explicit TQvRfMapProjTypeDataProcessor(TdatamoduleQvRfData& data)
      : TypeTableProcessor(data, DescriptorOf(TObjectType::kMapProjectionType)),
        parameters_(data.datasetMapProjParam) {}

 protected:
  [[nodiscard]] bool WriteOwnItem(TStringTree* tree, const TreeItem& item,
                                  const RecordView& record) override;
  [[nodiscard]] bool ReadContent(TStringTree* tree, RecordImage* image) override;

 private:
  ProjectionParameters parameters_;
};

}  // namespace QvRefSystem
