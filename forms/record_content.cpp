#include "forms/record_content.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "processors/code_rows.h"

namespace QvRefSystem {

using QvPlatform::RowView;
using QvPlatform::TQvDbField;

namespace {

constexpr std::array<std::string_view, 2> kStamps{"LAST_USE", "FAVOUR"};

bool IsSaid(const TQvDbField& field) {
  return field.need != QvPlatform::FieldNeed::kGeneratedKey &&
         std::ranges::find(kStamps, field.name) == kStamps.end();
}

}  // namespace

RecordContent::RecordContent(const TQvRfDataProcessor& processor, int key) {
  const RowView row = processor.RowOfKey(key);
  exists_ = static_cast<bool>(row);
  if (!exists_) return;
  const auto& fields = processor.DataSet->Header().Fields();
  for (std::size_t number = 0; number < fields.size(); ++number) {
    if (IsSaid(fields[number])) fields_.push_back(row.GetString(static_cast<int>(number)));
  }
  ReadCodes(processor, key);
}

void RecordContent::ReadCodes(const TQvRfDataProcessor& processor, int key) {
  QvPlatform::TQvDataSet& table = processor.Data().datasetParamValue;
  if (!table.GetActive()) return;
  const CodeRows rows(table);
  const TObjectType type = processor.Descriptor().type;
  for (const RowView row : rows.FindRows({rows.Match(CodeRows::kOwnerId, key)})) {
    const int owner = row.GetInteger(rows.Field(CodeRows::kOwnerContent));
    const bool isParameter =
        type == TObjectType::kMapProjection && owner == kProjectionParameterOwner;
    if (owner != static_cast<int>(type) && !isParameter) continue;
    std::string text;
    for (const auto column : {CodeRows::kOwnerContent, CodeRows::kTag, CodeRows::kGroup,
                              CodeRows::kCode, CodeRows::kValue}) {
      text += row.GetString(rows.Field(column)) + '\n';
    }
    codes_.push_back(std::move(text));
  }
  std::ranges::sort(codes_);
}

}  // namespace QvRefSystem
