#include "processors/object_descriptor.h"

#include <stdexcept>

namespace QvRefSystem {
namespace {

using QvPlatform::TextId;
using enum TObjectType;
using enum Reading;

constexpr EqualityColumn kByFoldedName{"NAME", Compare::kFoldedName};
constexpr std::array kByType{EqualityColumn{"TYPE", Compare::kInteger}};

// Units. The three classes share their fields; the subtree's id tells which kind it is.
constexpr std::array kUnitFields{IntegerItem(TreeIds::kUnitCode, "CODE"),
                                 IntegerItem(TreeIds::kUnitKind, "TYPE"),
                                 DoubleItem(TreeIds::kUnitFactorB, "FACTOR_B"),
                                 DoubleItem(TreeIds::kUnitFactorC, "FACTOR_C"),
                                 TextItem(TreeIds::kUnitName, "NAME"),
                                 TextItem(TreeIds::kUnitAbbreviation, "ABBREVIATION"),
                                 TextItem(TreeIds::kUnitDescription, "DESCRIPTION")};
constexpr auto kLinearUnitItems =
    Items(kUnitFields, std::array{CodeItem(TreeIds::kGeoTiffLinearUnit, ParamTag::kGeoTiff),
                                  CodeItem(TreeIds::kMifUnit, ParamTag::kMif, ValueForm::kText,
                                           BlankRule::kWriteBlank)});
constexpr auto kAngularUnitItems =
    Items(kUnitFields, std::array{CodeItem(TreeIds::kGeoTiffAngularUnit, ParamTag::kGeoTiff)});
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
constexpr std::array kEllipsoidItems{
    TextItem(TreeIds::kEllipsoidName, "NAME"),
    TextItem(TreeIds::kEllipsoidDescription, "DESCRIPTION"),
    TextItem(TreeIds::kEllipsoidA, "A"),
    TextItem(TreeIds::kEllipsoidB, "B"),
    With(DoubleItem(TreeIds::kEllipsoidF, "F"), kByRule),
    IntegerItem(TreeIds::kEllipsoidUseF, "USE_F"),
    IntegerItem(TreeIds::kEllipsoidSphere, "SPHEROID"),
    SubobjectItem(TreeIds::kEllipsoidUnit, kLinearUnit, "UNIT_AUTOKEY"),
    CodeItem(TreeIds::kGeoTiffEllipsoid, ParamTag::kGeoTiff),
    CodeItem(TreeIds::kMifEllipsoid, ParamTag::kMif)};
constexpr std::array kEllipsoidEquality{kByFoldedName,
                                        EqualityColumn{"UNIT_AUTOKEY", Compare::kInteger},
                                        EqualityColumn{"A", Compare::kText}};
constexpr std::array kEllipsoidUsers{UsedByScan{kReferenceSystem, "ELLIPSOID_AUTOKEY"},
                                     UsedByScan{kDatum, "ELLIPSOID_AUTOKEY"}};

constexpr std::array kPrimeMeridianItems{
    TextItem(TreeIds::kMeridianName, "NAME"),
    TextItem(TreeIds::kMeridianDescription, "DESCRIPTION"),
    TextItem(TreeIds::kMeridianLongitude, "LONGITUDE"),
    SubobjectItem(TreeIds::kMeridianUnit, kAngularUnit, "UNIT_AUTOKEY"),
    CodeItem(TreeIds::kGeoTiffPrimeMeridian, ParamTag::kGeoTiff)};
constexpr std::array kPrimeMeridianEquality{kByFoldedName,
                                            EqualityColumn{"UNIT_AUTOKEY", Compare::kInteger},
                                            EqualityColumn{"LONGITUDE", Compare::kText}};
constexpr std::array kPrimeMeridianUsers{UsedByScan{kReferenceSystem, "PRIME_MERIDIAN_AUTOKEY"}};

constexpr std::array kDatumItems{
    TextItem(TreeIds::kDatumName, "NAME"),
    TextItem(TreeIds::kDatumDescription, "DESCRIPTION"),
    TextItem(TreeIds::kDatumAbbreviation, "ABBREVIATION"),
    CodeItem(TreeIds::kGeoTiffDatum, ParamTag::kGeoTiff),
    CodeItem(TreeIds::kMifDatum, ParamTag::kMif, ValueForm::kInteger, BlankRule::kWriteBlank),
    SubobjectItem(TreeIds::kDatumShift, kDatumShift, "DATUM_SHIFT_AUTOKEY"),
    SubobjectItem(TreeIds::kDatumEllipsoid, kEllipsoid, "ELLIPSOID_AUTOKEY")};
constexpr std::array kDatumEquality{kByFoldedName,
                                    EqualityColumn{"ELLIPSOID_AUTOKEY", Compare::kInteger},
                                    EqualityColumn{"DATUM_SHIFT_AUTOKEY", Compare::kInteger}};
constexpr std::array kDatumUsers{UsedByScan{kReferenceSystem, "DATUM_AUTOKEY"}};

// Datum shifts. These are the members of the seven-parameter kinds; the kind with three has some
// of them, in an order of its own.
constexpr std::array kDatumShiftItems{
    TextItem(TreeIds::kShiftName, "NAME"),
    TextItem(TreeIds::kShiftDescription, "DESCRIPTION"),
    TextItem(TreeIds::kShiftAbbreviation, "ABBREVIATION"),
    TextItem(TreeIds::kShiftTx, "TX"),
    TextItem(TreeIds::kShiftTy, "TY"),
    TextItem(TreeIds::kShiftTz, "TZ"),
    TextItem(TreeIds::kShiftRx, "RX"),
    TextItem(TreeIds::kShiftRy, "RY"),
    TextItem(TreeIds::kShiftRz, "RZ"),
    TextItem(TreeIds::kShiftS, "S"),
    SubobjectItem(TreeIds::kShiftType, kDatumShiftType, "TYPE"),
    SubobjectItem(TreeIds::kShiftLinearUnit, kLinearUnit, "LINEAR_UNIT_AUTOKEY"),
    SubobjectItem(TreeIds::kShiftAngularUnit, kAngularUnit, "ANGULAR_UNIT_AUTOKEY"),
    SubobjectItem(TreeIds::kShiftScaleUnit, kScaleUnit, "SCALE_UNIT_AUTOKEY")};
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

constexpr std::array kDatumShiftTypeItems{IntegerItem(TreeIds::kShiftTypeNumber, "TYPE"),
                                          TextItem(TreeIds::kShiftTypeName, "NAME"),
                                          TextItem(TreeIds::kShiftTypeDescription, "DESCRIPTION")};

// Map projections. The parameters stand between the axes and the units, as the data of the type
// says; swap and sign stand twice, and only the first of each is read back.
constexpr std::array kMapProjectionItems{
    IntegerItem(TreeIds::kProjectionMethod, "TYPE"),
    TextItem(TreeIds::kProjectionName, "NAME"),
    TextItem(TreeIds::kProjectionDescription, "DESCRIPTION"),
    TextItem(TreeIds::kProjectionAxis, "COORD1_ABBR", 0),
    TextItem(TreeIds::kProjectionAxis, "COORD2_ABBR", 1),
    TextItem(TreeIds::kProjectionDirection, "COORD1_DESC", 0),
    TextItem(TreeIds::kProjectionDirection, "COORD2_DESC", 1),
    IntegerItem(TreeIds::kProjectionSign, "COORD1_SIGN", 0),
    IntegerItem(TreeIds::kProjectionSign, "COORD2_SIGN", 1),
    IntegerItem(TreeIds::kProjectionSwap, "SWAP_COORDS"),
    With(SubobjectItem(TreeIds::kProjectionType, kMapProjectionType, "TYPE"), kWriteOnly),
    With(IntegerItem(TreeIds::kSwap, "SWAP_COORDS"), kWriteOnly),
    With(IntegerItem(TreeIds::kSign, "COORD1_SIGN", 0), kWriteOnly),
    With(IntegerItem(TreeIds::kSign, "COORD2_SIGN", 1), kWriteOnly),
    InTurn(kLastTurn, OwnItem(TreeIds::kProjectionParameters)),
    SubobjectItem(TreeIds::kProjectionLinearUnit, kLinearUnit, "LINEAR_UNIT_AUTOKEY", true),
    SubobjectItem(TreeIds::kProjectionAngularUnit, kAngularUnit, "ANGULAR_UNIT_AUTOKEY", true),
    SubobjectItem(TreeIds::kProjectionScaleUnit, kScaleUnit, "SCALE_UNIT_AUTOKEY", true),
    CodeItem(TreeIds::kGeoTiffProjection, ParamTag::kGeoTiff),
    OwnItem(TreeIds::kGeoTiffProjectionType)};
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
    IntegerItem(TreeIds::kProjectionTypeNumber, "TYPE"),
    With(TextItem(TreeIds::kProjectionTypeName, "NAME"), kWriteOnly),
    With(TextItem(TreeIds::kProjectionTypeDescription, "DESCRIPTION"), kWriteOnly),
    OwnItem(TreeIds::kProjectionTypeParameter)};

constexpr std::array kReferenceSystemTypeItems{
    IntegerItem(TreeIds::kSystemTypeNumber, "TYPE"),
    TextItem(TreeIds::kSystemTypeName, "NAME"),
    TextItem(TreeIds::kSystemTypeDescription, "DESCRIPTION"),
    TextItem(TreeIds::kSystemTypeAxis, "COORD1_ABBR", 0),
    TextItem(TreeIds::kSystemTypeAxis, "COORD2_ABBR", 1),
    TextItem(TreeIds::kSystemTypeAxis, "COORD3_ABBR", 2),
    IntegerItem(TreeIds::kSystemTypeSwap, "SWAP_COORDS")};

// Reference systems. This is the head that all kinds share; the kinds' bodies stand in
// system_bodies. Each kind compares the columns that it has, and its heights beside them.
constexpr std::array kReferenceSystemItems{
    TextItem(TreeIds::kName, "NAME"), TextItem(TreeIds::kDescription, "DESCRIPTION"),
    TextItem(TreeIds::kAbbreviation, "ABBREVIATION"), IntegerItem(TreeIds::kKind, "TYPE"),
    With(SubobjectItem(TreeIds::kSystemType, kReferenceSystemType, "TYPE"), kWriteOnly)};
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
    TextItem(TreeIds::kHeightSystemName, "NAME"),
    TextItem(TreeIds::kHeightSystemDescription, "DESCRIPTION"),
    TextItem(TreeIds::kHeightSystemAbbreviation, "ABBREVIATION"),
    IntegerItem(TreeIds::kHeightSystemKind, "VDATA_TYPE"),
    With(IntegerItem(TreeIds::kHeightSystemChecksum, "VDATA_CRC32"), kByRule),
    OwnItem(TreeIds::kHeightSystemTable),
    With(TextItem(TreeIds::kHeightSystemOffset, "VDATA_OFFSET"), kByRule),
    With(SubobjectItem(TreeIds::kHeightSystemUnit, kLinearUnit, "VDATA_UNIT_AUTOKEY"), kByRule),
    With(TextItem(TreeIds::kHeightSystemNorth, "VDATA_EXTENTS_NORTH"), kByRule),
    With(TextItem(TreeIds::kHeightSystemEast, "VDATA_EXTENTS_EAST"), kByRule),
    With(TextItem(TreeIds::kHeightSystemSouth, "VDATA_EXTENTS_SOUTH"), kByRule),
    With(TextItem(TreeIds::kHeightSystemWest, "VDATA_EXTENTS_WEST"), kByRule),
    With(TextItem(TreeIds::kHeightSystemCellNorthSouth, "VDATA_CELL_NORTH_SOUTH"), kByRule),
    With(TextItem(TreeIds::kHeightSystemCellEastWest, "VDATA_CELL_EAST_WEST"), kByRule)};

