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
  std::string name;
  FieldType type = FieldType::kText;
  FieldNeed need = FieldNeed::kOptional;
  /// Characters that a user may type into a text field, else 255. Never a limit of what is stored.
  int length = 255;
  bool operator==(const TQvDbField&) const = default;
};

/// Describes a table: its fields, numbered from 0 in the order in which they were added.
class TQvDbHeader {
 public:
  void ClearFields() { fields_.clear(); }
  /// Codes as of FieldType and FieldNeed. Throws std::invalid_argument on others, on a name that
  /// is not an identifier (letters, digits, "_") and on a name that is there already.
  void AddField(const char* name, unsigned char type, unsigned char required, unsigned char length);
  /// Nominal size in bytes of one record: text fields with their width, numbers with 8.
  [[nodiscard]] int GetRecordSize() const;
  [[nodiscard]] const std::vector<TQvDbField>& Fields() const { return fields_; }
  bool operator==(const TQvDbHeader&) const = default;

 private:
  std::vector<TQvDbField> fields_;
};

}  // namespace QvPlatform
