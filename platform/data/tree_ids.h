#pragma once

#include <string_view>

/// Addresses and labels of the members of all trees that objects travel in. They stand here alone:
/// what writes records, what reads them, models, registry and hosts take them from this list. The
/// parameters of a map projection are the exception: the id of such a member is the EPSG code of
/// the parameter, and its label the parameter's name.
namespace QvRefSystem::TreeIds {

/// One kind of member, a field or a subtree. Members that stand several times at one level differ
/// by their index, which counts from 0.
struct Item {
  /// The number that says what the member is, wherever it stands.
  int id;
  /// What is written for human readers; nobody reads it back.
  std::string_view label;
  /// The index of a member that stands once at its level, or of the first of several.
  int index = 0;
};

// Reference system.
inline constexpr Item kName{1020, "name"};
inline constexpr Item kDescription{1021, "desc"};
inline constexpr Item kAbbreviation{1022, "abbr"};
inline constexpr Item kAxis{1025, "axis"};
inline constexpr Item kKind{1100, "type"};
inline constexpr Item kPrimeMeridian{1101, "prime meridian"};
inline constexpr Item kEllipsoid{1103, "ellipsoid"};
inline constexpr Item kLinearUnit{1104, "linear unit"};
inline constexpr Item kAngularUnit{1106, "angular unit"};
inline constexpr Item kDatum{1107, "datum"};
inline constexpr Item kPositiveLongitude{1111, "positive longitude"};
inline constexpr Item kOrigin{1120, "origin"};
inline constexpr Item kPrimary{1121, "reference system"};
inline constexpr Item kGeneratedPrimary{1121, "primary reference system"};
inline constexpr Item kAzimuth{1122, "azimuth"};
inline constexpr Item kVertical{1201, "vertical reference system"};
inline constexpr Item kProjection{1300, "PROJECTION"};
inline constexpr Item kSwap{1400, "swap"};
inline constexpr Item kSign{1401, "sign"};
inline constexpr Item kHeightSystem{1500, "height system"};
inline constexpr Item kHeightSystemKind{1501, "type"};
inline constexpr Item kHeightSystemName{1502, "name"};
inline constexpr Item kHeightSystemDescription{1503, "description"};
inline constexpr Item kHeightSystemAbbreviation{1504, "abbreviation"};
inline constexpr Item kHeightSystemTable{1511, "table"};
inline constexpr Item kHeightSystemChecksum{1512, "crc32"};
inline constexpr Item kHeightSystemOffset{1513, "offset"};
inline constexpr Item kHeightSystemUnit{1514, "linear unit"};
inline constexpr Item kHeightSystemNorth{1515, "extents North"};
inline constexpr Item kHeightSystemEast{1516, "extents East"};
inline constexpr Item kHeightSystemSouth{1517, "extents South"};
inline constexpr Item kHeightSystemWest{1518, "extents West"};
inline constexpr Item kHeightSystemCellNorthSouth{1519, "cell North-South"};
inline constexpr Item kHeightSystemCellEastWest{1520, "cell East-West"};
inline constexpr Item kHeightSystemCode{1521, "code"};
inline constexpr Item kSystemType{2000, "refsystem type"};
inline constexpr Item kSystemTypeNumber{2001, "type"};
inline constexpr Item kSystemTypeName{2002, "name"};
inline constexpr Item kSystemTypeDescription{2003, "desc"};
inline constexpr Item kSystemTypeAxis{2004, "coord"};
inline constexpr Item kSystemTypeSwap{2005, "swap"};

// Units.
inline constexpr Item kUnitCode{5301, "code"};
inline constexpr Item kUnitFactorB{5310, "f_b"};
inline constexpr Item kUnitFactorC{5311, "f_c"};
inline constexpr Item kUnitKind{5312, "type"};
inline constexpr Item kUnitName{5320, "name"};
inline constexpr Item kUnitAbbreviation{5321, "abbr"};
inline constexpr Item kUnitDescription{5322, "desc"};

// Ellipsoid.
inline constexpr Item kEllipsoidA{5110, "A"};
inline constexpr Item kEllipsoidB{5111, "B"};
inline constexpr Item kEllipsoidF{5112, "f"};
inline constexpr Item kEllipsoidUnit{5113, "linear unit"};
inline constexpr Item kEllipsoidUseF{5114, "use_f"};
inline constexpr Item kEllipsoidSphere{5115, "spheroid"};
inline constexpr Item kEllipsoidName{5120, "name"};
inline constexpr Item kEllipsoidDescription{5121, "desc"};

// Prime meridian.
inline constexpr Item kMeridianLongitude{5210, "long"};
inline constexpr Item kMeridianUnit{5211, "angular unit"};
inline constexpr Item kMeridianName{5220, "name"};
inline constexpr Item kMeridianDescription{5221, "desc"};

// Datum and datum shift.
inline constexpr Item kDatumShift{1102, "datum shift"};
inline constexpr Item kDatumEllipsoid{5610, "ellipsoid"};
inline constexpr Item kDatumName{5620, "name"};
inline constexpr Item kDatumDescription{5621, "desc"};
inline constexpr Item kDatumAbbreviation{5622, "abbr"};
inline constexpr Item kShiftName{5420, "name"};
inline constexpr Item kShiftDescription{5421, "desc"};
inline constexpr Item kShiftAbbreviation{5422, "abbr"};
inline constexpr Item kShiftLinearUnit{5440, "linear unit"};
inline constexpr Item kShiftAngularUnit{5441, "angular unit"};
inline constexpr Item kShiftScaleUnit{5442, "scale unit"};
inline constexpr Item kShiftType{5443, "datum shift type"};
inline constexpr Item kShiftTx{5461, "Tx"};
inline constexpr Item kShiftTy{5462, "Ty"};
inline constexpr Item kShiftTz{5463, "Tz"};
inline constexpr Item kShiftRx{5464, "Rx"};
inline constexpr Item kShiftRy{5465, "Ry"};
inline constexpr Item kShiftRz{5466, "Rz"};
inline constexpr Item kShiftS{5467, "S"};
inline constexpr Item kShiftTypeNumber{5701, "type"};
inline constexpr Item kShiftTypeName{5702, "name"};
inline constexpr Item kShiftTypeDescription{5703, "desc"};

// Map projection.
inline constexpr Item kProjectionMethod{6001, "type"};
inline constexpr Item kProjectionName{6020, "name"};
inline constexpr Item kProjectionDescription{6021, "description"};
inline constexpr Item kProjectionAxis{6022, "coord abbr"};
inline constexpr Item kProjectionDirection{6023, "coord desc"};
inline constexpr Item kProjectionSign{6024, "coord sign"};
inline constexpr Item kProjectionSwap{6025, "swap coords"};
/// Stands in lists of members for the parameters of the projection's method, which have addresses
/// of their own.
inline constexpr Item kProjectionParameters{0, ""};
inline constexpr Item kProjectionAngularUnit{6090, "angular unit"};
inline constexpr Item kProjectionLinearUnit{6091, "linear unit"};
inline constexpr Item kProjectionScaleUnit{6092, "scale unit"};
inline constexpr Item kProjectionType{5800, "map proj type"};
inline constexpr Item kProjectionTypeNumber{5801, "type"};
inline constexpr Item kProjectionTypeName{5802, "name"};
inline constexpr Item kProjectionTypeDescription{5803, "desc"};
inline constexpr Item kProjectionTypeParameter{5830, "map_proj_param_name"};

// Codes by which other formats know an object. Those of MIF/MID stand twice: with the object and,
// gathered for hosts that write that format, in the subtree kMifExport of a system.
inline constexpr Item kMifExport{101000, "MIF/MID export subtree"};
inline constexpr Item kMifSystemType{101001, "MIF/MID reference system type"};
inline constexpr Item kMifUnit{101002, "MIF/MID unit name"};
inline constexpr Item kMifExportAngularUnit{101002, "MIF/MID unit (angular?!) name"};
inline constexpr Item kMifExportLinearUnit{101002, "MIF/MID unit (linear) name"};
inline constexpr Item kMifDatum{101003, "MIF/MID datum code"};
inline constexpr Item kMifEllipsoid{101004, "MIFMID ellipsoid"};
inline constexpr Item kMifExportEllipsoid{101004, "MIF/MID user datum ellipsoid"};
inline constexpr Item kGeoTiffSystemType{102001, "GeoTIFF ref.system type"};
inline constexpr Item kGeoTiffLinearUnit{102002, "GeoTIFF linear unit"};
inline constexpr Item kGeoTiffAngularUnit{102003, "GeoTIFF angular unit"};
inline constexpr Item kGeoTiffEllipsoid{102004, "GeoTIFF ellipsoid"};
inline constexpr Item kGeoTiffSystem{102005, "GeoTIFF ref.system code"};
inline constexpr Item kGeoTiffDatum{102006, "GeoTIFF datum"};
inline constexpr Item kGeoTiffProjection{102007, "GeoTIFF map projection"};
inline constexpr Item kGeoTiffProjectionType{102008, "GeoTIFF map proj type"};
inline constexpr Item kGeoTiffPrimeMeridian{102009, "GeoTIFF prime meridian"};

// Notes that storing leaves in the tree for the caller; no file holds them.
inline constexpr Item kInsertedKeyNote{201001, "Inserted ID", -1};
inline constexpr Item kFoundKeyNote{201001, "Found ID", -1};
inline constexpr Item kContentNote{201002, "Content", -1};
inline constexpr Item kInsertedNote{201003, "Inserted", -1};

/// Name and description of the primary system that stands in a projected system's tree when it
/// refers to none. It says nothing that the projected system itself does not.
inline constexpr std::string_view kGeneratedPrimaryName = "Primary ref. system";
inline constexpr std::string_view kGeneratedPrimaryDescription = "Generated geodetic";
inline constexpr std::string_view kGeneratedPrimaryAbbreviation = "Primary";
/// Its angular unit, which counts in radians.
inline constexpr std::string_view kGeneratedUnitName = "Radian";
inline constexpr std::string_view kGeneratedUnitAbbreviation = "rad";
inline constexpr std::string_view kGeneratedUnitDescription = "Generated";

}  // namespace QvRefSystem::TreeIds
