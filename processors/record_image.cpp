#include "processors/record_image.h"

namespace QvRefSystem {

const RecordImage::Value* RecordImage::Find(int field) const {
  for (const auto& [number, value] : values_) {
    if (number == field) return &value;
  }
  return nullptr;
}

RecordImage::Value& RecordImage::Slot(int field) {
  for (auto& [number, value] : values_) {
    if (number == field) return value;
  }
  return values_.emplace_back(field, Value()).second;
}

void RecordImage::SetInteger(int field, int value) {
  Slot(field) = value;
}
void RecordImage::SetDouble(int field, double value) {
  Slot(field) = value;
}
void RecordImage::SetText(int field, std::string value) {
  Slot(field) = std::move(value);
}

int RecordImage::Integer(int field) const {
  const Value* value = Find(field);
  const int* number = value != nullptr ? std::get_if<int>(value) : nullptr;
  return number != nullptr ? *number : 0;
}

double RecordImage::Double(int field) const {
  const Value* value = Find(field);
  const double* number = value != nullptr ? std::get_if<double>(value) : nullptr;
  return number != nullptr ? *number : 0;
}

const std::string& RecordImage::Text(int field) const {
  static const std::string kNone;
  const Value* value = Find(field);
  const std::string* text = value != nullptr ? std::get_if<std::string>(value) : nullptr;
  return text != nullptr ? *text : kNone;
}

void RecordImage::Store(QvPlatform::TQvDataSet& dataSet) const {
  for (const auto& [number, value] : values_) {
    QvPlatform::TField& field = dataSet.Fields(number);
    if (const int* integer = std::get_if<int>(&value)) {
      field.SetInteger(*integer);
    } else if (const double* real = std::get_if<double>(&value)) {
      field.SetFloat(*real);
    } else {
      field.SetString(std::get<std::string>(value));
    }
  }
}

}  // namespace QvRefSystem
