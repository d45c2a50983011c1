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

  /// The parameters of a type, in table order.
  [[nodiscard]] std::vector<ProjectionParameterRow> ParametersOf(int type) const {
    return parameters_.OfType(type);
  }
  /// The value of one parameter of the projection with that key; "" if it has none.
  [[nodiscard]] std::string ParameterValue(int key, int type, int code) const;
  /// Puts a value in the place of all that the parameter has. A new projection has none: one that
  /// is there all the same throws DataSetError.
  void StoreParameterValue(int key, int type, int code, std::string_view value, bool isNew);
  /// The values that a parameter of KIND 1 is chosen from.
  [[nodiscard]] std::vector<std::string> AllowedValues(int type, int code) const;

 protected:
  [[nodiscard]] bool WriteOwnItem(TStringTree* tree, const TreeItem& item,
                                  const RecordView& record) override;
  [[nodiscard]] bool ReadOwnItem(TStringTree* tree, const TreeItem& item,
                                 RecordImage* image) override;
  [[nodiscard]] bool IsEqualBeside(const RecordImage& image,
                                   QvPlatform::RowView row) const override;
  [[nodiscard]] std::string ComparableBeside(QvPlatform::RowView row) const override;
  void AppendBeside(TStringTree* tree, const RecordImage& image, int key) override;
  void DeleteBeside(int key) override;

 private:
  /// The values of a projection's parameters. Where a code has several rows the first counts.
  class Values;
  [[nodiscard]] Values ValuesOf(int key, int type) const;
  void AppendParameter(int key, int type, int code, std::string_view value);

  ProjectionParameters parameters_;
};

/// KIND of a parameter whose value is chosen from a list.
inline constexpr int kChosenParameter = 1;

/// What an allowed value stands for: the text ahead of its first bracket, where an explanation
/// begins. Nothing is trimmed.
[[nodiscard]] constexpr std::string_view ValueOfChoice(std::string_view choice) {
  return choice.substr(0, choice.find('('));
}

}  // namespace QvRefSystem
