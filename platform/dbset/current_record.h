#pragma once

#include "platform/dbset/db_header.h"
#include "platform/dbset/row.h"

namespace QvPlatform::detail {

/// The record that the fields of a data set show and write: the current row, or the pending one
/// while a change is under way. Fields count from 0 and have to be fields of the table.
class CurrentRecord {
 public:
  /// How the table declares the field.
  [[nodiscard]] virtual const TQvDbField& Definition(int field) const = 0;
  /// What the field holds; an empty cell where there is no row.
  [[nodiscard]] virtual const Cell& Content(int field) const = 0;
  /// Writes the pending record. Throws DataSetError where there is none.
  virtual void SetContent(int field, Cell content) = 0;

 protected:
  ~CurrentRecord() = default;
};

}  // namespace QvPlatform::detail
