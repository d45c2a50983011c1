#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/data/height_table.h"
#include "platform/geocore/equidistant_cylindrical.h"
#include "platform/geocore/points.h"
#include "platform/geocore/shell_frames.h"
#include "platform/geocore/system_model.h"

namespace QvRefSystem {

struct SystemGeoid;

/// The surface from which heights count: the ellipsoid, the undulations of a table above it, a
/// constant undulation, or those of a built-in geoid.
enum class HeightSurface { kEllipsoid, kTable, kOffset, kGeoid };

/// What a system computes with: the numbers of its model in metres and radians, its frame, its
/// projection, its undulations. DefinitionFromModel makes one; from then on it is constant, and so
/// shared by copies and threads.
struct ShellDefinition {
  /// What the tree of the system says.
  SystemModel model;
  /// Metres that one unit of heights is; for a system without latitude, one unit of its axes.
  double heightUnit = 1;
  /// Radians that one unit of latitude and longitude is, in a geodetic system.
  double angularUnit = 1;
  /// The prime meridian in radians east of Greenwich.
  double primeMeridian = 0;
  /// Whether axis 0 is the one to the north or south.
  bool isNorthFirst = false;

  /// The ellipsoid of the system or of its datum.
  EllipsoidShape shape;
  /// The shift of its datum; none for a system on an ellipsoid alone.
  DatumFrame frame;
  /// The horizon of a topocentric system.
  HorizonFrame horizon;

  /// The parameters of the projection in the order of the method's table, in radians, metres and
  /// unity.
  std::vector<double> parameters;
  /// PROJ's definition of the projection: see ProjectionOperation. Empty for a system without one,
  /// and for the equidistant cylindrical.
  std::string projection;
  /// The projection that is computed here.
  std::optional<EquidistantCylindrical> equidistant;

  /// What heights count from.
  HeightSurface surface = HeightSurface::kEllipsoid;
  /// The undulations of kTable, in the height unit over the plane of the system; else null.
  std::shared_ptr<const THeightTable> table;
  /// The undulation of kOffset in the height unit.
  double offset = 0;
  /// The geoid of kGeoid, which lives as long as the process; else null.
  const SystemGeoid* geoid = nullptr;

  [[nodiscard]] SystemKind Kind() const { return model.kind; }
  /// Whether the system has a place on the Earth: all but local and local Cartesian ones.
  [[nodiscard]] bool IsOnEarth() const;
  /// Whether a plane of latitude and longitude is behind it: geodetic and projected systems.
  [[nodiscard]] bool HasLatitude() const;

  /// A point by the system's own axes, of the X and Y of its plane and a height.
  [[nodiscard]] TShellPoint FromPlane(double x, double y, double h) const;
  /// X and Y of the plane in First and Second, from the system's own axes.
  [[nodiscard]] TShellPoint ToPlane(const TShellPoint& point) const;
  /// 360 degrees in the unit of X for a geodetic system: X and X + turn are one place. Else 0.
  [[nodiscard]] double FullTurn() const;
  /// Radians or metres that one unit of X and Y is.
  [[nodiscard]] double PlaneUnit() const;

  /// Whether everything that changes a plane coordinate agrees, by value.
  [[nodiscard]] bool HasSamePlane(const ShellDefinition& other) const;
  /// Whether ellipsoid and shift agree: latitude, longitude and height are the same in both, but
  /// for the prime meridian.
  [[nodiscard]] bool HasSameDatum(const ShellDefinition& other) const;
  /// Whether heights count from the same surface in the same unit. Two tables count as two.
  [[nodiscard]] bool HasSameHeights(const ShellDefinition& other) const;

 private:
  [[nodiscard]] bool HasSameProjection(const ShellDefinition& other) const;
  [[nodiscard]] bool HasSameOrigin(const ShellDefinition& other) const;
};

}  // namespace QvRefSystem
