#include "platform/dbset/field.h"

#include <cmath>

#include "platform/dbset/current_record.h"
#include "platform/dbset/data_set_error.h"
#include "platform/text/numbers.h"
#include "platform/text/trim.h"

namespace QvPlatform {

using detail::Cell;

namespace {

[[noreturn]] void RefuseContent(const TQvDbField& field, const std::string& content) {
  throw DataSetError("the field \"" + field.name + "\" cannot hold " + content);
}

Cell CellOfFloat(const TQvDbField& field, double value) {
  if (!std::isfinite(value)) RefuseContent(field, DoubleToText(value));
  switch (field.type) {
    case FieldType::kText:
      return DoubleToText(value);
    case FieldType::kInteger: {
      int integer = 0;
      if (!detail::RoundToInteger(value, &integer)) RefuseContent(field, DoubleToText(value));
      return std::int64_t{integer};
    }
    case FieldType::kFloat:
    case FieldType::kDateTime:
      break;
  }
  return value;
}

Cell CellOfText(const TQvDbField& field, std::string_view text) {
  if (field.type == FieldType::kText) return std::string(text);
  if (IsBlank(text)) return {};
  double value = 0;
  if (!TextToDouble(text, &value)) RefuseContent(field, "\"" + std::string(text) + "\"");
  return CellOfFloat(field, value);
}

}  // namespace

const TQvDbField& TField::Definition() const {
  return record_->Definition(index_);
}

bool TField::IsEmpty() const {
  const Cell& cell = record_->Content(index_);
  const auto* text = std::get_if<std::string>(&cell);
  return std::holds_alternative<std::monostate>(cell) || (text != nullptr && text->empty());
}

int TField::AsInteger() const {
  return detail::CellInteger(record_->Content(index_));
}

double TField::AsFloat() const {
  return detail::CellFloat(record_->Content(index_));
}

std::string TField::AsString() const {
  return detail::CellString(record_->Content(index_));
}

void TField::SetInteger(int value) {
  const bool isInteger = Definition().type == FieldType::kInteger;
  record_->SetContent(index_, isInteger ? Cell(std::int64_t{value})
                                        : CellOfFloat(Definition(), static_cast<double>(value)));
}

void TField::SetFloat(double value) {
  record_->SetContent(index_, CellOfFloat(Definition(), value));
}

void TField::SetString(std::string_view value) {
  record_->SetContent(index_, CellOfText(Definition(), value));
}

void TField::Clear() {
  record_->SetContent(index_, {});
}

}  // namespace QvPlatform
