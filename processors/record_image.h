#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/dbset/data_set.h"

namespace QvRefSystem {

/// The values of a record that is not stored, by field number, in the order in which they were set:
/// what InsertFromTree has read, or what an editor shows.
class RecordImage {
 public:
  /// An image of nothing, with room for the fields of the widest table.
  RecordImage() { values_.reserve(kUsualFields); }
  /// Sets an integer field, in the place of a value that it has.
  void SetInteger(int field, int value);
  /// Sets a floating-point field.
  void SetDouble(int field, double value);
  /// Sets a text field.
  void SetText(int field, std::string value);
  /// Whether the field was set. What a kind of object does not have is never set, and takes no part
  /// in a comparison.
  [[nodiscard]] bool Has(int field) const { return Find(field) != nullptr; }
  /// 0 for a field that was not set as an integer.
  [[nodiscard]] int Integer(int field) const;
  /// 0 for a field that was not set as a double.
  [[nodiscard]] double Double(int field) const;
  /// "" for a field that was not set as a text. The reference is valid until the next change.
  [[nodiscard]] const std::string& Text(int field) const;
  /// Writes all values into the data set's pending record.
  void Store(QvPlatform::TQvDataSet& dataSet) const;
  /// Values that belong to the object but not to its record, by code, in the order of the codes.
  std::map<int, std::string> Beside;

 private:
  static constexpr std::size_t kUsualFields = 24;
  using Value = std::variant<int, double, std::string>;
  [[nodiscard]] const Value* Find(int field) const;
  Value& Slot(int field);
  std::vector<std::pair<int, Value>> values_;
};

/// A record that is written to a tree: a row of its table, or values that are not stored yet. It is
/// valid as long as what it was made of.
class RecordView {
 public:
  /// A row; of an empty one nothing can be asked.
  RecordView(QvPlatform::RowView row) : row_(row) {}  // NOLINT(google-explicit-constructor)
  /// Values that are not stored.
  explicit RecordView(const RecordImage& image) : image_(&image) {}
  RecordView(RecordImage&&) = delete;

  /// A record that is not stored has no key, and nothing lies beside it.
  [[nodiscard]] bool IsStored() const { return image_ == nullptr; }
  /// The number of an integer field; 0 for any other.
  [[nodiscard]] int Integer(int field) const {
    return IsStored() ? row_.GetInteger(field) : image_->Integer(field);
  }
  /// The text of a text field; "" for any other.
  [[nodiscard]] const std::string& Text(int field) const {
    return IsStored() ? row_.GetText(field) : image_->Text(field);
  }
  /// The value of a field of any type as text. Values that are not stored have only their texts.
  [[nodiscard]] std::string InWords(int field) const {
    return IsStored() ? row_.GetString(field) : image_->Text(field);
  }

 private:
  QvPlatform::RowView row_;
  const RecordImage* image_ = nullptr;
};

}  // namespace QvRefSystem
