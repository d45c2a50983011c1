#include "processors/object_descriptor.h"

#include <stdexcept>

namespace QvRefSystem {
namespace {

using QvPlatform::TextId;
using enum TObjectType;
using enum Reading;

template <std::size_t... Sizes>
constexpr auto Items(const std::array<TreeItem, Sizes>&... parts) {
  std::array<TreeItem, (Sizes + ...)> joined{};
  std::size_t next = 0;
  const auto append = [&](const auto& part) {
    for (const TreeItem& item : part)
      joined[next++] = item;
  };
  (append(parts), ...);
  return joined;
}

constexpr EqualityColumn kByFoldedName{"NAME", Compare::kFoldedName};
constexpr std::array kByType{EqualityColumn{"TYPE", Compare::kInteger}};

// Units. The three classes share their fields; the subtree's id tells which kind it is.
constexpr std::array kUnitFields{
    IntegerItem(5301, "code", "CODE"),    IntegerItem(5312, "type", "TYPE"),
    DoubleItem(5310, "f_b", "FACTOR_B"),  DoubleItem(5311, "f_c", "FACTOR_C"),
    TextItem(5320, "name", "NAME"),       TextItem(5321, "abbr", "ABBREVIATION"),
    TextItem(5322, "desc", "DESCRIPTION")};
constexpr auto kLinearUnitItems =
    Items(kUnitFields, std::array{CodeItem(102002, "GeoTIFF linear unit", ParamTag::kGeoTiff),
                                  CodeItem(101002, "MIF/MID unit name", ParamTag::kMif,
                                           ValueForm::kText, BlankRule::kWriteBlank)});
constexpr auto kAngularUnitItems =
    Items(kUnitFields, std::array{CodeItem(102003, "GeoTIFF angular unit", ParamTag::kGeoTiff)});
constexpr std::array kUnitEquality{kByFoldedName, EqualityColumn{"CODE", Compare::kInteger},
                                   EqualityColumn{"FACTOR_B", Compare::kDouble},
                                   EqualityColumn{"FACTOR_C", Compare::kDouble}};
constexpr std::array kAngularUnitInfo{InfoLine{TextId::kInfoName, "NAME"},
                                      InfoLine{TextId::kInfoDescription, "DESCRIPTION"},
                                      InfoLine{TextId::kInfoAbbreviation, "ABBREVIATION"}};
constexpr std::array kLinearUnitUsers{UsedByScan{kReferenceSystem, "LINEAR_UNIT_AUTOKEY"},
                                      UsedByScan{kEllipsoid, "UNIT_AUTOKEY"},
                                      UsedByScan{kDatumShift, "LINEAR_UNIT_AUTOKEY"},
                                      UsedByScan{kMapProjection, "LINEAR_UNIT_AUTOKEY"},
                                      UsedByScan{kVerticalReferenceSystem, "VDATA_UNIT_AUTOKEY"}};
constexpr std::array kAngularUnitUsers{UsedByScan{kReferenceSystem, "ANGULAR_UNIT_AUTOKEY"},
                                       UsedByScan{kPrimeMeridian, "UNIT_AUTOKEY"},
                                       UsedByScan{kDatumShift, "ANGULAR_UNIT_AUTOKEY"},
                                       UsedByScan{kMapProjection, "ANGULAR_UNIT_AUTOKEY"}};
constexpr std::array kScaleUnitUsers{UsedByScan{kMapProjection, "SCALE_UNIT_AUTOKEY"},
                                     UsedByScan{kDatumShift, "SCALE_UNIT_AUTOKEY"}};

// Ellipsoids. Which column gives the shape depends on the tree's flags.
constexpr std::array kEllipsoidItems{TextItem(5120, "name", "NAME"),
                                     TextItem(5121, "desc", "DESCRIPTION"),
                                     TextItem(5110, "A", "A"),
                                     TextItem(5111, "B", "B"),
                                     With(DoubleItem(5112, "f", "F"), kByRule),
                                     IntegerItem(5114, "use_f", "USE_F"),
                                     IntegerItem(5115, "spheroid", "SPHEROID"),
                                     SubobjectItem(5113, kLinearUnit, "UNIT_AUTOKEY"),
                                     CodeItem(102004, "GeoTIFF ellipsoid", ParamTag::kGeoTiff),
                                     CodeItem(101004, "MIFMID ellipsoid", ParamTag::kMif)};
constexpr std::array kEllipsoidEquality{kByFoldedName,
                                        EqualityColumn{"UNIT_AUTOKEY", Compare::kInteger},
                                        EqualityColumn{"A", Compare::kText}};
constexpr std::array kEllipsoidUsers{UsedByScan{kReferenceSystem, "ELLIPSOID_AUTOKEY"},
                                     UsedByScan{kDatum, "ELLIPSOID_AUTOKEY"}};

constexpr std::array kPrimeMeridianItems{
    TextItem(5220, "name", "NAME"), TextItem(5221, "desc", "DESCRIPTION"),
    TextItem(5210, "long", "LONGITUDE"), SubobjectItem(5211, kAngularUnit, "UNIT_AUTOKEY"),
    CodeItem(102009, "GeoTIFF prime meridian", ParamTag::kGeoTiff)};
constexpr std::array kPrimeMeridianEquality{kByFoldedName,
                                            EqualityColumn{"UNIT_AUTOKEY", Compare::kInteger},
                                            EqualityColumn{"LONGITUDE", Compare::kText}};
constexpr std::array kPrimeMeridianUsers{UsedByScan{kReferenceSystem, "PRIME_MERIDIAN_AUTOKEY"}};

constexpr std::array kDatumItems{TextItem(5620, "name", "NAME"),
                                 TextItem(5621, "desc", "DESCRIPTION"),
                                 TextItem(5622, "abbr", "ABBREVIATION"),
                                 CodeItem(102006, "GeoTIFF datum", ParamTag::kGeoTiff),
                                 CodeItem(101003, "MIF/MID datum code", ParamTag::kMif,
                                          ValueForm::kInteger, BlankRule::kWriteBlank),
                                 SubobjectItem(1102, kDatumShift, "DATUM_SHIFT_AUTOKEY"),
                                 SubobjectItem(5610, kEllipsoid, "ELLIPSOID_AUTOKEY")};
constexpr std::array kDatumEquality{kByFoldedName,
                                    EqualityColumn{"ELLIPSOID_AUTOKEY", Compare::kInteger},
                                    EqualityColumn{"DATUM_SHIFT_AUTOKEY", Compare::kInteger}};
constexpr std::array kDatumUsers{UsedByScan{kReferenceSystem, "DATUM_AUTOKEY"}};

// Datum shifts. These are the members of the seven-parameter kinds; the kind with three has some
// of them, in an order of its own.
constexpr std::array kDatumShiftItems{TextItem(5420, "name", "NAME"),
                                      TextItem(5421, "desc", "DESCRIPTION"),
                                      TextItem(5422, "abbr", "ABBREVIATION"),
                                      TextItem(5461, "Tx", "TX"),
                                      TextItem(5462, "Ty", "TY"),
                                      TextItem(5463, "Tz", "TZ"),
                                      TextItem(5464, "Rx", "RX"),
                                      TextItem(5465, "Ry", "RY"),
                                      TextItem(5466, "Rz", "RZ"),
                                      TextItem(5467, "S", "S"),
                                      SubobjectItem(5443, kDatumShiftType, "TYPE"),
                                      SubobjectItem(5440, kLinearUnit, "LINEAR_UNIT_AUTOKEY"),
                                      SubobjectItem(5441, kAngularUnit, "ANGULAR_UNIT_AUTOKEY"),
                                      SubobjectItem(5442, kScaleUnit, "SCALE_UNIT_AUTOKEY")};
constexpr std::array kDatumShiftEquality{kByFoldedName,
                                         EqualityColumn{"TYPE", Compare::kInteger},
                                         EqualityColumn{"LINEAR_UNIT_AUTOKEY", Compare::kInteger},
                                         EqualityColumn{"ANGULAR_UNIT_AUTOKEY", Compare::kInteger},
                                         EqualityColumn{"SCALE_UNIT_AUTOKEY", Compare::kInteger},
                                         EqualityColumn{"TX", Compare::kText},
                                         EqualityColumn{"TY", Compare::kText},
                                         EqualityColumn{"TZ", Compare::kText},
                                         EqualityColumn{"RX", Compare::kText},
                                         EqualityColumn{"RY", Compare::kText},
                                         EqualityColumn{"RZ", Compare::kText},
                                         EqualityColumn{"S", Compare::kText}};
constexpr std::array kDatumShiftUsers{UsedByScan{kDatum, "DATUM_SHIFT_AUTOKEY"}};

constexpr std::array kDatumShiftTypeItems{IntegerItem(5701, "type", "TYPE"),
                                          TextItem(5702, "name", "NAME"),
                                          TextItem(5703, "desc", "DESCRIPTION")};

// Map projections. The parameters stand between the axes and the units, as the data of the type
// says; swap and sign stand twice, and only the first of each is read back.
constexpr std::array kMapProjectionItems{
    IntegerItem(6001, "type", "TYPE"),
    TextItem(6020, "name", "NAME"),
    TextItem(6021, "description", "DESCRIPTION"),
    TextItem(6022, "coord abbr", "COORD1_ABBR", 0),
    TextItem(6022, "coord abbr", "COORD2_ABBR", 1),
    TextItem(6023, "coord desc", "COORD1_DESC", 0),
    TextItem(6023, "coord desc", "COORD2_DESC", 1),
    IntegerItem(6024, "coord sign", "COORD1_SIGN", 0),
    IntegerItem(6024, "coord sign", "COORD2_SIGN", 1),
    IntegerItem(6025, "swap coords", "SWAP_COORDS"),
    With(SubobjectItem(5800, kMapProjectionType, "TYPE"), kWriteOnly),
    With(IntegerItem(1400, "swap", "SWAP_COORDS"), kWriteOnly),
    With(IntegerItem(1401, "sign", "COORD1_SIGN", 0), kWriteOnly),
    With(IntegerItem(1401, "sign", "COORD2_SIGN", 1), kWriteOnly),
    OwnItem(kProjectionParameterOwner),
    SubobjectItem(6091, kLinearUnit, "LINEAR_UNIT_AUTOKEY", true),
    SubobjectItem(6090, kAngularUnit, "ANGULAR_UNIT_AUTOKEY", true),
    SubobjectItem(6092, kScaleUnit, "SCALE_UNIT_AUTOKEY", true),
    CodeItem(102007, "GeoTIFF map projection", ParamTag::kGeoTiff),
    OwnItem(102008)};
constexpr std::array kMapProjectionEquality{
    kByFoldedName,
    EqualityColumn{"TYPE", Compare::kInteger},
    EqualityColumn{"LINEAR_UNIT_AUTOKEY", Compare::kInteger},
    EqualityColumn{"ANGULAR_UNIT_AUTOKEY", Compare::kInteger},
    EqualityColumn{"SCALE_UNIT_AUTOKEY", Compare::kInteger},
    EqualityColumn{"COORD1_SIGN", Compare::kInteger},
    EqualityColumn{"COORD2_SIGN", Compare::kInteger},
    EqualityColumn{"SWAP_COORDS", Compare::kInteger}};
constexpr std::array kMapProjectionUsers{UsedByScan{kReferenceSystem, "MAP_PROJ_AUTOKEY"}};

constexpr std::array kMapProjectionTypeItems{
    IntegerItem(5801, "type", "TYPE"), With(TextItem(5802, "name", "NAME"), kWriteOnly),
    With(TextItem(5803, "desc", "DESCRIPTION"), kWriteOnly), OwnItem(5830)};

constexpr std::array kReferenceSystemTypeItems{
    IntegerItem(2001, "type", "TYPE"),         TextItem(2002, "name", "NAME"),
    TextItem(2003, "desc", "DESCRIPTION"),     TextItem(2004, "coord", "COORD1_ABBR", 0),
    TextItem(2004, "coord", "COORD2_ABBR", 1), TextItem(2004, "coord", "COORD3_ABBR", 2),
    IntegerItem(2005, "swap", "SWAP_COORDS")};

// Reference systems. This is the head that all kinds share; the kinds' bodies stand with the
// processor. Each kind compares the columns that it has, and its heights beside them.
constexpr std::array kReferenceSystemItems{
    TextItem(1020, "name", "NAME"), TextItem(1021, "desc", "DESCRIPTION"),
    TextItem(1022, "abbr", "ABBREVIATION"), IntegerItem(1100, "type", "TYPE"),
    With(SubobjectItem(2000, kReferenceSystemType, "TYPE"), kWriteOnly)};
constexpr std::array kReferenceSystemEquality{
    kByFoldedName,
    EqualityColumn{"TYPE", Compare::kInteger},
    EqualityColumn{"LINEAR_UNIT_AUTOKEY", Compare::kInteger},
    EqualityColumn{"ANGULAR_UNIT_AUTOKEY", Compare::kInteger},
    EqualityColumn{"PRIMARY_REFSYSTEM_AUTOKEY", Compare::kInteger},
    EqualityColumn{"MAP_PROJ_AUTOKEY", Compare::kInteger},
    EqualityColumn{"DATUM_AUTOKEY", Compare::kInteger},
    EqualityColumn{"PRIME_MERIDIAN_AUTOKEY", Compare::kInteger},
    EqualityColumn{"ELLIPSOID_AUTOKEY", Compare::kInteger},
    EqualityColumn{"SWAP_COORDS", Compare::kInteger},
    EqualityColumn{"ORIGIN_COORD1", Compare::kTrimmedText},
    EqualityColumn{"ORIGIN_COORD2", Compare::kTrimmedText},
    EqualityColumn{"ORIGIN_COORD3", Compare::kTrimmedText},
    EqualityColumn{"AZIMUTH", Compare::kTrimmedText}};
constexpr std::array kReferenceSystemUsers{
    UsedByScan{kReferenceSystem, "PRIMARY_REFSYSTEM_AUTOKEY"}};

// Height systems. All have the texts and the kind; the kind tells which of the others.
constexpr std::array kVerticalItems{
    TextItem(1502, "name", "NAME"),
    TextItem(1503, "description", "DESCRIPTION"),
    TextItem(1504, "abbreviation", "ABBREVIATION"),
    IntegerItem(1501, "type", "VDATA_TYPE"),
    With(IntegerItem(1512, "crc32", "VDATA_CRC32"), kByRule),
    OwnItem(1511, "table"),
    With(TextItem(1513, "offset", "VDATA_OFFSET"), kByRule),
    With(SubobjectItem(1514, kLinearUnit, "VDATA_UNIT_AUTOKEY"), kByRule),
    With(TextItem(1515, "extents North", "VDATA_EXTENTS_NORTH"), kByRule),
    With(TextItem(1516, "extents East", "VDATA_EXTENTS_EAST"), kByRule),
    With(TextItem(1517, "extents South", "VDATA_EXTENTS_SOUTH"), kByRule),
    With(TextItem(1518, "extents West", "VDATA_EXTENTS_WEST"), kByRule),
    With(TextItem(1519, "cell North-South", "VDATA_CELL_NORTH_SOUTH"), kByRule),
    With(TextItem(1520, "cell East-West", "VDATA_CELL_EAST_WEST"), kByRule)};

constexpr std::span<const UsedByScan> kNoUsers{};

constexpr std::array<ObjectDescriptor, 13> kDescriptors{{
    {kReferenceSystem, TableId::kRefSystem, "reference system", "reference system",
     TextId::kReferenceSystem, kReferenceSystemItems, kReferenceSystemEquality,
     kReferenceSystemUsers, kNameAndDescription},
    {kDatum, TableId::kDatum, "datum", "datum", TextId::kDatum, kDatumItems, kDatumEquality,
     kDatumUsers, kNameAndDescription},
    {kEllipsoid, TableId::kEllipsoid, "ellipsoid", "ellipsoid", TextId::kEllipsoid, kEllipsoidItems,
     kEllipsoidEquality, kEllipsoidUsers, kNameAndDescription},
    {kDatumShift, TableId::kDatumShift, "datum shift", "datum shift", TextId::kDatumShift,
     kDatumShiftItems, kDatumShiftEquality, kDatumShiftUsers, kNameAndDescription},
    {kPrimeMeridian, TableId::kPrimeMeridian, "prime meridian", "prime meridian",
     TextId::kPrimeMeridian, kPrimeMeridianItems, kPrimeMeridianEquality, kPrimeMeridianUsers,
     kNameAndDescription},
    {kMapProjection, TableId::kMapProj, "map projection", "PROJECTION", TextId::kMapProjection,
     kMapProjectionItems, kMapProjectionEquality, kMapProjectionUsers, kNameAndDescription},
    {kDatumShiftType, TableId::kDatumShiftType, "datum shift type", "datum shift type",
     TextId::kDatumShiftType, kDatumShiftTypeItems, kByType, kNoUsers, kNameAndDescription},
    {kLinearUnit, TableId::kLinearUnit, "linear unit", "linear unit", TextId::kLinearUnit,
     kLinearUnitItems, kUnitEquality, kLinearUnitUsers, kNameAndDescription},
    {kScaleUnit, TableId::kScaleUnit, "scale unit", "scale unit", TextId::kScaleUnit, kUnitFields,
     kUnitEquality, kScaleUnitUsers, kNameAndDescription},
    {kAngularUnit, TableId::kAngularUnit, "angular unit", "angular unit", TextId::kAngularUnit,
     kAngularUnitItems, kUnitEquality, kAngularUnitUsers, kAngularUnitInfo},
    {kMapProjectionType, TableId::kMapProjType, "map projection type", "map proj type",
     TextId::kMapProjectionType, kMapProjectionTypeItems, kByType, kNoUsers, kNameAndDescription},
    {kReferenceSystemType, TableId::kRefSystemType, "reference system type", "refsystem type",
     TextId::kReferenceSystemType, kReferenceSystemTypeItems, kByType, kNoUsers,
     kNameAndDescription},
    {kVerticalReferenceSystem,
     TableId::kVerticalRefSystem,
     "height system",
     "height system",
     TextId::kVerticalReferenceSystem,
     kVerticalItems,
     {},
     kNoUsers,
     kNameAndDescription},
}};

// The rows run by code, and every member names what its kind needs.
consteval bool DescriptorsAreConsistent() {
  TObjectType last = kNone;
  for (const ObjectDescriptor& descriptor : kDescriptors) {
    if (static_cast<int>(descriptor.type) <= static_cast<int>(last)) return false;
    last = descriptor.type;
    for (const TreeItem& item : descriptor.items) {
      const bool subobject = item.kind == TreeItem::Kind::kSubobject;
      if (subobject != (item.object != kNone)) return false;
      if (item.kind == TreeItem::Kind::kField && item.column.empty()) return false;
    }
  }
  return true;
}
static_assert(DescriptorsAreConsistent());

}  // namespace

std::span<const ObjectDescriptor> ObjectDescriptors() {
  return kDescriptors;
}

const ObjectDescriptor& DescriptorOf(TObjectType type) {
  for (const ObjectDescriptor& descriptor : kDescriptors) {
    if (descriptor.type == type) return descriptor;
  }
  throw std::out_of_range("no such object type");
}

TObjectType ObjectTypeOf(int code) {
  for (const ObjectDescriptor& descriptor : kDescriptors) {
    if (static_cast<int>(descriptor.type) == code) return descriptor.type;
  }
  return kNone;
}

}  // namespace QvRefSystem
