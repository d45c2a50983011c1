#include "processors/type_processors.h"

namespace QvRefSystem {

using QvPlatform::RowMatch;
using QvPlatform::RowView;

bool TypeTableProcessor::CheckNotUsed(TComponent* /*owner*/) {
  return false;
}

ProjectionParameters::ProjectionParameters(QvPlatform::TQvDataSet& table)
    : table_(table),
      type_(table.FieldByName("PROJ_TYPE").GetIndex()),
      tag_(table.FieldByName("TAG").GetIndex()),
      name_(table.FieldByName("NAME").GetIndex()),
      kind_(table.FieldByName("KIND").GetIndex()),
      unitType_(table.FieldByName("UNIT_TYPE").GetIndex()),
      code_(table.FieldByName("PARAM_CODE").GetIndex()) {}

std::vector<ProjectionParameterRow> ProjectionParameters::OfType(int type) const {
  std::vector<ProjectionParameterRow> parameters;
  for (const RowView row : table_.FindAll({RowMatch::Integer(type_, type)})) {
    parameters.push_back({row.GetInteger(tag_), row.GetText(name_), row.GetInteger(kind_),
                          row.GetInteger(unitType_), row.GetInteger(code_)});
  }
  return parameters;
}

bool TQvRfMapProjTypeDataProcessor::WriteOwnItem(TStringTree* tree, const TreeItem& item,
                                                 const RecordView& record) {
  for (const ProjectionParameterRow& parameter :
       parameters_.OfType(record.Integer(Column("TYPE")))) {
    if (!EnsureField(tree, item.id, parameter.tag, parameter.name, item.label)) {
      return false;
    }
  }
  return true;
}

bool TQvRfMapProjTypeDataProcessor::ReadContent(TStringTree* tree, RecordImage* image) {
  if (!TQvRfDataProcessor::ReadContent(tree, image)) return false;
  const int column = Column("TYPE");
  return static_cast<bool>(DataSet->FindFirst({RowMatch::Integer(column, image->Integer(column))}));
}

}  // namespace QvRefSystem
