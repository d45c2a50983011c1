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
/// Text: the name of the system.
inline constexpr Item kName{1020, "name"};
/// Text.
inline constexpr Item kDescription{1021, "desc"};
/// Text.
inline constexpr Item kAbbreviation{1022, "abbr"};
/// Text: the abbreviation of an axis, by index.
inline constexpr Item kAxis{1025, "axis"};
/// Integer: a SystemKind.
inline constexpr Item kKind{1100, "type"};
/// Subtree with the prime meridian of the system.
inline constexpr Item kPrimeMeridian{1101, "prime meridian"};
/// Subtree with the ellipsoid of a system without a datum.
inline constexpr Item kEllipsoid{1103, "ellipsoid"};
/// Subtree with the unit of the axes, or of the heights where it stands in kVertical.
inline constexpr Item kLinearUnit{1104, "linear unit"};
/// Subtree with the unit of latitude and longitude.
inline constexpr Item kAngularUnit{1106, "angular unit"};
/// Subtree with the datum of the system.
inline constexpr Item kDatum{1107, "datum"};
/// Integer: not 0 where longitudes run from 0 to 360 degrees.
inline constexpr Item kPositiveLongitude{1111, "positive longitude"};
/// Text: a coordinate of the origin, by index.
inline constexpr Item kOrigin{1120, "origin"};
/// Subtree with the system that this one is derived from.
inline constexpr Item kPrimary{1121, "reference system"};
/// The same where that system was made up for the way.
inline constexpr Item kGeneratedPrimary{1121, "primary reference system"};
/// Text: the azimuth of the first axis of a topocentric system.
inline constexpr Item kAzimuth{1122, "azimuth"};
/// Subtree with the unit of the heights.
inline constexpr Item kVertical{1201, "vertical reference system"};
/// Subtree with the map projection.
inline constexpr Item kProjection{1300, "PROJECTION"};
/// Integer: 1 where the first axis is the north-south one.
inline constexpr Item kSwap{1400, "swap"};
/// Integer: 1 or -1, by index; a repetition of kProjectionSign that nobody reads.
inline constexpr Item kSign{1401, "sign"};
/// Subtree with the height system of the system.
inline constexpr Item kHeightSystem{1500, "height system"};
/// Integer: a HeightKind.
inline constexpr Item kHeightSystemKind{1501, "type"};
/// Text.
inline constexpr Item kHeightSystemName{1502, "name"};
/// Text.
inline constexpr Item kHeightSystemDescription{1503, "description"};
/// Text.
inline constexpr Item kHeightSystemAbbreviation{1504, "abbreviation"};
/// Text: the table of undulations on one line.
inline constexpr Item kHeightSystemTable{1511, "table"};
/// Integer: the CRC-32 of the table as its file holds it.
inline constexpr Item kHeightSystemChecksum{1512, "crc32"};
/// Text: a number in the unit kHeightSystemUnit.
inline constexpr Item kHeightSystemOffset{1513, "offset"};
/// Subtree with the unit of the offset.
inline constexpr Item kHeightSystemUnit{1514, "linear unit"};
/// Text: the northern limit of the grid, in the plane of the system.
inline constexpr Item kHeightSystemNorth{1515, "extents North"};
/// Text: the eastern limit.
inline constexpr Item kHeightSystemEast{1516, "extents East"};
/// Text: the southern limit.
inline constexpr Item kHeightSystemSouth{1517, "extents South"};
/// Text: the western limit.
inline constexpr Item kHeightSystemWest{1518, "extents West"};
/// Text: the height of a cell of the grid, in the plane of the system.
inline constexpr Item kHeightSystemCellNorthSouth{1519, "cell North-South"};
/// Text: the width of a cell.
inline constexpr Item kHeightSystemCellEastWest{1520, "cell East-West"};
/// Integer: the EPSG code of a built-in geoid.
inline constexpr Item kHeightSystemCode{1521, "code"};
/// Subtree with what the database says of the system's kind.
inline constexpr Item kSystemType{2000, "refsystem type"};
/// Integer: a SystemKind.
inline constexpr Item kSystemTypeNumber{2001, "type"};
/// Text.
inline constexpr Item kSystemTypeName{2002, "name"};
/// Text.
inline constexpr Item kSystemTypeDescription{2003, "desc"};
/// Text: the abbreviation that an axis starts with, by index.
inline constexpr Item kSystemTypeAxis{2004, "coord"};
/// Integer: the flag that a new system starts with.
inline constexpr Item kSystemTypeSwap{2005, "swap"};

