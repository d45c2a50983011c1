#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dbset/data_set.h"
#include "processors/object_descriptor.h"

namespace QvRefSystem {

/// Whose a row of param_value is and what it holds.
struct CodeRow {
  /// The type of the owner, or kProjectionParameterOwner.
  int ownerContent = 0;
  /// The key of the owner.
  int ownerId = 0;
  ParamTag tag = ParamTag::kGeoTiff;
  /// What narrows the tag: the type of a projection, for its parameters.
  int group = 0;
  /// The code of a parameter; 0 for other rows.
  int code = 0;
};

/// The rows of param_value: codes by which other formats know an object, and values of parameters.
/// They lie beside the records that own them.
class CodeRows {
 public:
  explicit CodeRows(QvPlatform::TQvDataSet& table);

  /// The columns, in the order of the catalogue.
  enum Column { kOwnerContent, kOwnerId, kTag, kGroup, kCode, kValue };
  /// Its field number in the file.
  [[nodiscard]] int Field(Column column) const { return fields_[static_cast<std::size_t>(column)]; }
  [[nodiscard]] QvPlatform::RowMatch Match(Column column, int value) const {
    return QvPlatform::RowMatch::Integer(Field(column), value);
  }
  [[nodiscard]] QvPlatform::RowMatch Match(ParamTag tag) const {
    return Match(kTag, static_cast<int>(tag));
  }
  /// The first row that meets the conditions, in table order; empty if there is none.
  [[nodiscard]] QvPlatform::RowView FindRow(
      std::initializer_list<QvPlatform::RowMatch> matches) const;
  [[nodiscard]] std::vector<QvPlatform::RowView> FindRows(
      std::initializer_list<QvPlatform::RowMatch> matches) const;
  /// VALUE of a row.
  [[nodiscard]] const std::string& ValueOf(QvPlatform::RowView row) const {
    return row.GetText(Field(kValue));
  }
  /// VALUE of the first row of an owner; null if there is none. It is valid until the table
  /// changes.
  [[nodiscard]] const std::string* Find(int ownerContent, int ownerId, ParamTag tag) const;
  /// The same where a blank VALUE counts as none.
  [[nodiscard]] const std::string* FindFilled(int ownerContent, int ownerId, ParamTag tag) const;

  /// Adds a row. Throws what the table throws.
  void Append(const CodeRow& row, std::string_view value);
  /// Puts another VALUE into a row. Throws what the table throws.
  void Change(QvPlatform::RowView row, std::string_view value);
  /// Removes the rows that meet the conditions, all or the first. Throws what the table throws.
  void Delete(std::initializer_list<QvPlatform::RowMatch> matches, bool all);

 private:
  QvPlatform::TQvDataSet& table_;
  std::vector<int> fields_;
};

}  // namespace QvRefSystem
