#include "processors/map_projection_processor.h"

#include <algorithm>

#include "platform/text/text.h"

namespace QvRefSystem {

namespace {

constexpr int kParameterTag = static_cast<int>(ParamTag::kProjectionParameter);
constexpr int kTypeContent = static_cast<int>(TObjectType::kMapProjectionType);
// PARAM_GROUP of the MIF/MID codes that belong to projected systems.
constexpr int kMifProjectedGroup = 5;

}  // namespace

class TQvRfMapProjDataProcessor::Values {
 public:
  Values(std::vector<QvPlatform::RowView> rows, int codeField, int valueField)
      : rows_(std::move(rows)), codeField_(codeField), valueField_(valueField) {}

  /// Null for a parameter that has no row.
  [[nodiscard]] const std::string* Find(int code) const {
    for (const QvPlatform::RowView row : rows_) {
      if (row.GetInteger(codeField_) == code) return &row.GetText(valueField_);
    }
    return nullptr;
  }

 private:
  std::vector<QvPlatform::RowView> rows_;
  int codeField_;
  int valueField_;
};

TQvRfMapProjDataProcessor::Values TQvRfMapProjDataProcessor::ValuesOf(int key, int type) const {
  return {data_.datasetParamValue.FindAll(
              {ParamMatch(kOwnerId, key), ParamMatch(kOwnerContent, kProjectionParameterOwner),
               ParamMatch(kParamTag, kParameterTag), ParamMatch(kParamGroup, type)}),
          ParamField(kParamCode), ParamField(kValue)};
}

bool TQvRfMapProjDataProcessor::WriteOwnItem(TStringTree* tree, const TreeItem& item) {
  const int type = CurrentInteger("TYPE");
  if (item.id != TreeIds::kProjectionParameters.id) {
    const std::string* code = FindFilledCode(kTypeContent, type, ParamTag::kGeoTiff);
    if (code != nullptr) EnsureField(tree, item.id, item.index, *code, item.label);
    return true;
  }
  const Values values = ValuesOf(GetCurrentKey(), type);
  for (const ProjectionParameterRow& parameter : parameters_.OfType(type)) {
    const std::string* value = values.Find(parameter.code);
    if (value != nullptr && !EnsureField(tree, parameter.tag, 0, *value, parameter.name)) {
      return false;
    }
  }
  return true;
}

bool TQvRfMapProjDataProcessor::ReadContent(TStringTree* tree, RecordImage* image) {
  if (!TQvRfDataProcessor::ReadContent(tree, image)) return false;
  for (const ProjectionParameterRow& parameter :
       parameters_.OfType(image->Integer(Column("TYPE")))) {
    std::string value;
    if (!tree->GetString(parameter.tag, 0, &value)) return false;
    image->Beside[parameter.code] = std::move(value);
  }
  return true;
}

bool TQvRfMapProjDataProcessor::IsEqualBeside(const RecordImage& image,
                                              QvPlatform::RowView row) const {
  const Values values = ValuesOf(row.GetInteger(Column("AUTOKEY")), image.Integer(Column("TYPE")));
  return std::ranges::all_of(image.Beside, [&](const auto& parameter) {
    const std::string* stored = values.Find(parameter.first);
    return stored == nullptr ||
           QvPlatform::TrimView(*stored) == QvPlatform::TrimView(parameter.second);
  });
}

void TQvRfMapProjDataProcessor::AppendBeside(TStringTree* tree, const RecordImage& image, int key) {
  const int type = image.Integer(Column("TYPE"));
  for (const ProjectionParameterRow& parameter : parameters_.OfType(type)) {
    AppendParamValue(kProjectionParameterOwner, key, ParamTag::kProjectionParameter, type,
                     parameter.code, image.Beside.at(parameter.code));
  }
  TQvRfDataProcessor::AppendBeside(tree, image, key);
}

void TQvRfMapProjDataProcessor::DeleteBeside(int key) {
  DeleteParamValues({ParamMatch(kOwnerId, key), ParamMatch(kParamGroup, CurrentInteger("TYPE")),
                     ParamMatch(kParamTag, kParameterTag)},
                    true);
}

std::string TQvRfMapProjDataProcessor::ParameterValue(int key, int type, int code) const {
  const QvPlatform::RowView row = data_.datasetParamValue.FindFirst(
      {ParamMatch(kOwnerId, key), ParamMatch(kParamTag, kParameterTag),
       ParamMatch(kParamGroup, type), ParamMatch(kParamCode, code)});
  return row ? row.GetText(ParamField(kValue)) : std::string();
}

void TQvRfMapProjDataProcessor::StoreParameterValue(int key, int type, int code,
                                                    std::string_view value, bool isNew) {
  const std::initializer_list<QvPlatform::RowMatch> rows = {
      ParamMatch(kOwnerId, key), ParamMatch(kParamTag, kParameterTag),
      ParamMatch(kParamGroup, type), ParamMatch(kParamCode, code)};
  if (isNew && data_.datasetParamValue.FindFirst(rows)) {
    throw QvPlatform::DataSetError("a new map projection has values of parameters already");
  }
  DeleteParamValues(rows, true);
  AppendParamValue(kProjectionParameterOwner, key, ParamTag::kProjectionParameter, type, code,
                   value);
}

std::vector<std::string> TQvRfMapProjDataProcessor::AllowedValues(int type, int code) const {
  QvPlatform::TQvDataSet& table = data_.datasetSystemValue;
  const auto match = [&table](const char* field, int value) {
    return QvPlatform::RowMatch::Integer(table.FieldByName(field).GetIndex(), value);
  };
  const int valueField = table.FieldByName("VALUE").GetIndex();
  std::vector<std::string> values;
  for (const QvPlatform::RowView row :
       table.FindAll({match("PARAM_TAG", static_cast<int>(ParamTag::kAllowedValue)),
                      match("OWNER_ID", type), match("PARAM_GROUP", code)})) {
    values.push_back(row.GetText(valueField));
  }
  return values;
}

bool TQvRfMapProjDataProcessor::WriteMifProjectionType(TStringTree* tree) {
  const QvPlatform::RowView row = data_.datasetParamValue.FindFirst(
      {ParamMatch(kOwnerId, CurrentInteger("TYPE")), ParamMatch(kOwnerContent, kTypeContent),
       ParamMatch(kParamTag, static_cast<int>(ParamTag::kMif)),
       ParamMatch(kParamGroup, kMifProjectedGroup)});
  return row && !QvPlatform::IsBlank(row.GetText(ParamField(kValue))) &&
         EnsureField(tree, TreeIds::kMifSystemType, row.GetText(ParamField(kValue)));
}

}  // namespace QvRefSystem
