#include "database/key_counters.h"

#include <algorithm>

#include "database/object_types.h"
#include "platform/storage/stream.h"

namespace QvRefSystem {
namespace {

using QvPlatform::TQvDataSet;

constexpr std::string_view kGeneratedKey = "AUTOKEY";

int GreatestIn(TQvDataSet& table, std::string_view field) {
  const int column = table.FieldByName(field).GetIndex();
  int greatest = 0;
  for (int at = 0; at < table.RecordCount(); ++at)
    greatest = std::max(greatest, table.Row(at).GetInteger(column));
  return greatest;
}

// The greatest owner of that table among the rows of param_value, which tell it by the tag of its
// table; the parameters of map projections have a number of their own.
int GreatestOwner(TQvDataSet& values, const TableSpec& table) {
  const int content = values.FieldByName("OWNER_CONTENT").GetIndex();
  const int owner = values.FieldByName("OWNER_ID").GetIndex();
  int greatest = 0;
  for (int at = 0; at < values.RecordCount(); ++at) {
    const QvPlatform::RowView row = values.Row(at);
    const int type = row.GetInteger(content);
    if (type == table.tag || (table.id == TableId::kMapProj && type == kProjectionParameterOwner)) {
      greatest = std::max(greatest, row.GetInteger(owner));
    }
  }
  return greatest;
}

}  // namespace

int GreatestNamedKey(const OpenedTable& opened, TableId table) {
  const TableSpec& spec = TableOf(table);
  int greatest = std::max(GreatestIn(opened(table), spec.keyField),
                          GreatestOwner(opened(TableId::kParamValue), spec));
  for (const TableSpec& users : TableCatalogue()) {
    if (users.tag == kUnopenedTag) continue;
    for (const FieldSpec& field : users.fields) {
      if (field.refersTo == table) {
        greatest = std::max(greatest, GreatestIn(opened(users.id), field.name));
      }
    }
  }
  return greatest;
}

void RaiseNewCounters(const OpenedTable& opened) {
  for (const TableSpec& table : TableCatalogue()) {
    if (table.tag == kUnopenedTag || table.keyField != kGeneratedKey) continue;
    TQvDataSet& dataSet = opened(table.id);
    if (dataSet.LastKey() != 0) continue;
    const int key = GreatestNamedKey(opened, table.id);
    if (key == 0) continue;
    try {
      dataSet.RaiseLastKey(key);
    } catch (const QvPlatform::StorageError&) {
      continue;
    }
  }
}

}  // namespace QvRefSystem
