#pragma once

#include <string>
#include <vector>

namespace QvPlatform {

/// What a field holds. The numbers are those of AddField and of the table files.
enum class FieldType : unsigned char { kText = 1, kFloat = 2, kInteger = 3, kDateTime = 6 };

/// Whether a field may be empty; kGeneratedKey is filled by the engine at Post.
enum class FieldNeed : unsigned char { kOptional = 0, kMandatory = 1, kGeneratedKey = 2 };

/// One field of a record as the table itself declares it.
struct TQvDbField {
  /// Letters, digits and "_", no digit in front; case does not tell two names apart.
  std::string name;
  /// What the field holds.
  FieldType type = FieldType::kText;
  /// Whether the field may be empty.
  FieldNeed need = FieldNeed::kOptional;
  /// Characters that a user may type into a text field, else 255. Never a limit of what is stored.
  int length = 255;
  bool operator==(const TQvDbField&) const = default;
};

/// Describes a table: its fields, numbered from 0 in the order in which they were added.
class TQvDbHeader {
 public:
  /// Takes all fields away.
  void ClearFields() { fields_.clear(); }
  /// Adds a field, whose type and need are given by the codes of FieldType and FieldNeed. Throws
  /// std::invalid_argument on other codes, on a name that is not an identifier (letters, digits,
  /// "_"), is there already or is one that stores need, and on a generated key that is no integer
  /// or a second one; the header is then unchanged.
  void AddField(const char* name, unsigned char type, unsigned char required, unsigned char length);
  /// Nominal size in bytes of one record: text fields with their width, numbers with 8.
  [[nodiscard]] int GetRecordSize() const;
  /// The fields in the order of their numbers.
  [[nodiscard]] const std::vector<TQvDbField>& Fields() const { return fields_; }
  bool operator==(const TQvDbHeader&) const = default;

 private:
  std::vector<TQvDbField> fields_;
};

}  // namespace QvPlatform
