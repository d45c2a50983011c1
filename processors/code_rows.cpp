#include "processors/code_rows.h"

#include "platform/text/text.h"

namespace QvRefSystem {

using QvPlatform::RowMatch;
using QvPlatform::RowView;

CodeRows::CodeRows(QvPlatform::TQvDataSet& table) : table_(table) {
  for (const FieldSpec& spec : TableOf(TableId::kParamValue).fields) {
    const QvPlatform::TField* field = table.FindField(spec.name);
    fields_.push_back(field != nullptr ? field->GetIndex() : -1);
  }
}

RowView CodeRows::FindRow(std::initializer_list<RowMatch> matches) const {
  return table_.FindFirst(matches);
}

std::vector<RowView> CodeRows::FindRows(std::initializer_list<RowMatch> matches) const {
  return table_.FindAll(matches);
}

const std::string* CodeRows::Find(int ownerContent, int ownerId, ParamTag tag) const {
  const RowView row =
      FindRow({Match(kOwnerContent, ownerContent), Match(kOwnerId, ownerId), Match(tag)});
  return row ? &ValueOf(row) : nullptr;
}

const std::string* CodeRows::FindFilled(int ownerContent, int ownerId, ParamTag tag) const {
  const std::string* value = Find(ownerContent, ownerId, tag);
  return value != nullptr && !QvPlatform::IsBlank(*value) ? value : nullptr;
}

void CodeRows::Append(const CodeRow& row, std::string_view value) {
  table_.Append();
  table_.Fields(Field(kOwnerContent)).SetInteger(row.ownerContent);
  table_.Fields(Field(kOwnerId)).SetInteger(row.ownerId);
  table_.Fields(Field(kTag)).SetInteger(static_cast<int>(row.tag));
  table_.Fields(Field(kGroup)).SetInteger(row.group);
  table_.Fields(Field(kCode)).SetInteger(row.code);
  table_.Fields(Field(kValue)).SetString(value);
  table_.Post();
}

void CodeRows::Change(RowView row, std::string_view value) {
  table_.MoveTo(row);
  table_.Edit();
  table_.Fields(Field(kValue)).SetString(value);
  table_.Post();
}

void CodeRows::Delete(std::initializer_list<RowMatch> matches, bool all) {
  while (const RowView row = FindRow(matches)) {
    table_.MoveTo(row);
    table_.Delete();
    if (!all) return;
  }
}

}  // namespace QvRefSystem
