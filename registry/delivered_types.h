#pragma once

#include <span>
#include <string>
#include <string_view>

/// The fixed catalogues of kinds that a database is delivered with: what its type tables hold, and
/// what a tree that was not made from a database says of them.
namespace QvRefSystem {

/// A row of the table of reference system types.
struct ReferenceSystemType {
  /// TYPE: the numbers of SystemKind.
  int number;
  /// NAME, as it is shown.
  std::string_view name;
  /// DESCRIPTION, as it is shown.
  std::string_view description;
  /// Axis abbreviations that a new system of this kind starts with.
  std::string_view axisAbbreviation[3];
  /// Whether a new system of this kind has its second axis first.
  bool swap;
  /// Value of GTModelTypeGeoKey (GeoTIFF 1.1, section 7.1.2): 1 projected, 2 geographic,
  /// 3 geocentric; 0 where GeoTIFF has none.
  int geoTiffModelType;
};

/// A row of the table of datum shift types.
struct DatumShiftType {
  /// TYPE: 1 geocentric translation, 2 position vector, 3 coordinate frame rotation.
  int number;
  /// NAME, as it is shown.
  std::string_view name;
  /// DESCRIPTION, as it is shown.
  std::string_view description;
  /// EPSG code of the coordinate operation method in the geocentric domain.
  int geocentricMethod;
  /// EPSG code of the same in the geographic 2D domain.
  int geographicMethod;
};

/// The six kinds of reference systems, by number.
[[nodiscard]] std::span<const ReferenceSystemType> ReferenceSystemTypes();
/// Null for a number outside 1 to 6.
[[nodiscard]] const ReferenceSystemType* FindReferenceSystemType(int number);

/// The three kinds of datum shifts, by number.
[[nodiscard]] std::span<const DatumShiftType> DatumShiftTypes();
/// Null for a number outside 1 to 3.
[[nodiscard]] const DatumShiftType* FindDatumShiftType(int number);

/// The description of the map projection type of that EPSG method code.
[[nodiscard]] std::string ProjectionTypeDescription(int method);

/// The MIF/MID projection number of a geodetic system (longitude/latitude).
inline constexpr int kMifLongitudeLatitude = 1;

}  // namespace QvRefSystem
