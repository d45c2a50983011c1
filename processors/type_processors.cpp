#include "processors/type_processors.h"

namespace QvRefSystem {

using QvPlatform::TMatch;
using QvPlatform::TRowView;

bool TTypeTableProcessor::CheckNotUsed(TComponent* /*owner*/) {
  return false;
}

TProjectionParameters::TProjectionParameters(QvPlatform::TQvDataSet& table)
    : table_(table),
      type_(table.FieldByName("PROJ_TYPE").GetIndex()),
      tag_(table.FieldByName("TAG").GetIndex()),
      name_(table.FieldByName("NAME").GetIndex()),
      kind_(table.FieldByName("KIND").GetIndex()),
      unitType_(table.FieldByName("UNIT_TYPE").GetIndex()),
      code_(table.FieldByName("PARAM_CODE").GetIndex()) {}

std::vector<TProjectionParameterRow> TProjectionParameters::OfType(int type) const {
  std::vector<TProjectionParameterRow> parameters;
  for (const TRowView row : table_.FindAll({TMatch::Integer(type_, type)})) {
    parameters.push_back({row.GetInteger(tag_), row.GetText(name_), row.GetInteger(kind_),
                          row.GetInteger(unitType_), row.GetInteger(code_)});
  }
  return parameters;
}

bool TQvRfMapProjTypeDataProcessor::WriteOwnItem(TStringTree* tree, const TTreeItem& item) {
  for (const TProjectionParameterRow& parameter : parameters_.OfType(CurrentInteger("TYPE"))) {
    if (!EnsureField(tree, item.id, parameter.tag, parameter.name, "map_proj_param_name")) {
      return false;
    }
  }
  return true;
}

bool TQvRfMapProjTypeDataProcessor::ReadContent(TStringTree* tree, TRecordImage* image) {
  if (!TQvRfDataProcessor::ReadContent(tree, image)) return false;
  const int column = Column("TYPE");
  return static_cast<bool>(DataSet->FindFirst({TMatch::Integer(column, image->Integer(column))}));
}

}  // namespace QvRefSystem
