#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "assembly/checks/checked_database.h"

namespace QvRefSystem {

/// What the checks of a database have found, one line for each find: table, key, name, what.
class Findings {
 public:
  /// Adds to `lines`, which must outlive this.
  explicit Findings(std::vector<std::string>* lines) : lines_(lines) {}

  /// A find about a record. Of a record without key and name the line holds the table alone, and
  /// `what` has to tell the record apart.
  void Add(const CheckedRow& row, const std::string& what);
  /// A find about no one record of the table.
  void Add(const CheckedTable& table, const std::string& what);

  /// Adds a find if the field, which holds a key or a type, is 0.
  void NeedReference(const CheckedRow& row, std::string_view field);
  /// Adds a find if the text of the field is no decimal number in the C notation.
  void NeedNumber(const CheckedRow& row, std::string_view field);

 private:
  std::vector<std::string>* lines_;
};

/// One check: it adds what it finds, and changes nothing.
using Check = void (*)(const CheckedDatabase& database, Findings& findings);

}  // namespace QvRefSystem
