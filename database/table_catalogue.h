#pragma once

#include <array>
#include <span>
#include <string_view>

#include "platform/dbset/db_header.h"

/// The one statement of all tables: streams, tags, sort fields, fields and what they refer to.
namespace QvRefSystem {

/// Every table by its stem, in the order in which a database is opened. The last two are not
/// opened with the others.
#define REFFRAME_TABLES(X) \
  X(PrimeMeridian)         \
  X(AngularUnit)           \
  X(LinearUnit)            \
  X(ScaleUnit)             \
  X(Ellipsoid)             \
  X(DatumShift)            \
  X(Datum)                 \
  X(RefSystem)             \
  X(DatumShiftType)        \
  X(RefSystemType)         \
  X(MapProj)               \
  X(MapProjParam)          \
  X(ParamValue)            \
  X(MapProjType)           \
  X(SystemValue)           \
  X(VerticalRefSystem)     \
  X(InternalService)       \
  X(RefsystemTransform)

/// The tables by their place in the catalogue; kNone is none of them.
enum class TableId : int {
#define REFFRAME_TABLE_ID(stem) k##stem,
  REFFRAME_TABLES(REFFRAME_TABLE_ID)
#undef REFFRAME_TABLE_ID
      kNone
};
/// How many tables there are.
inline constexpr int kTableCount = static_cast<int>(TableId::kNone);

/// Tag of tables that are not opened with the others.
inline constexpr int kUnopenedTag = 9999;
/// Tag by which CreateTable knows the layout of transformations.
inline constexpr int kTransformCreateTag = 17;

/// A field of a table.
struct FieldSpec {
  /// The name, by which all code asks for the field.
  std::string_view name;
  /// What the field holds.
  QvPlatform::FieldType type;
  /// Whether a record can be posted without it.
  QvPlatform::FieldNeed need = QvPlatform::FieldNeed::kOptional;
  /// Texts: the length that is stated for them.
  int length = 255;
  /// The table whose key the field holds, 0 for no object.
  TableId refersTo = TableId::kNone;
};

/// A table. All that it refers to lives as long as the program.
struct TableSpec {
  /// The place in the catalogue.
  TableId id;
  /// The name of the table file; "" for the scratch table.
  std::string_view streamName;
  /// The end of the names of the data module's members for the table.
  std::string_view stem;
  /// A number of the table, in object tables the code of the object type; kUnopenedTag for a table
  /// that is not opened with the others.
  int tag;
  /// The place of the field by which the records run; -1 for none, or one that is set when used.
  int sortField;
  /// The field by which records are known: AUTOKEY, or TYPE in the type tables; "" in service
  /// tables.
  std::string_view keyField;
  /// The fields in the order in which they lie in a record.
  std::span<const FieldSpec> fields;
};

/// All tables, in the order in which a database is opened.
[[nodiscard]] std::span<const TableSpec, kTableCount> TableCatalogue();
/// The table of that place. Throws std::out_of_range for kNone.
[[nodiscard]] const TableSpec& TableOf(TableId id);
/// The layout as the table engine takes it.
[[nodiscard]] QvPlatform::TQvDbHeader HeaderOf(const TableSpec& table);

}  // namespace QvRefSystem
