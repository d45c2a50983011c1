#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

/// PROJ's database of the EPSG registry as typed rows: what is live in it and needed here.
namespace QvRefSystem {

/// An area in degrees on WGS 84; `west` is greater than `east` where it crosses the antimeridian.
struct EpsgBox {
  /// Least latitude.
  double south = 0;
  /// Greatest latitude.
  double north = 0;
  /// Longitude at which the area begins, going east.
  double west = 0;
  /// Longitude at which the area ends, going east.
  double east = 0;
};

/// Where and for what an object is used. Some areas have a name and no box.
struct EpsgUsage {
  /// The area in the registry's words.
  std::string area;
  /// The purpose in the registry's words.
  std::string scope;
  /// Limits of the area, if the registry has them.
  std::optional<EpsgBox> box;
};

/// An ellipsoid or a sphere.
struct EpsgEllipsoid {
  /// EPSG code of the ellipsoid.
  int code = 0;
  /// Name in the registry.
  std::string name;
  /// Semi-major axis, in `unit`.
  double a = 0;
  /// Code of the unit of `a` and `b`.
  int unit = 0;
  /// The inverse flattening, 0 for a sphere; set if and only if `b` is not.
  std::optional<double> inverseFlattening;
  /// Semi-minor axis, in `unit`.
  std::optional<double> b;
};

/// A prime meridian by its longitude from Greenwich.
struct EpsgPrimeMeridian {
  /// EPSG code of the prime meridian.
  int code = 0;
  /// Name in the registry.
  std::string name;
  /// Longitude in `unit`, east positive.
  double longitude = 0;
  /// Code of the unit, which may be a sexagesimal notation.
  int unit = 0;
};

/// A geodetic datum, or an ensemble of several.
struct EpsgDatum {
  /// EPSG code of the datum.
  int code = 0;
  /// Name in the registry.
  std::string name;
  /// Code of its ellipsoid.
  int ellipsoid = 0;
  /// Code of its prime meridian.
  int primeMeridian = 0;
  /// Codes of an ensemble's realizations; empty for a plain datum.
  std::vector<int> members;
  /// Whether it is an ensemble.
  bool ensemble = false;
  /// Where and for what it is used; may be empty.
  std::vector<EpsgUsage> usages;
};

/// An axis of a coordinate system, in the order of the coordinates.
struct EpsgAxis {
  /// Name in the registry, like "Geodetic latitude".
  std::string name;
  /// Abbreviation, like "Lat".
  std::string abbreviation;
  /// The way in which it counts, like "north".
  std::string orientation;
  /// Code of the unit of its coordinates.
  int unit = 0;
};

/// What the coordinates of a geodetic system are.
enum class EpsgGeodeticKind { kGeographic2D, kGeographic3D, kGeocentric };

/// A geographic or geocentric system.
struct EpsgGeodeticSystem {
  /// EPSG code of the system.
  int code = 0;
  /// Name in the registry.
  std::string name;
  /// What its coordinates are.
  EpsgGeodeticKind kind = EpsgGeodeticKind::kGeographic2D;
  /// Code of its datum.
  int datum = 0;
  /// Code of its axes in EpsgDataset::coordinateSystems.
  int coordinateSystem = 0;
  /// Where and for what it is used; may be empty.
  std::vector<EpsgUsage> usages;
};

/// A projected system.
struct EpsgProjectedSystem {
  /// EPSG code of the system.
  int code = 0;
  /// Name in the registry.
  std::string name;
  /// Code of the geographic system that is projected.
  int base = 0;
  /// Code of its map projection in EpsgDataset::conversions.
  int conversion = 0;
  /// Code of its axes in EpsgDataset::coordinateSystems.
  int coordinateSystem = 0;
  /// Where and for what it is used; may be empty.
  std::vector<EpsgUsage> usages;
};

/// A parameter of a map projection.
struct EpsgConversionParameter {
  /// EPSG code of the parameter.
  int code = 0;
  /// The value, in `unit`.
  double value = 0;
  /// Code of the unit, which may be a sexagesimal notation.
  int unit = 0;
};

/// A map projection with its parameters.
struct EpsgConversion {
  /// EPSG code of the conversion.
  int code = 0;
  /// Name in the registry.
  std::string name;
  /// Code of the projection method.
  int method = 0;
  /// The parameters in the order of the registry.
  std::vector<EpsgConversionParameter> parameters;
  /// Where and for what it is used; may be empty.
  std::vector<EpsgUsage> usages;
};

/// A value with the code of its unit; 0 for a value that the operation does not have.
struct EpsgMeasure {
  /// The value, in `unit`.
  double value = 0;
  /// Code of the unit; 0 for none.
  int unit = 0;
};

/// A live operation between two datums by three or seven parameters, or by a longitude rotation.
struct EpsgShiftOperation {
  /// EPSG code of the operation.
  int code = 0;
  /// Name in the registry.
  std::string name;
  /// Code of the coordinate operation method.
  int method = 0;
  /// Code of the datum from which it leads.
  int sourceDatum = 0;
  /// Code of the datum to which it leads.
  int targetDatum = 0;
  /// Accuracy of the operation in metres.
  double accuracy = 0;
  /// Three translations, three rotations and the scale difference, in the registry's own units and
  /// in the sense of the method.
  EpsgMeasure parameters[7];
  /// Change of each parameter in a year, in a unit of rates; unit 0 for methods without.
  EpsgMeasure rates[7];
  /// Decimal year for which the parameters hold.
  std::optional<double> epoch;
  /// Point of evaluation of the Molodensky-Badekas methods.
  EpsgMeasure pivot[3];
  /// For a longitude rotation: what is added to a source longitude.
  EpsgMeasure rotation;
  /// Codes of live operations of this kind that replace it between the same systems.
  std::vector<int> replacements;
  /// Where and for what it is used; may be empty.
  std::vector<EpsgUsage> usages;
};

/// Why a datum has no shift by parameters.
enum class EpsgOtherRoad { kGrid, kOffsets };

/// What is live in the registry and needed here, read at once. Codes are EPSG codes; deprecated
/// objects are left out.
struct EpsgDataset {
  /// Version of the registry, like "v10.076".
  std::string version;
  /// Ellipsoids by code.
  std::map<int, EpsgEllipsoid> ellipsoids;
  /// Prime meridians by code.
  std::map<int, EpsgPrimeMeridian> primeMeridians;
  /// Datums and ensembles by code.
  std::map<int, EpsgDatum> datums;
  /// The axes of each coordinate system, by its code.
  std::map<int, std::vector<EpsgAxis>> coordinateSystems;
  /// Geographic and geocentric systems by code.
  std::map<int, EpsgGeodeticSystem> geodeticSystems;
  /// Projected systems by code.
  std::map<int, EpsgProjectedSystem> projectedSystems;
  /// Map projections by code.
  std::map<int, EpsgConversion> conversions;
  /// Operations between datums by code.
  std::map<int, EpsgShiftOperation> shiftOperations;
  /// Datums from or to which an operation leads that parameters cannot stand for.
  std::map<int, EpsgOtherRoad> otherRoads;
};

/// Where the installed PROJ keeps its database; "" if it finds none.
[[nodiscard]] std::string ProjDatabasePath();

/// Reads a PROJ database; the file is opened for reading only. False, with `dataset` unchanged and
/// `error` set, if it is missing, not such a database, or of a layout other than 1.
[[nodiscard]] bool ReadEpsgDataset(const std::string& path, EpsgDataset* dataset,
                                   std::string* error);

/// The data set of the installed PROJ, read on first use and kept; null, and `error` set, if it
/// cannot be read. Safe to call from several threads.
[[nodiscard]] const EpsgDataset* InstalledEpsgDataset(std::string* error);

}  // namespace QvRefSystem
