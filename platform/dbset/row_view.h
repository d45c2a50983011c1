#pragma once

#include <string>

namespace QvPlatform {

class DataSetImpl;
namespace detail {
struct Row;
}

/// A row seen without moving the cursor. Valid until the data set next changes. An empty view reads
/// as 0 or "", and so does a number that is no field's.
class RowView {
 public:
  RowView() = default;
  /// True for a view that sees a row.
  explicit operator bool() const { return row_ != nullptr; }
  /// The content of a field rounded to an integer; 0 where it is no number or does not fit.
  [[nodiscard]] int GetInteger(int field) const;
  /// The content of a field as a number; 0 where it is none.
  [[nodiscard]] double GetFloat(int field) const;
  /// The content of a text field; "" for fields of other types.
  [[nodiscard]] const std::string& GetText(int field) const;
  /// The content of any field as text, as TField::AsString gives it.
  [[nodiscard]] std::string GetString(int field) const;
  /// How often the record has been changed in the store, from 1; 0 for an empty view and a record
  /// that is not stored yet.
  [[nodiscard]] long long Version() const;
  /// Two views are equal when they see the same row.
  bool operator==(const RowView&) const = default;

 private:
  friend class DataSetImpl;
  const detail::Row* row_ = nullptr;
};

}  // namespace QvPlatform
