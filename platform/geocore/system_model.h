#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/data/height_kind.h"
#include "platform/data/system_kinds.h"

/// A reference system as a value: what a tree holds, free of tree ids, table keys and JSON.
///
/// Numbers stay the decimal texts they were entered as; `Value` fields below are such texts, in
/// the unit that stands beside them. A code of 0 means that none is known.
namespace QvRefSystem {

/// The linear, angular and scale kind of a unit; the numbers are those of UNIT_TYPE.
enum class UnitKind { kLinear = 1, kAngular = 2, kScale = 3 };

/// B base units (metre, radian, unity) are C of the unit: factor to the base unit = B / C.
struct UnitModel {
  /// The code in the registry.
  int code = 0;
  /// The name of the record.
  std::string name;
  /// The sign behind a number.
  std::string abbreviation;
  /// What the record says for people.
  std::string description;
  /// B of the factor, above 0.
  double factorB = 1;
  /// C of the factor, above 0.
  double factorC = 1;
  /// The code in GeoTIFF files.
  int geoTiffCode = 0;
  /// The name in MIF/MID files.
  std::string mifName;
};

/// An ellipsoid as a record holds it.
struct EllipsoidModel {
  /// The name of the record.
  std::string name;
  /// What the record says for people.
  std::string description;
  /// Value of the semi-major axis.
  std::string a;
  /// Value of the semi-minor axis; it counts if neither `useF` nor `sphere` is set.
  std::string b;
  /// Flattening f (not 1/f), as a double; 0 where the shape is given by b.
  double f = 0;
  /// Whether the shape is given by `f`.
  bool useF = false;
  /// Whether it is a sphere of radius `a`.
  bool sphere = false;
  /// The unit of both axes.
  UnitModel unit;
  /// The code in GeoTIFF files.
  int geoTiffCode = 0;
  /// The code in MIF/MID files.
  std::string mifCode;
};

/// A prime meridian as a record holds it.
struct PrimeMeridianModel {
  /// The name of the record.
  std::string name;
  /// What the record says for people.
  std::string description;
  /// Value east of Greenwich.
  std::string longitude;
  /// The unit of the longitude.
  UnitModel unit;
  /// The code in GeoTIFF files.
  int geoTiffCode = 0;
};

/// type 1: geocentric translation; 2: position vector; 3: coordinate frame rotation.
struct DatumShiftModel {
  /// The kind of shift, by the numbers above.
  int type = 1;
  /// The name of the record.
  std::string name;
  /// What the record says for people.
  std::string description;
  /// The short name.
  std::string abbreviation;
  /// Values of the translations, the rotations and the scale difference; types 2 and 3 have the
  /// last four.
  std::string tx, ty, tz, rx, ry, rz, s;
  /// Units of the translations, the rotations and the scale difference.
  UnitModel linearUnit, angularUnit, scaleUnit;
};

/// A datum as a record holds it.
struct DatumModel {
  /// The name of the record.
  std::string name;
  /// What the record says for people.
  std::string description;
  /// The short name.
  std::string abbreviation;
  /// The way to the common frame.
  DatumShiftModel shift;
  /// The ellipsoid of the datum.
  EllipsoidModel ellipsoid;
  /// The code in GeoTIFF files.
  int geoTiffCode = 0;
  /// The code in MIF/MID files.
  std::string mifCode;
};

/// A parameter of a map projection.
struct ProjectionParameterModel {
  /// EPSG parameter code: PARAM_CODE and TAG of its row, id of its field in a tree.
  int code = 0;
  /// The name of the parameter.
  std::string name;
  /// Value in the unit of the kind that the parameter has.
  std::string value;
};

/// A map projection with the axes of its plane.
struct ProjectionModel {
  /// The name of the record.
  std::string name;
  /// What the record says for people.
  std::string description;
  /// EPSG method code: TYPE of the projection.
  int method = 0;
  /// The parameters of the method, in any order.
  std::vector<ProjectionParameterModel> parameters;
  /// Units of the parameters of each kind; empty where the method has none of that kind.
  std::optional<UnitModel> linearUnit, angularUnit, scaleUnit;
  /// First and second axis: abbreviation, direction word ("North", "East", "South", "West"),
  /// sign (1 north or east, -1 south or west); swap: the first axis is the north-south one.
  std::string axisAbbreviation[2];
  /// Direction words of both axes.
  std::string axisDirection[2];
  /// Signs of both axes.
  int axisSign[2] = {1, 1};
  /// Whether the first axis is the north-south one.
  bool swap = false;
  /// The code in GeoTIFF files.
  int geoTiffCode = 0;
};

/// Heights that count from a surface stored with the system.
struct HeightSystemModel {
  /// A table of undulations over the system's plane, or a constant offset.
  HeightKind kind = HeightKind::kTable;
  /// The name of the record.
  std::string name;
  /// What the record says for people.
  std::string description;
  /// The short name.
  std::string abbreviation;
  /// The undulation of an offset, in its own unit.
  std::string offset;
  /// The unit of the offset.
  UnitModel offsetUnit;
  /// Limits (north, east, south, west) and cells (north-south, east-west) of the grid, in the plane
  /// of the system; empty where they are not known. The values of a table are no part of the model:
  /// they are large, and only a computation reads them.
  std::string limits[4];
  /// Cells north-south and east-west, as said above.
  std::string cells[2];
};

/// A reference system.
struct SystemModel {
  /// Which of the members below count.
  SystemKind kind = SystemKind::kGeodetic;
  /// The name of the record.
  std::string name;
  /// What the record says for people.
  std::string description;
  /// The short name.
  std::string abbreviation;
  /// Abbreviations of the axes in their order.
  std::string axisAbbreviation[3];
  /// Heights of kinds 4 and 5; the axes of the others.
  UnitModel linearUnit;
  /// Latitude and longitude of kind 4.
  UnitModel angularUnit;
  /// The meridian from which longitudes count.
  PrimeMeridianModel primeMeridian;
  /// Kinds 3, 4, 5: a datum, or else the ellipsoid alone.
  std::optional<DatumModel> datum;
  /// The ellipsoid of a system without a datum.
  std::optional<EllipsoidModel> ellipsoid;
  /// The map projection of kind 5.
  std::optional<ProjectionModel> projection;
  /// The system that kinds 5 and 6 lie over; null for none.
  std::shared_ptr<SystemModel> primary;
  /// Whether longitudes are written from 0 to the full turn.
  bool positiveLongitude = false;
  /// Whether the first axis is the northward one.
  bool swap = false;
  /// Values of the origin of kinds 2 and 6, in the axes of the primary system.
  std::string origin[3];
  /// Value of the northward axis of kind 6; blank for 0.
  std::string azimuth;
  /// Code of a built-in geoid (kinds 4 and 5), 0 for none.
  int geoidCode = 0;
  /// Heights of kinds 4 and 5 over a table or an offset of their own.
  std::optional<HeightSystemModel> heights;
  /// The code in GeoTIFF files.
  int geoTiffCode = 0;
};

}  // namespace QvRefSystem
