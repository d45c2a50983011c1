#include <cmath>

#include "platform/dbset/data_set_impl.h"
#include "platform/text/text.h"

namespace QvPlatform {

using detail::Cell;
using detail::Row;

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

const Row& RowOf(const void* row) {
  return *static_cast<const Row*>(row);
}

}  // namespace

const TQvDbField& TField::Definition() const {
  return owner_->Definition(index_);
}

bool TField::IsEmpty() const {
  const Cell& cell = owner_->Content(index_);
  const auto* text = std::get_if<std::string>(&cell);
  return std::holds_alternative<std::monostate>(cell) || (text != nullptr && text->empty());
}

int TField::AsInteger() const {
  return detail::CellInteger(owner_->Content(index_));
}

double TField::AsFloat() const {
  return detail::CellFloat(owner_->Content(index_));
}

std::string TField::AsString() const {
  return detail::CellString(owner_->Content(index_));
}

void TField::SetInteger(int value) {
  const bool isInteger = Definition().type == FieldType::kInteger;
  owner_->SetContent(index_, isInteger ? Cell(std::int64_t{value})
                                       : CellOfFloat(Definition(), static_cast<double>(value)));
}

void TField::SetFloat(double value) {
  owner_->SetContent(index_, CellOfFloat(Definition(), value));
}

void TField::SetString(std::string_view value) {
  owner_->SetContent(index_, CellOfText(Definition(), value));
}

void TField::Clear() {
  owner_->SetContent(index_, {});
}

int RowView::GetInteger(int field) const {
  return row_ != nullptr ? detail::CellInteger(RowOf(row_).At(field)) : 0;
}

double RowView::GetFloat(int field) const {
  return row_ != nullptr ? detail::CellFloat(RowOf(row_).At(field)) : 0.0;
}

const std::string& RowView::GetText(int field) const {
  return detail::CellText(row_ != nullptr ? RowOf(row_).At(field) : detail::kNoContent);
}

std::string RowView::GetString(int field) const {
  return row_ != nullptr ? detail::CellString(RowOf(row_).At(field)) : std::string();
}

}  // namespace QvPlatform
