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

enum class TableId : int {
#define REFFRAME_TABLE_ID(stem) k##stem,
  REFFRAME_TABLES(REFFRAME_TABLE_ID)
#undef REFFRAME_TABLE_ID
      kNone
};
inline constexpr int kTableCount = static_cast<int>(TableId::kNone);

/// Tag of tables that are not opened with the others.
inline constexpr int kUnopenedTag = 9999;
/// Tag by which CreateTable knows the layout of transformations.
inline constexpr int kTransformCreateTag = 17;

struct FieldSpec {
  std::string_view name;
  QvPlatform::FieldType type;
  QvPlatform::FieldNeed need = QvPlatform::FieldNeed::kOptional;
  int length = 255;
  /// The table whose key the field holds, 0 for no object.
  TableId refersTo = TableId::kNone;
};

struct TableSpec {
  TableId id;
  /// Name of the table file; "" for the scratch table.
  std::string_view streamName;
  std::string_view stem;
  /// Equals the object type code in object tables.
  int tag;
  /// -1: set when used, or none.
  int sortField;
  /// The field by which records are known: AUTOKEY, or TYPE in the type tables; "" in service
  /// tables.
  std::string_view keyField;
  std::span<const FieldSpec> fields;
};

[[nodiscard]] std::span<const TableSpec, kTableCount> TableCatalogue();
[[nodiscard]] const TableSpec& TableOf(TableId id);
/// Null for a tag that no opened table has.
[[nodiscard]] const TableSpec* TableByTag(int tag);
/// The layout as the table engine takes it.
[[nodiscard]] QvPlatform::TQvDbHeader HeaderOf(const TableSpec& table);

}  // namespace QvRefSystem
