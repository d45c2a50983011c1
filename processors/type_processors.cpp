#include "processors/type_processors.h"

namespace QvRefSystem {

using QvPlatform::TMatch;
using QvPlatform::TRowView;

bool TTypeTableProcessor::CheckNotUsed(TComponent* /*owner*/) { return false; }

std::vector<TProjectionParameterRow> ParametersOfType(TdatamoduleQvRfData& data, int type) {
  QvPlatform::TQvDataSet& table = data.datasetMapProjParam;
  const auto column = [&](std::string_view name) { return table.FieldByName(name).GetIndex(); };
  const int tag = column("TAG");
  const int name = column("NAME");
  const int kind = column("KIND");
  const int unitType = column("UNIT_TYPE");
  const int code = column("PARAM_CODE");
  std::vector<TProjectionParameterRow> parameters;
  for (const TRowView row : table.FindAll({TMatch::Integer(column("PROJ_TYPE"), type)})) {
    parameters.push_back({row.GetInteger(tag), row.GetText(name), row.GetInteger(kind),
                          row.GetInteger(unitType), row.GetInteger(code)});
  }
  return parameters;
}

bool TQvRfMapProjTypeDataProcessor::WriteOwnItem(TStringTree* tree, const TTreeItem& item) {
  for (const TProjectionParameterRow& parameter :
       ParametersOfType(data_, CurrentInteger("TYPE"))) {
    if (!EnsureField(tree, item.id, parameter.tag, parameter.name, "map_proj_param_name")) {
      return false;
    }
  }
  return true;
}

bool TQvRfMapProjTypeDataProcessor::ReadContent(TStringTree* tree, TRecordImage* image) {
  if (!TQvRfDataProcessor::ReadContent(tree, image)) return false;
  const int column = Column("TYPE");
  return static_cast<bool>(
      DataSet->FindFirst({TMatch::Integer(column, image->Integer(column))}));
}

}  // namespace QvRefSystem
