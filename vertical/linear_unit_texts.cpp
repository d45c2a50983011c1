#include "vertical/linear_unit_texts.h"

namespace QvRefSystem {

std::optional<UnitTexts> LinearUnitTexts(TdatamoduleQvRfData& data, int key) {
  QvPlatform::TQvDataSet& units = data.datasetLinearUnit;
  const auto column = [&](std::string_view name) { return units.FieldByName(name).GetIndex(); };
  const auto rows = units.FindAll(
      {QvPlatform::RowMatch::Integer(column(TableOf(TableId::kLinearUnit).keyField), key)},
      QvPlatform::RowScope::kAll);
  if (key == 0 || rows.empty()) return std::nullopt;
  return UnitTexts{rows.front().GetText(column("NAME")),
                   rows.front().GetText(column("ABBREVIATION"))};
}

}  // namespace QvRefSystem