// Units.
/// Integer: an EPSG code, 0 for none.
inline constexpr Item kUnitCode{5301, "code"};
/// Double: B base units (metre, radian, unity) are C of the unit.
inline constexpr Item kUnitFactorB{5310, "f_b"};
/// Double: the C of kUnitFactorB.
inline constexpr Item kUnitFactorC{5311, "f_c"};
/// Integer: 1 linear, 2 angular, 3 scale unit.
inline constexpr Item kUnitKind{5312, "type"};
/// Text.
inline constexpr Item kUnitName{5320, "name"};
/// Text.
inline constexpr Item kUnitAbbreviation{5321, "abbr"};
/// Text.
inline constexpr Item kUnitDescription{5322, "desc"};

// Ellipsoid.
/// Text: the major semi-axis in the unit kEllipsoidUnit.
inline constexpr Item kEllipsoidA{5110, "A"};
/// Text: the minor semi-axis in the same unit.
inline constexpr Item kEllipsoidB{5111, "B"};
/// Double: the flattening f, not 1/f.
inline constexpr Item kEllipsoidF{5112, "f"};
/// Subtree with the unit of the semi-axes.
inline constexpr Item kEllipsoidUnit{5113, "linear unit"};
/// Integer: not 0 where the flattening gives the shape.
inline constexpr Item kEllipsoidUseF{5114, "use_f"};
/// Integer: not 0 for a sphere of the radius A.
inline constexpr Item kEllipsoidSphere{5115, "spheroid"};
/// Text.
inline constexpr Item kEllipsoidName{5120, "name"};
/// Text.
inline constexpr Item kEllipsoidDescription{5121, "desc"};

// Prime meridian.
/// Text: the longitude from Greenwich, east positive, in the unit kMeridianUnit.
inline constexpr Item kMeridianLongitude{5210, "long"};
/// Subtree with the unit of the longitude.
inline constexpr Item kMeridianUnit{5211, "angular unit"};
/// Text.
inline constexpr Item kMeridianName{5220, "name"};
/// Text.
inline constexpr Item kMeridianDescription{5221, "desc"};

// Datum and datum shift.
/// Subtree with the way from the datum to WGS 84.
inline constexpr Item kDatumShift{1102, "datum shift"};
/// Subtree with the ellipsoid of the datum.
inline constexpr Item kDatumEllipsoid{5610, "ellipsoid"};
/// Text.
inline constexpr Item kDatumName{5620, "name"};
/// Text.
inline constexpr Item kDatumDescription{5621, "desc"};
/// Text.
inline constexpr Item kDatumAbbreviation{5622, "abbr"};
/// Text.
inline constexpr Item kShiftName{5420, "name"};
/// Text.
inline constexpr Item kShiftDescription{5421, "desc"};
/// Text.
inline constexpr Item kShiftAbbreviation{5422, "abbr"};
/// Subtree with the unit of the translations.
inline constexpr Item kShiftLinearUnit{5440, "linear unit"};
/// Subtree with the unit of the rotations.
inline constexpr Item kShiftAngularUnit{5441, "angular unit"};
/// Subtree with the unit of the scale difference.
inline constexpr Item kShiftScaleUnit{5442, "scale unit"};
/// Subtree with what the database says of the kind of shift.
inline constexpr Item kShiftType{5443, "datum shift type"};
/// Text: the translation along the X axis.
inline constexpr Item kShiftTx{5461, "Tx"};
/// Text: the translation along the Y axis.
inline constexpr Item kShiftTy{5462, "Ty"};
/// Text: the translation along the Z axis.
inline constexpr Item kShiftTz{5463, "Tz"};
/// Text: the rotation about the X axis.
inline constexpr Item kShiftRx{5464, "Rx"};
/// Text: the rotation about the Y axis.
inline constexpr Item kShiftRy{5465, "Ry"};
/// Text: the rotation about the Z axis.
inline constexpr Item kShiftRz{5466, "Rz"};
/// Text: the scale difference.
inline constexpr Item kShiftS{5467, "S"};
/// Integer: 1 translations, 2 position vector, 3 coordinate frame.
inline constexpr Item kShiftTypeNumber{5701, "type"};
/// Text.
inline constexpr Item kShiftTypeName{5702, "name"};
/// Text.
inline constexpr Item kShiftTypeDescription{5703, "desc"};

