#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

/// PROJ's database of the EPSG registry as typed rows: what is live in it and needed here.
namespace QvRefSystem {

/// An area in degrees on WGS 84; `west` is greater than `east` where it crosses the antimeridian.
struct EpsgBox {
  double south = 0;
  double north = 0;
  double west = 0;
  double east = 0;
};

/// Where and for what an object is used. Some areas have a name and no box.
struct EpsgUsage {
  std::string area;
  std::string scope;
  std::optional<EpsgBox> box;
};

struct EpsgEllipsoid {
  int code = 0;
  std::string name;
  /// In the unit of that code, as are all lengths here that stand beside a unit.
  double a = 0;
  int unit = 0;
  /// One of the two is set; an inverse flattening of 0 is a sphere.
  std::optional<double> inverseFlattening;
  std::optional<double> b;
};

struct EpsgPrimeMeridian {
  int code = 0;
  std::string name;
  double longitude = 0;
  int unit = 0;
};

struct EpsgDatum {
  int code = 0;
  std::string name;
  int ellipsoid = 0;
  int primeMeridian = 0;
  /// Codes of an ensemble's realizations; empty for a plain datum.
  std::vector<int> members;
  bool ensemble = false;
  std::vector<EpsgUsage> usages;
};

struct EpsgAxis {
  std::string name;
  std::string abbreviation;
  std::string orientation;
  int unit = 0;
};

enum class EpsgGeodeticKind { kGeographic2D, kGeographic3D, kGeocentric };

struct EpsgGeodeticSystem {
  int code = 0;
  std::string name;
  EpsgGeodeticKind kind = EpsgGeodeticKind::kGeographic2D;
  int datum = 0;
  int coordinateSystem = 0;
  std::vector<EpsgUsage> usages;
};

struct EpsgProjectedSystem {
  int code = 0;
  std::string name;
  int base = 0;
  int conversion = 0;
  int coordinateSystem = 0;
  std::vector<EpsgUsage> usages;
};

struct EpsgConversionParameter {
  int code = 0;
  double value = 0;
  int unit = 0;
};

struct EpsgConversion {
  int code = 0;
  std::string name;
  int method = 0;
  std::vector<EpsgConversionParameter> parameters;
  std::vector<EpsgUsage> usages;
};

/// A value with the code of its unit; 0 for a value that the operation does not have.
struct EpsgMeasure {
  double value = 0;
  int unit = 0;
};

/// A live operation between two datums by three or seven parameters, or by a longitude rotation.
struct EpsgShiftOperation {
  int code = 0;
  std::string name;
  int method = 0;
  int sourceDatum = 0;
  int targetDatum = 0;
  /// Metres.
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
  std::vector<EpsgUsage> usages;
};

/// Why a datum has no shift by parameters.
enum class EpsgOtherRoad { kGrid, kOffsets };

/// All of it, read at once. Codes are EPSG codes; deprecated objects are left out.
struct EpsgDataset {
  /// Version of the registry, like "v10.076".
  std::string version;
  std::map<int, EpsgEllipsoid> ellipsoids;
  std::map<int, EpsgPrimeMeridian> primeMeridians;
  std::map<int, EpsgDatum> datums;
  std::map<int, std::vector<EpsgAxis>> coordinateSystems;
  std::map<int, EpsgGeodeticSystem> geodeticSystems;
  std::map<int, EpsgProjectedSystem> projectedSystems;
  std::map<int, EpsgConversion> conversions;
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
