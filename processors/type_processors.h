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

/// The kinds of datum shifts.
class TQvRfDatumShiftTypeDataProcessor final : public TypeTableProcessor {
 public:
  /// Its table is open in `data`, which must outlive the processor.
  explicit TQvRfDatumShiftTypeDataProcessor(TdatamoduleQvRfData& data)
      : TypeTableProcessor(data, DescriptorOf(TObjectType::kDatumShiftType)) {}
};

/// The kinds of reference systems.
class TQvRfRefSystemTypeDataProcessor final : public TypeTableProcessor {
 public:
  /// Its table is open in `data`, which must outlive the processor.
  explicit TQvRfRefSystemTypeDataProcessor(TdatamoduleQvRfData& data)
      : TypeTableProcessor(data, DescriptorOf(TObjectType::kReferenceSystemType)) {}
};

/// One parameter of a map projection type.
struct ProjectionParameterRow {
  /// The id of its field in a tree.
  int tag = 0;
  /// Its name, which is the label of that field.
  std::string_view name;
  /// KIND: kChosenParameter for a value that is chosen from a list, 0 for any number.
  int kind = 0;
  /// What its value counts in: 1 linear, 2 angular, 3 scale unit.
  int unitType = 0;
  /// The EPSG code of the parameter.
  int code = 0;
};

/// The parameters of map projection types, as the table says.
class ProjectionParameters {
 public:
  /// `table` holds the parameters of all types and must outlive this object.
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
  /// Its table is open in `data`, which must outlive the processor.
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
