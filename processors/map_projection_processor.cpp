#include "processors/map_projection_processor.h"

#include <algorithm>

#include "platform/data/system_kinds.h"
#include "platform/text/text.h"

namespace QvRefSystem {

namespace {

constexpr int kTypeContent = static_cast<int>(TObjectType::kMapProjectionType);
// PARAM_GROUP of the MIF/MID codes that belong to projected systems.
constexpr int kMifProjectedGroup = static_cast<int>(SystemKind::kProjected);

}  // namespace

class TQvRfMapProjDataProcessor::Values {
 public:
  Values(std::vector<QvPlatform::RowView> rows, const CodeRows& codes)
      : rows_(std::move(rows)), codes_(codes) {}

  /// Null for a parameter that has no row.
  [[nodiscard]] const std::string* Find(int code) const {
    for (const QvPlatform::RowView row : rows_) {
      if (row.GetInteger(codes_.Field(CodeRows::kCode)) == code) return &codes_.ValueOf(row);
    }
    return nullptr;
  }

 private:
  std::vector<QvPlatform::RowView> rows_;
  const CodeRows& codes_;
};

TQvRfMapProjDataProcessor::Values TQvRfMapProjDataProcessor::ValuesOf(int key, int type) const {
  return {codes_.FindRows({codes_.Match(CodeRows::kOwnerId, key),
                           codes_.Match(CodeRows::kOwnerContent, kProjectionParameterOwner),
                           codes_.Match(ParamTag::kProjectionParameter),
                           codes_.Match(CodeRows::kGroup, type)}),
          codes_};
}

bool TQvRfMapProjDataProcessor::WriteOwnItem(TStringTree* tree, const TreeItem& item,
                                             const RecordView& record) {
  const int type = record.Integer(Column("TYPE"));
  if (item.id != TreeIds::kProjectionParameters.id) {
    const std::string* code = codes_.FindFilled(kTypeContent, type, ParamTag::kGeoTiff);
    if (code != nullptr) EnsureField(tree, item.id, item.index, *code, item.label);
    return true;
  }
  const Values values = ValuesOf(record.Integer(KeyColumn()), type);
  for (const ProjectionParameterRow& parameter : parameters_.OfType(type)) {
    const std::string* value = values.Find(parameter.code);
    if (value != nullptr && !EnsureField(tree, parameter.tag, 0, *value, parameter.name)) {
      return false;
    }
  }
  return true;
}

bool TQvRfMapProjDataProcessor::ReadOwnItem(TStringTree* tree, const TreeItem& item,
                                            RecordImage* image) {
  if (item.id != TreeIds::kProjectionParameters.id) return true;
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
  const Values values = ValuesOf(KeyOf(row), image.Integer(Column("TYPE")));
  return std::ranges::all_of(image.Beside, [&](const auto& parameter) {
    const std::string* stored = values.Find(parameter.first);
    return stored == nullptr ||
           QvPlatform::TrimView(*stored) == QvPlatform::TrimView(parameter.second);
  });
}

std::string TQvRfMapProjDataProcessor::ComparableBeside(QvPlatform::RowView row) const {
  std::string text;
  for (const QvPlatform::RowView value :
       codes_.FindRows({codes_.Match(CodeRows::kOwnerId, KeyOf(row)),
                        codes_.Match(ParamTag::kProjectionParameter)})) {
    text += std::to_string(value.GetInteger(codes_.Field(CodeRows::kCode))) + '=' +
            QvPlatform::Trim(codes_.ValueOf(value)) + '\n';
  }
  return text;
}

void TQvRfMapProjDataProcessor::AppendBeside(TStringTree* tree, const RecordImage& image, int key) {
  const int type = image.Integer(Column("TYPE"));
  for (const ProjectionParameterRow& parameter : parameters_.OfType(type)) {
    AppendParameter(key, type, parameter.code, image.Beside.at(parameter.code));
  }
  TQvRfDataProcessor::AppendBeside(tree, image, key);
}

void TQvRfMapProjDataProcessor::DeleteBeside(int key) {
  codes_.Delete({codes_.Match(CodeRows::kOwnerId, key),
                 codes_.Match(CodeRows::kGroup, CurrentInteger("TYPE")),
                 codes_.Match(ParamTag::kProjectionParameter)},
                true);
}

std::string TQvRfMapProjDataProcessor::ParameterValue(int key, int type, int code) const {
  const QvPlatform::RowView row = codes_.FindRow(
      {codes_.Match(CodeRows::kOwnerId, key), codes_.Match(ParamTag::kProjectionParameter),
       codes_.Match(CodeRows::kGroup, type), codes_.Match(CodeRows::kCode, code)});
  return row ? codes_.ValueOf(row) : std::string();
}

void TQvRfMapProjDataProcessor::StoreParameterValue(int key, int type, int code,
                                                    std::string_view value, bool isNew) {
  const std::initializer_list<QvPlatform::RowMatch> rows = {
      codes_.Match(CodeRows::kOwnerId, key), codes_.Match(ParamTag::kProjectionParameter),
      codes_.Match(CodeRows::kGroup, type), codes_.Match(CodeRows::kCode, code)};
  if (isNew && codes_.FindRow(rows)) {
    throw QvPlatform::DataSetError("a new map projection has values of parameters already");
  }
  codes_.Delete(rows, true);
  AppendParameter(key, type, code, value);
}

void TQvRfMapProjDataProcessor::AppendParameter(int key, int type, int code,
                                                std::string_view value) {
  codes_.Append({.ownerContent = kProjectionParameterOwner,
                 .ownerId = key,
                 .tag = ParamTag::kProjectionParameter,
                 .group = type,
                 .code = code},
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
  const QvPlatform::RowView row = codes_.FindRow(
      {codes_.Match(CodeRows::kOwnerId, CurrentInteger("TYPE")),
       codes_.Match(CodeRows::kOwnerContent, kTypeContent), codes_.Match(ParamTag::kMif),
       codes_.Match(CodeRows::kGroup, kMifProjectedGroup)});
  return row && !QvPlatform::IsBlank(codes_.ValueOf(row)) &&
         EnsureField(tree, TreeIds::kMifSystemType, codes_.ValueOf(row));
}

}  // namespace QvRefSystem
