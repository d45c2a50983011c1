#include "database/table_catalogue.h"

#include <string>

namespace QvRefSystem {
namespace {

using QvPlatform::FieldNeed;
using QvPlatform::FieldType;

constexpr FieldSpec Key(std::string_view name) {
  return {name, FieldType::kInteger, FieldNeed::kGeneratedKey};
}
constexpr FieldSpec Text(std::string_view name, int length, FieldNeed need = FieldNeed::kOptional) {
  return {name, FieldType::kText, need, length};
}
constexpr FieldSpec Number(std::string_view name, FieldNeed need = FieldNeed::kOptional) {
  return {name, FieldType::kInteger, need};
}
constexpr FieldSpec Float(std::string_view name) {
  return {name, FieldType::kFloat, FieldNeed::kMandatory};
}
constexpr FieldSpec Refers(std::string_view name, TableId table,
                           FieldNeed need = FieldNeed::kOptional) {
  return {name, FieldType::kInteger, need, 255, table};
}

template <std::size_t... Sizes>
constexpr auto Join(const std::array<FieldSpec, Sizes>&... parts) {
  std::array<FieldSpec, (Sizes + ...)> joined{};
  std::size_t next = 0;
  const auto append = [&](const auto& part) {
    for (const FieldSpec& field : part)
      joined[next++] = field;
  };
  (append(parts), ...);
  return joined;
}

constexpr FieldNeed kMust = FieldNeed::kMandatory;

constexpr std::array kStart{Key("AUTOKEY"), Number("FAVOUR", kMust),
                            FieldSpec{"LAST_USE", FieldType::kDateTime, kMust},
                            Text("NAME", 64, kMust)};
constexpr auto kHead = Join(kStart, std::array{Text("ABBREVIATION", 64), Text("DESCRIPTION", 255)});
constexpr auto kShortHead = Join(kStart, std::array{Text("DESCRIPTION", 255)});
constexpr std::array kReserved{Number("RESERVED1"), Number("RESERVED2"), Number("RESERVED3"),
                               Number("RESERVED4"), Number("RESERVED5")};
constexpr std::array kUnits{Refers("LINEAR_UNIT_AUTOKEY", TableId::kLinearUnit),
                            Refers("ANGULAR_UNIT_AUTOKEY", TableId::kAngularUnit),
                            Refers("SCALE_UNIT_AUTOKEY", TableId::kScaleUnit)};

constexpr auto kUnit =
    Join(kHead, std::array{Number("CODE"), Number("TYPE"), Float("FACTOR_B"), Float("FACTOR_C")});
constexpr auto kPrimeMeridian =
    Join(kShortHead,
         std::array{Text("LONGITUDE", 64), Refers("UNIT_AUTOKEY", TableId::kAngularUnit, kMust)});
constexpr auto kEllipsoid =
    Join(kShortHead,
         std::array{Text("A", 64), Text("B", 64), Text("F", 64), Number("USE_F"),
                    Number("SPHEROID"), Refers("UNIT_AUTOKEY", TableId::kLinearUnit, kMust)});
constexpr auto kDatumShift =
    Join(kHead,
         std::array{Refers("TYPE", TableId::kDatumShiftType, kMust), Text("TX", 64), Text("TY", 64),
                    Text("TZ", 64), Text("RX", 64), Text("RY", 64), Text("RZ", 64), Text("S", 64)},
         kUnits);
constexpr auto kDatum =
    Join(kHead, std::array{Refers("ELLIPSOID_AUTOKEY", TableId::kEllipsoid, kMust),
                           Refers("DATUM_SHIFT_AUTOKEY", TableId::kDatumShift, kMust)});
constexpr auto kRefSystem =
    Join(kHead,
         std::array{Text("COORD1_ABBR", 32, kMust),
                    Text("COORD2_ABBR", 32, kMust),
                    Text("COORD3_ABBR", 32, kMust),
                    Text("COORD1_DESC", 128),
                    Text("COORD2_DESC", 128),
                    Text("COORD3_DESC", 128),
                    Number("COORD1_SIGN"),
                    Number("COORD2_SIGN"),
                    Number("COORD3_SIGN"),
                    Text("ORIGIN_COORD1", 64),
                    Text("ORIGIN_COORD2", 64),
                    Text("ORIGIN_COORD3", 64),
                    Number("SWAP_COORDS"),
                    Refers("TYPE", TableId::kRefSystemType, kMust),
                    Refers("PRIMARY_REFSYSTEM_AUTOKEY", TableId::kRefSystem),
                    Refers("MAP_PROJ_AUTOKEY", TableId::kMapProj),
                    Refers("DATUM_AUTOKEY", TableId::kDatum, kMust),
                    Refers("ELLIPSOID_AUTOKEY", TableId::kEllipsoid, kMust),
                    Refers("PRIME_MERIDIAN_AUTOKEY", TableId::kPrimeMeridian, kMust),
                    Refers("LINEAR_UNIT_AUTOKEY", TableId::kLinearUnit, kMust),
                    Refers("ANGULAR_UNIT_AUTOKEY", TableId::kAngularUnit, kMust),
                    Refers("VERT_SYSTEM_AUTOKEY", TableId::kVerticalRefSystem),
                    Number("VERT_SYSTEM_CODE"),
                    Number("TRANSFORM_AUTOKEY"),
                    Text("AZIMUTH", 64)},
         kReserved);
constexpr auto kVertical =
    Join(kHead,
         std::array{Number("VDATA_TYPE", kMust), Refers("VDATA_UNIT_AUTOKEY", TableId::kLinearUnit),
                    Number("VDATA_FORMAT"), Text("VDATA_FILENAME", 255), Number("VDATA_CRC32"),
                    Text("VDATA_OFFSET", 64), Text("VDATA_EXTENTS_NORTH", 64),
                    Text("VDATA_EXTENTS_EAST", 64), Text("VDATA_EXTENTS_SOUTH", 64),
                    Text("VDATA_EXTENTS_WEST", 64), Text("VDATA_CELL_NORTH_SOUTH", 64),
                    Text("VDATA_CELL_EAST_WEST", 64)},
         kReserved);
constexpr auto kMapProj =
    Join(kShortHead,
         std::array{Refers("TYPE", TableId::kMapProjType, kMust), Number("COORD1_SIGN"),
                    Number("COORD2_SIGN"), Number("SWAP_COORDS"), Text("COORD1_ABBR", 32),
                    Text("COORD2_ABBR", 32), Text("COORD1_DESC", 128), Text("COORD2_DESC", 128)},
         kUnits);

constexpr auto kType = Join(kShortHead, std::array{Number("TYPE", kMust)});
constexpr auto kMapProjType =
    Join(kType, std::array{Number("COORD1_SIGN"), Number("COORD2_SIGN"), Number("SWAP_COORDS"),
                           Text("COORD1_ABBR", 32), Text("COORD2_ABBR", 32)});
constexpr auto kRefSystemType =
    Join(kType, std::array{Number("SWAP_COORDS"), Text("COORD1_ABBR", 32), Text("COORD2_ABBR", 32),
                           Text("COORD3_ABBR", 32)});

// The service tables run in the order of their sort field: parameters by tag, values by code.
constexpr std::array kMapProjParam{Refers("PROJ_TYPE", TableId::kMapProjType, kMust),
                                   Number("TAG", kMust),
                                   Text("NAME", 128, kMust),
                                   Number("KIND"),
                                   Number("UNIT_TYPE"),
                                   Number("PARAM_CODE", kMust)};
constexpr std::array kOwnedValue{Number("OWNER_CONTENT", kMust), Number("OWNER_ID", kMust),
                                 Number("PARAM_TAG", kMust),     Number("PARAM_GROUP"),
                                 Number("PARAM_CODE"),           Text("VALUE", 255)};

constexpr auto kTransform =
    Join(kHead,
         std::array{Refers("PRIMARY_REFSYSTEM_AUTOKEY", TableId::kRefSystem, kMust),
                    Number("TRANSFORM_TYPE"), Text("SHIFT_X", 64), Text("SHIFT_Y", 64),
                    Text("SHIFT_Z", 64), Refers("LINEAR_UNIT_AUTOKEY", TableId::kLinearUnit),
                    Text("ANGLE1", 64), Text("ANGLE2", 64), Text("ANGLE3", 64),
                    Refers("ANGULAR_UNIT_AUTOKEY", TableId::kAngularUnit), Text("SCALE_PLANE", 64),
                    Text("SCALE_HEIGHT", 64), Refers("SCALE_UNIT_AUTOKEY", TableId::kScaleUnit),
                    Number("RELATED_AUTOKEY")},
         kReserved);

constexpr int kByName = 3;

#define REFFRAME_TABLE(stem, stream, tag, sort, key, fields) \
  TableSpec {                                                \
    TableId::k##stem, stream, #stem, tag, sort, key, fields  \
  }

constexpr std::array<TableSpec, kTableCount> kCatalogue{
    REFFRAME_TABLE(PrimeMeridian, "prime_meridian.dat", 5, kByName, "AUTOKEY", kPrimeMeridian),
    REFFRAME_TABLE(AngularUnit, "angular_unit.dat", 10, kByName, "AUTOKEY", kUnit),
    REFFRAME_TABLE(LinearUnit, "linear_unit.dat", 8, kByName, "AUTOKEY", kUnit),
    REFFRAME_TABLE(ScaleUnit, "scale_unit.dat", 9, kByName, "AUTOKEY", kUnit),
    REFFRAME_TABLE(Ellipsoid, "ellipsoid.dat", 3, kByName, "AUTOKEY", kEllipsoid),
    REFFRAME_TABLE(DatumShift, "datum_shift.dat", 4, kByName, "AUTOKEY", kDatumShift),
    REFFRAME_TABLE(Datum, "geodetic_datum.dat", 2, kByName, "AUTOKEY", kDatum),
    REFFRAME_TABLE(RefSystem, "reference_system.dat", 1, kByName, "AUTOKEY", kRefSystem),
    REFFRAME_TABLE(DatumShiftType, "datum_shift_type.dat", 7, kByName, "TYPE", kType),
    REFFRAME_TABLE(RefSystemType, "refsystem_type.dat", 12, kByName, "TYPE", kRefSystemType),
    REFFRAME_TABLE(MapProj, "map_proj.dat", 6, kByName, "AUTOKEY", kMapProj),
    REFFRAME_TABLE(MapProjParam, "map_proj_param.dat", 13, 1, "", kMapProjParam),
    REFFRAME_TABLE(ParamValue, "param_value.dat", 14, 4, "", kOwnedValue),
    REFFRAME_TABLE(MapProjType, "map_proj_type.dat", 11, kByName, "TYPE", kMapProjType),
    REFFRAME_TABLE(SystemValue, "system_value.dat", 15, 4, "", kOwnedValue),
    REFFRAME_TABLE(VerticalRefSystem, "vertical_refsystem.dat", 16, kByName, "AUTOKEY", kVertical),
    REFFRAME_TABLE(InternalService, "", kUnopenedTag, -1, "", std::span<const FieldSpec>{}),
    REFFRAME_TABLE(RefsystemTransform, "refsys_transform.dat", kUnopenedTag, -1, "AUTOKEY",
                   kTransform),
};

#undef REFFRAME_TABLE

// The array runs in the order of TableId, and every sort field is a field.
consteval bool CatalogueIsConsistent() {
  for (int i = 0; i < kTableCount; ++i) {
    const TableSpec& table = kCatalogue[static_cast<std::size_t>(i)];
    if (static_cast<int>(table.id) != i) return false;
    if (table.sortField >= static_cast<int>(table.fields.size())) return false;
    if (table.sortField == kByName && table.fields[kByName].name != "NAME") return false;
  }
  return true;
}
static_assert(CatalogueIsConsistent());

}  // namespace

std::span<const TableSpec, kTableCount> TableCatalogue() {
  return kCatalogue;
}

const TableSpec& TableOf(TableId id) {
  return kCatalogue.at(static_cast<std::size_t>(id));
}

QvPlatform::TQvDbHeader HeaderOf(const TableSpec& table) {
  QvPlatform::TQvDbHeader header;
  header.ClearFields();
  for (const FieldSpec& field : table.fields) {
    header.AddField(std::string(field.name).c_str(), static_cast<unsigned char>(field.type),
                    static_cast<unsigned char>(field.need),
                    static_cast<unsigned char>(field.length));
  }
  return header;
}

}  // namespace QvRefSystem
