#include "platform/dbset/db_header.h"

#include <stdexcept>
#include <string_view>

#include "platform/storage/table_format.h"
#include "platform/text/ascii.h"

namespace QvPlatform {

namespace {

constexpr int kNumberSize = 8;

bool IsFieldType(unsigned char code) {
  switch (static_cast<FieldType>(code)) {
    case FieldType::kText:
    case FieldType::kFloat:
    case FieldType::kInteger:
    case FieldType::kDateTime:
      return true;
  }
  return false;
}

[[noreturn]] void RefuseField(std::string_view name, const char* reason) {
  throw std::invalid_argument("field \"" + std::string(name) + "\" " + reason);
}

}  // namespace

void TQvDbHeader::AddField(const char* name, unsigned char type, unsigned char required,
                           unsigned char length) {
  const std::string_view given = name != nullptr ? name : "";
  if (!detail::IsIdentifier(given)) RefuseField(given, "has no usable name");
  if (!IsFieldType(type)) RefuseField(given, "has an unknown type");
  if (required > static_cast<unsigned char>(FieldNeed::kGeneratedKey)) {
    RefuseField(given, "has an unknown need");
  }
  const bool isKey = static_cast<FieldNeed>(required) == FieldNeed::kGeneratedKey;
  if (isKey && static_cast<FieldType>(type) != FieldType::kInteger) {
    RefuseField(given, "is a generated key but no integer");
  }
  if (EqualAscii(given, detail::kHiddenKey) || EqualAscii(given, detail::kVersionColumn)) {
    RefuseField(given, "has a name that tables need for themselves");
  }
  for (const TQvDbField& field : fields_) {
    if (EqualAscii(field.name, given)) RefuseField(given, "is there already");
    if (isKey && field.need == FieldNeed::kGeneratedKey) RefuseField(given, "is a second key");
  }
  fields_.push_back(
      {std::string(given), static_cast<FieldType>(type), static_cast<FieldNeed>(required), length});
}

int TQvDbHeader::GetRecordSize() const {
  int size = 0;
  for (const TQvDbField& field : fields_) {
    size += field.type == FieldType::kText ? field.length : kNumberSize;
  }
  return size;
}

}  // namespace QvPlatform