constexpr std::span<const UsedByScan> kNoUsers{};

constexpr std::array<ObjectDescriptor, 13> kDescriptors{{
    {kReferenceSystem, TableId::kRefSystem, "reference system", TreeIds::kPrimary.label,
     TextId::kReferenceSystem, kReferenceSystemItems, kReferenceSystemEquality,
     kReferenceSystemUsers, kNameAndDescription},
    {kDatum, TableId::kDatum, "datum", TreeIds::kDatum.label, TextId::kDatum, kDatumItems,
     kDatumEquality, kDatumUsers, kNameAndDescription},
    {kEllipsoid, TableId::kEllipsoid, "ellipsoid", TreeIds::kEllipsoid.label, TextId::kEllipsoid,
     kEllipsoidItems, kEllipsoidEquality, kEllipsoidUsers, kNameAndDescription},
    {kDatumShift, TableId::kDatumShift, "datum shift", TreeIds::kDatumShift.label,
     TextId::kDatumShift, kDatumShiftItems, kDatumShiftEquality, kDatumShiftUsers,
     kNameAndDescription},
    {kPrimeMeridian, TableId::kPrimeMeridian, "prime meridian", TreeIds::kPrimeMeridian.label,
     TextId::kPrimeMeridian, kPrimeMeridianItems, kPrimeMeridianEquality, kPrimeMeridianUsers,
     kNameAndDescription},
    {kMapProjection, TableId::kMapProj, "map projection", TreeIds::kProjection.label,
     TextId::kMapProjection, kMapProjectionItems, kMapProjectionEquality, kMapProjectionUsers,
     kNameAndDescription},
    {kDatumShiftType, TableId::kDatumShiftType, "datum shift type", TreeIds::kShiftType.label,
     TextId::kDatumShiftType, kDatumShiftTypeItems, kByType, kNoUsers, kNameAndDescription},
    {kLinearUnit, TableId::kLinearUnit, "linear unit", TreeIds::kLinearUnit.label,
     TextId::kLinearUnit, kLinearUnitItems, kUnitEquality, kLinearUnitUsers, kNameAndDescription},
    {kScaleUnit, TableId::kScaleUnit, "scale unit", TreeIds::kShiftScaleUnit.label,
     TextId::kScaleUnit, kUnitFields, kUnitEquality, kScaleUnitUsers, kNameAndDescription},
    {kAngularUnit, TableId::kAngularUnit, "angular unit", TreeIds::kAngularUnit.label,
     TextId::kAngularUnit, kAngularUnitItems, kUnitEquality, kAngularUnitUsers, kAngularUnitInfo},
    {kMapProjectionType, TableId::kMapProjType, "map projection type",
     TreeIds::kProjectionType.label, TextId::kMapProjectionType, kMapProjectionTypeItems, kByType,
     kNoUsers, kNameAndDescription},
    {kReferenceSystemType, TableId::kRefSystemType, "reference system type",
     TreeIds::kSystemType.label, TextId::kReferenceSystemType, kReferenceSystemTypeItems, kByType,
     kNoUsers, kNameAndDescription},
    {kVerticalReferenceSystem,
     TableId::kVerticalRefSystem,
     "height system",
     TreeIds::kHeightSystem.label,
     TextId::kVerticalReferenceSystem,
     kVerticalItems,
     {},
     kNoUsers,
     kNameAndDescription},
}};

// A subtree bears the label of its object's type, wherever it stands.
consteval bool IsLabelOf(std::string_view label, TObjectType type) {
  for (const ObjectDescriptor& descriptor : kDescriptors) {
    if (descriptor.type == type) return descriptor.subtreeLabel == label;
  }
  return false;
}

// The rows run by code, and every member names what its kind needs.
consteval bool DescriptorsAreConsistent() {
  TObjectType last = kNone;
  for (const ObjectDescriptor& descriptor : kDescriptors) {
    if (static_cast<int>(descriptor.type) <= static_cast<int>(last)) return false;
    last = descriptor.type;
    for (const TreeItem& item : descriptor.items) {
      const bool subobject = item.kind == TreeItem::Kind::kSubobject;
      if (subobject != (item.object != kNone)) return false;
      if (subobject && !IsLabelOf(item.label, item.object)) return false;
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
