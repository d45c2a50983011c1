#include "processors/map_projection_processor.h"

#include <algorithm>

#include "platform/text/text.h"
#include "processors/type_processors.h"

namespace QvRefSystem {

namespace {

constexpr int kParameterTag = static_cast<int>(TParamTag::kProjectionParameter);
constexpr int kTypeContent = static_cast<int>(TObjectType::kMapProjectionType);
// PARAM_GROUP of the MIF/MID codes that belong to projected systems.
constexpr int kMifProjectedGroup = 5;

}  // namespace

const std::string* TQvRfMapProjDataProcessor::FindParameter(int key, int type, int code) const {
  const QvPlatform::TRowView row = data_.datasetParamValue.FindFirst(
      {ParamMatch(kOwnerId, key), ParamMatch(kOwnerContent, kProjectionParameterOwner),
       ParamMatch(kParamTag, kParameterTag), ParamMatch(kParamGroup, type),
       ParamMatch(kParamCode, code)});
  return row ? &row.GetText(ParamField(kValue)) : nullptr;
}

bool TQvRfMapProjDataProcessor::WriteOwnItem(TStringTree* tree, const TTreeItem& item) {
  const int type = CurrentInteger("TYPE");
  if (item.id != kProjectionParameterOwner) {
    const std::string* code = FindFilledCode(kTypeContent, type, TParamTag::kGeoTiff);
    if (code != nullptr) EnsureField(tree, item.id, 0, *code, "GeoTIFF map proj type");
    return true;
  }
  const int key = GetCurrentKey();
  for (const TProjectionParameterRow& parameter : ParametersOfType(data_, type)) {
    const std::string* value = FindParameter(key, type, parameter.code);
    if (value != nullptr && !EnsureField(tree, parameter.tag, 0, *value, parameter.name)) {
      return false;
    }
  }
  return true;
}

bool TQvRfMapProjDataProcessor::ReadContent(TStringTree* tree, TRecordImage* image) {
  if (!TQvRfDataProcessor::ReadContent(tree, image)) return false;
  for (const TProjectionParameterRow& parameter :
       ParametersOfType(data_, image->Integer(Column("TYPE")))) {
    std::string value;
    if (!tree->GetString(parameter.tag, 0, &value)) return false;
    image->Beside[parameter.code] = std::move(value);
  }
  return true;
}

bool TQvRfMapProjDataProcessor::IsEqualBeside(const TRecordImage& image,
                                              QvPlatform::TRowView row) const {
  const int key = row.GetInteger(Column("AUTOKEY"));
  const int type = image.Integer(Column("TYPE"));
  return std::ranges::all_of(image.Beside, [&](const auto& parameter) {
    const std::string* stored = FindParameter(key, type, parameter.first);
    return stored == nullptr ||
           QvPlatform::TrimView(*stored) == QvPlatform::TrimView(parameter.second);
  });
}

void TQvRfMapProjDataProcessor::AppendBeside(TStringTree* tree, const TRecordImage& image,
                                             int key) {
  const int type = image.Integer(Column("TYPE"));
  for (const TProjectionParameterRow& parameter : ParametersOfType(data_, type)) {
    AppendParamValue(kProjectionParameterOwner, key, TParamTag::kProjectionParameter, type,
                     parameter.code, image.Beside.at(parameter.code));
  }
  TQvRfDataProcessor::AppendBeside(tree, image, key);
}

void TQvRfMapProjDataProcessor::DeleteBeside(int key) {
  DeleteParamValues({ParamMatch(kOwnerId, key), ParamMatch(kParamGroup, CurrentInteger("TYPE")),
                     ParamMatch(kParamTag, kParameterTag)},
                    true);
}

bool TQvRfMapProjDataProcessor::WriteMifProjectionType(TStringTree* tree) {
  const QvPlatform::TRowView row = data_.datasetParamValue.FindFirst(
      {ParamMatch(kOwnerId, CurrentInteger("TYPE")), ParamMatch(kOwnerContent, kTypeContent),
       ParamMatch(kParamTag, static_cast<int>(TParamTag::kMif)),
       ParamMatch(kParamGroup, kMifProjectedGroup)});
  return row && !QvPlatform::IsBlank(row.GetText(ParamField(kValue))) &&
         EnsureField(tree, 101001, 0, row.GetText(ParamField(kValue)),
                     "MIF/MID reference system type");
}

}  // namespace QvRefSystem