// Map projection.
/// Integer: the EPSG code of the method.
inline constexpr Item kProjectionMethod{6001, "type"};
/// Text.
inline constexpr Item kProjectionName{6020, "name"};
/// Text.
inline constexpr Item kProjectionDescription{6021, "description"};
/// Text: the abbreviation of an axis, by index.
inline constexpr Item kProjectionAxis{6022, "coord abbr"};
/// Text: North, East, South or West, by index.
inline constexpr Item kProjectionDirection{6023, "coord desc"};
/// Integer: 1 for north or east, -1 for south or west, by index.
inline constexpr Item kProjectionSign{6024, "coord sign"};
/// Integer: not 0 where the first axis is the north-south one.
inline constexpr Item kProjectionSwap{6025, "swap coords"};
/// Stands in lists of members for the parameters of the projection's method, which have addresses
/// of their own.
inline constexpr Item kProjectionParameters{0, ""};
/// Subtree with the unit of the parameters that are angles, if the method has any.
inline constexpr Item kProjectionAngularUnit{6090, "angular unit"};
/// Subtree with the unit of those that are lengths.
inline constexpr Item kProjectionLinearUnit{6091, "linear unit"};
/// Subtree with the unit of those that are scale factors.
inline constexpr Item kProjectionScaleUnit{6092, "scale unit"};
/// Subtree with what the database says of the method.
inline constexpr Item kProjectionType{5800, "map proj type"};
/// Integer: the EPSG code of the method.
inline constexpr Item kProjectionTypeNumber{5801, "type"};
/// Text.
inline constexpr Item kProjectionTypeName{5802, "name"};
/// Text.
inline constexpr Item kProjectionTypeDescription{5803, "desc"};
/// Text: the name of the parameter whose EPSG code is the index.
inline constexpr Item kProjectionTypeParameter{5830, "map_proj_param_name"};

// Codes by which other formats know an object. Those of MIF/MID stand twice: with the object and,
// gathered for hosts that write that format, in the subtree kMifExport of a system.
/// Subtree with the codes of the system and of what it refers to, for hosts that write MIF/MID.
inline constexpr Item kMifExport{101000, "MIF/MID export subtree"};
/// Integer: the number of the projection.
inline constexpr Item kMifSystemType{101001, "MIF/MID reference system type"};
/// Text: the name of the unit.
inline constexpr Item kMifUnit{101002, "MIF/MID unit name"};
/// The same in the subtree of a geodetic system.
inline constexpr Item kMifExportAngularUnit{101002, "MIF/MID unit (angular?!) name"};
/// The same in the subtree of any other system.
inline constexpr Item kMifExportLinearUnit{101002, "MIF/MID unit (linear) name"};
/// Integer: the number of the datum.
inline constexpr Item kMifDatum{101003, "MIF/MID datum code"};
/// Integer: the number of the ellipsoid.
inline constexpr Item kMifEllipsoid{101004, "MIFMID ellipsoid"};
/// The same in the subtree of a system whose datum has no number.
inline constexpr Item kMifExportEllipsoid{101004, "MIF/MID user datum ellipsoid"};
/// Integer: the value of GTModelTypeGeoKey.
inline constexpr Item kGeoTiffSystemType{102001, "GeoTIFF ref.system type"};
/// Integer: an EPSG code, as all that follow.
inline constexpr Item kGeoTiffLinearUnit{102002, "GeoTIFF linear unit"};
/// Integer.
inline constexpr Item kGeoTiffAngularUnit{102003, "GeoTIFF angular unit"};
/// Integer.
inline constexpr Item kGeoTiffEllipsoid{102004, "GeoTIFF ellipsoid"};
/// Integer.
inline constexpr Item kGeoTiffSystem{102005, "GeoTIFF ref.system code"};
/// Integer.
inline constexpr Item kGeoTiffDatum{102006, "GeoTIFF datum"};
/// Integer.
inline constexpr Item kGeoTiffProjection{102007, "GeoTIFF map projection"};
/// Integer: the value of ProjCoordTransGeoKey.
inline constexpr Item kGeoTiffProjectionType{102008, "GeoTIFF map proj type"};
/// Integer.
inline constexpr Item kGeoTiffPrimeMeridian{102009, "GeoTIFF prime meridian"};

// Notes that storing leaves in the tree for the caller; no file holds them.
/// Integer: the key of the record that was added.
inline constexpr Item kInsertedKeyNote{201001, "Inserted ID", -1};
/// Integer: the key of the record that was there.
inline constexpr Item kFoundKeyNote{201001, "Found ID", -1};
/// Integer: the code of the object type.
inline constexpr Item kContentNote{201002, "Content", -1};
/// Integer: 1 if the record was added, 0 if it was there.
inline constexpr Item kInsertedNote{201003, "Inserted", -1};

/// Name of the primary system that stands in a projected system's tree when it
/// refers to none. It says nothing that the projected system itself does not.
inline constexpr std::string_view kGeneratedPrimaryName = "Primary ref. system";
/// Its description, which tells it from a system of the user's.
inline constexpr std::string_view kGeneratedPrimaryDescription = "Generated geodetic";
/// Its abbreviation.
inline constexpr std::string_view kGeneratedPrimaryAbbreviation = "Primary";
/// The name of its angular unit, which counts in radians.
inline constexpr std::string_view kGeneratedUnitName = "Radian";
/// The abbreviation of that unit.
inline constexpr std::string_view kGeneratedUnitAbbreviation = "rad";
/// The description of that unit.
inline constexpr std::string_view kGeneratedUnitDescription = "Generated";

}  // namespace QvRefSystem::TreeIds
