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
  /// Western longitude, from -180 to 180.
  double west = 0;
  /// Eastern longitude, from -180 to 180.
  double east = 0;
};

/// Where and for what an object is used. Some areas have a name and no box.
struct EpsgUsage {
  /// Name of the area.
  std::string area;
  /// What the object is used for there.
  std::string scope;
  /// The area's limits; nothing for an area that has a name only.
  std::optional<EpsgBox> box;
};

/// An ellipsoid; it has an inverse flattening or a semi-minor axis.
struct EpsgEllipsoid {
  /// EPSG code, as all codes here.
  int code = 0;
  /// Name in the registry.
  std::string name;
  /// Semi-major axis in the unit beside it, as are all lengths here that stand beside a unit.
  double a = 0;
  /// Code of the unit of both axes.
  int unit = 0;
  /// One of the two is set; an inverse flattening of 0 is a sphere.
  std::optional<double> inverseFlattening;
  /// Semi-minor axis.
  std::optional<double> b;
};

/// A prime meridian.
struct EpsgPrimeMeridian {
  /// EPSG code.
  int code = 0;
  /// Name in the registry.
  std::string name;
  /// Longitude from Greenwich, positive eastwards.
  double longitude = 0;
  /// Code of the longitude's unit, which may be one of the notations of degrees.
  int unit = 0;
};

/// A geodetic datum, or an ensemble of several.
struct EpsgDatum {
  /// EPSG code.
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
  /// Where and for what it is used, in the order of the registry, here and below.
  std::vector<EpsgUsage> usages;
};

/// One axis of a coordinate system.
struct EpsgAxis {
  /// Name of the axis.
  std::string name;
  /// Its letter.
  std::string abbreviation;
  /// The direction in which its values grow, in words of the registry.
  std::string orientation;
  /// Code of its unit.
  int unit = 0;
};

/// Kinds of geodetic systems.
enum class EpsgGeodeticKind { kGeographic2D, kGeographic3D, kGeocentric };

/// A geographic or geocentric system.
struct EpsgGeodeticSystem {
  /// EPSG code.
  int code = 0;
  /// Name in the registry.
  std::string name;
  /// Which of the kinds it is.
  EpsgGeodeticKind kind = EpsgGeodeticKind::kGeographic2D;
  /// Code of its datum.
  int datum = 0;
  /// Code of its coordinate system.
  int coordinateSystem = 0;
  /// Where and for what it is used.
  std::vector<EpsgUsage> usages;
};

/// A projected system.
struct EpsgProjectedSystem {
  /// EPSG code.
  int code = 0;
  /// Name in the registry.
  std::string name;
  /// Code of the geodetic system below it.
  int base = 0;
  /// Code of its map projection.
  int conversion = 0;
  /// Code of its coordinate system.
  int coordinateSystem = 0;
  /// Where and for what it is used.
  std::vector<EpsgUsage> usages;
};

/// One parameter of a map projection.
struct EpsgConversionParameter {
  /// Code of the parameter.
  int code = 0;
  /// Value in the unit beside it.
  double value = 0;
  /// Code of the value's unit, which may be one of the notations of degrees.
  int unit = 0;
};

/// A map projection with its parameters.
struct EpsgConversion {
  /// EPSG code.
  int code = 0;
  /// Name in the registry.
  std::string name;
  /// Code of its method.
  int method = 0;
  /// Its parameters, seven at most, in the order of the registry.
  std::vector<EpsgConversionParameter> parameters;
  /// Where and for what it is used.
  std::vector<EpsgUsage> usages;
};

/// A value with the code of its unit; 0 for a value that the operation does not have.
struct EpsgMeasure {
  /// The value in its unit.
  double value = 0;
  /// Code of the unit.
  int unit = 0;
};

/// A live operation between two datums by three or seven parameters, or by a longitude rotation.
struct EpsgShiftOperation {
  /// EPSG code.
  int code = 0;
  /// Name in the registry.
  std::string name;
  /// Code of its method.
  int method = 0;
  /// Code of the datum that it leads from.
  int sourceDatum = 0;
  /// Code of the datum that it leads to.
  int targetDatum = 0;
  /// Accuracy in metres; 0 where none is told.
  double accuracy = 0;
  /// Three translations, three rotations and the scale difference, in the registry's own units and
  /// in the sense of the method.
  EpsgMeasure parameters[7];
  /// Change a year of the same, unit codes of rates; unit 0 for methods without.
  EpsgMeasure rates[7];
  /// Decimal year for which the parameters hold.
  std::optional<double> epoch;
  /// Point of evaluation of the Molodensky-Badekas methods.
  EpsgMeasure pivot[3];
  /// For a longitude rotation: what is added to a source longitude.
  EpsgMeasure rotation;
  /// Codes of live operations of this kind that replace it between the same systems.
  std::vector<int> replacements;
  /// Where and for what it is used.
  std::vector<EpsgUsage> usages;
};

/// Why a datum has no shift by parameters.
enum class EpsgOtherRoad { kGrid, kOffsets };

/// All of it, read at once. Codes are EPSG codes; deprecated objects are left out.
struct EpsgDataset {
  /// Version of the registry, like "v10.076".
  std::string version;
  /// Ellipsoids by code, as the maps below are.
  std::map<int, EpsgEllipsoid> ellipsoids;
  /// Prime meridians.
  std::map<int, EpsgPrimeMeridian> primeMeridians;
  /// Datums and ensembles.
  std::map<int, EpsgDatum> datums;
  /// The axes of each coordinate system, in their order.
  std::map<int, std::vector<EpsgAxis>> coordinateSystems;
  /// Geographic and geocentric systems.
  std::map<int, EpsgGeodeticSystem> geodeticSystems;
  /// Projected systems.
  std::map<int, EpsgProjectedSystem> projectedSystems;
  /// Map projections.
  std::map<int, EpsgConversion> conversions;
  /// Shifts between datums.
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
