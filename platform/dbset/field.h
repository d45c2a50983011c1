#pragma once

#include <string>
#include <string_view>

#include "platform/dbset/db_header.h"

namespace QvPlatform {

class DataSetImpl;
namespace detail {
class CurrentRecord;
}

/// One field of the current record of a data set, which has to outlive it. Reading an empty table
/// gives 0 or "". Writing needs a data set in edit or append state, and a content that the field
/// can hold; it throws DataSetError otherwise.
class TField {
 public:
  /// The field's number, from 0 in the order of the table's declaration.
  [[nodiscard]] int GetIndex() const { return index_; }
  /// How the table declares the field.
  [[nodiscard]] const TQvDbField& Definition() const;
  /// True for a field without content and for a text of no characters.
  [[nodiscard]] bool IsEmpty() const;
  /// The content rounded to an integer; 0 where it is no number or does not fit. A text is read as
  /// a decimal number.
  [[nodiscard]] int AsInteger() const;
  /// The content as a number; 0 where it is none. A text is read as a decimal number.
  [[nodiscard]] double AsFloat() const;
  /// The content as text: integers in decimal, floats in the shortest form that reads back the
  /// same.
  [[nodiscard]] std::string AsString() const;
  /// Writes an integer, as a number or as text by the type of the field.
  void SetInteger(int value);
  /// Writes a number; an integer field takes it rounded. Refuses infinities, NaN and what does not
  /// fit.
  void SetFloat(double value);
  /// Writes a text. A number field takes the decimal number that it holds, or becomes empty by a
  /// blank one.
  void SetString(std::string_view value);
  /// Takes the content away.
  void Clear();

 private:
  friend class DataSetImpl;
  detail::CurrentRecord* record_ = nullptr;
  int index_ = -1;
};

}  // namespace QvPlatform
