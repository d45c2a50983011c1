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
  int code = 0;
  std::string name;
  std::string abbreviation;
  std::string description;
  double factorB = 1;
  double factorC = 1;
  int geoTiffCode = 0;
  std::string mifName;
};

struct EllipsoidModel {
  std::string name;
  std::string description;
  std::string a;
  std::string b;
  /// Flattening f (not 1/f), as a double; 0 where the shape is given by b.
  double f = 0;
  bool useF = false;
  bool sphere = false;
  UnitModel unit;
  int geoTiffCode = 0;
  std::string mifCode;
};

struct PrimeMeridianModel {
  std::string name;
  std::string description;
  std::string longitude;
  UnitModel unit;
  int geoTiffCode = 0;
};

/// type 1: geocentric translation; 2: position vector; 3: coordinate frame rotation.
struct DatumShiftModel {
  int type = 1;
  std::string name;
  std::string description;
  std::string abbreviation;
  std::string tx, ty, tz, rx, ry, rz, s;
  UnitModel linearUnit, angularUnit, scaleUnit;
};

struct DatumModel {
  std::string name;
  std::string description;
  std::string abbreviation;
  DatumShiftModel shift;
  EllipsoidModel ellipsoid;
  int geoTiffCode = 0;
  std::string mifCode;
};

struct ProjectionParameterModel {
  /// EPSG parameter code: PARAM_CODE and TAG of its row, id of its field in a tree.
  int code = 0;
  std::string name;
  std::string value;
};

struct ProjectionModel {
  std::string name;
  std::string description;
  /// EPSG method code: TYPE of the projection.
  int method = 0;
  std::vector<ProjectionParameterModel> parameters;
  /// Units of the parameters of each kind; empty where the method has none of that kind.
  std::optional<UnitModel> linearUnit, angularUnit, scaleUnit;
  /// First and second axis: abbreviation, direction word ("North", "East", "South", "West"),
  /// sign (1 north or east, -1 south or west); swap: the first axis is the north-south one.
  std::string axisAbbreviation[2];
  std::string axisDirection[2];
  int axisSign[2] = {1, 1};
  bool swap = false;
  int geoTiffCode = 0;
};

/// Heights that count from a surface stored with the system.
struct HeightSystemModel {
  /// A table of undulations over the system's plane, or a constant offset.
  HeightKind kind = HeightKind::kTable;
  std::string name;
  std::string description;
  std::string abbreviation;
  /// The undulation of an offset, in its own unit.
  std::string offset;
  UnitModel offsetUnit;
  /// Limits (north, east, south, west) and cells (north-south, east-west) of the grid, in the plane
  /// of the system; empty where they are not known. The values of a table are no part of the model:
  /// they are large, and only a computation reads them.
  std::string limits[4];
  std::string cells[2];
};

struct SystemModel {
  SystemKind kind = SystemKind::kGeodetic;
  std::string name;
  std::string description;
  std::string abbreviation;
  std::string axisAbbreviation[3];
  /// Heights of kinds 4 and 5; the axes of the others.
  UnitModel linearUnit;
  /// Latitude and longitude of kind 4.
  UnitModel angularUnit;
  PrimeMeridianModel primeMeridian;
  /// Kinds 3, 4, 5: a datum, or else the ellipsoid alone.
  std::optional<DatumModel> datum;
  std::optional<EllipsoidModel> ellipsoid;
  std::optional<ProjectionModel> projection;
  std::shared_ptr<SystemModel> primary;
  bool positiveLongitude = false;
  bool swap = false;
  std::string origin[3];
  std::string azimuth;
  /// Code of a built-in geoid (kinds 4 and 5), 0 for none.
  int geoidCode = 0;
  /// Heights of kinds 4 and 5 over a table or an offset of their own.
  std::optional<HeightSystemModel> heights;
  int geoTiffCode = 0;
};

}  // namespace QvRefSystem
