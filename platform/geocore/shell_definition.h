#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/geocore/shell_frames.h"
#include "platform/geocore/shell_projection.h"
#include "platform/geocore/shell_reference_system.h"
#include "platform/geocore/system_model.h"

namespace QvRefSystem {

struct SystemGeoid;

/// The surface from which heights count.
enum class HeightSurface { kEllipsoid, kTable, kOffset, kGeoid };

/// What a system computes with: the numbers of its model in metres and radians, its frame, its
/// projection, its undulations. Immutable, and so shared by copies and threads; what PROJ needs is
/// kept for each thread.
class TShellReferenceSystem::Definition {
 public:
  /// Throws GeodesyError for a model that cannot be computed. `table` is the one of a height system
  /// of kind 1; of a topocentric system, that of its primary.
  [[nodiscard]] static std::shared_ptr<const Definition> Make(
      SystemModel model, std::shared_ptr<const THeightTable> table = nullptr);
  ~Definition();
  Definition(const Definition&) = delete;
  Definition& operator=(const Definition&) = delete;

  [[nodiscard]] const SystemModel& Model() const { return model_; }
  [[nodiscard]] SystemKind Kind() const { return model_.kind; }
  /// Geodetic, projected, geocentric and topocentric systems; the others have no place on Earth.
  [[nodiscard]] bool IsOnEarth() const;
  /// Geodetic and projected systems: those with a plane of latitude and longitude behind them.
  [[nodiscard]] bool HasLatitude() const;

  // The plane.

  /// Whether axis 0 is the one to the north or south.
  [[nodiscard]] bool IsNorthFirst() const { return northFirst_; }
  [[nodiscard]] TShellPoint FromPlane(double x, double y, double h) const;
  /// X and Y of the plane in First and Second, from the system's own axes.
  [[nodiscard]] TShellPoint ToPlane(const TShellPoint& point) const;
  /// 360 degrees in the unit of X for a geodetic system: X and X + turn are one place. Else 0.
  [[nodiscard]] double FullTurn() const;
  /// Radians or metres that one unit of X and Y is.
  [[nodiscard]] double PlaneUnit() const;
  /// Metres that one unit of heights is.
  [[nodiscard]] double HeightUnit() const { return linear_; }

  // Heights.

  [[nodiscard]] HeightSurface Heights() const { return surface_; }
  /// Null without a table.
  [[nodiscard]] const THeightTable* Table() const { return table_.get(); }
  /// Undulation of a constant offset in the height unit.
  [[nodiscard]] double Offset() const { return offset_; }
  /// Null without a built-in geoid.
  [[nodiscard]] const SystemGeoid* Geoid() const { return geoid_; }
  /// Puts the undulation above the system's ellipsoid, in the height unit, into Third of points in
  /// the system's own axes; 0 over the ellipsoid. A point without one fails as a whole.
  void PutUndulations(std::span<TShellPoint> points) const;

  // Comparison, by value.

  [[nodiscard]] bool HasSamePlane(const Definition& other) const;
  /// Ellipsoid and shift agree: latitude, longitude and height are the same in both, but for the
  /// prime meridian.
  [[nodiscard]] bool HasSameDatum(const Definition& other) const;
  [[nodiscard]] bool HasSameHeights(const Definition& other) const;

  // Computation.

  /// What Third of a point counts from: the system's own height surface or its ellipsoid.
  enum class Third { kHeight, kEllipsoidal };
  /// TShellReferenceSystem::Transform with a choice of what heights count from on either side.
  static std::size_t Move(const Definition& from, Third fromThird, const Definition& to,
                          Third toThird, std::span<TShellPoint> points);
  /// Why `point` fails on that way, in words for the user; empty if it does not.
  [[nodiscard]] static std::string WhyFailed(const Definition& from, const Definition& to,
                                             TShellPoint point);
  /// Throws GeodesyError if no point can move between the two.
  static void RequireMeeting(const Definition& from, const Definition& to);

  [[nodiscard]] const EllipsoidShape& Shape() const { return shape_; }
  [[nodiscard]] const DatumFrame& Frame() const { return frame_; }
  /// Radians east of Greenwich.
  [[nodiscard]] double PrimeMeridian() const { return meridian_; }
  /// PROJ's definition of the projection: see ProjectionOperation. Empty for a system without one,
  /// and for the equidistant cylindrical, which is computed here.
  [[nodiscard]] const std::string& Projection() const { return projection_; }

 private:
  explicit Definition(SystemModel model);

  void ReadBase(const SystemModel& base);
  void ReadGeodetic();
  void ReadProjected();
  void ReadGeocentric();
  void ReadTopocentric(std::shared_ptr<const THeightTable> primaryTable);
  void ReadHeights(std::shared_ptr<const THeightTable> table);

  [[nodiscard]] bool HasSameProjection(const Definition& other) const;
  [[nodiscard]] bool HasSameOrigin(const Definition& other) const;

  // To longitude and latitude from Greenwich in radians with ellipsoidal height in metres (systems
  // with latitude), or to the geocentric frame of the datum in metres (the others); and back.
  void Enter(std::span<TShellPoint> points, Third third) const;
  void Leave(std::span<TShellPoint> points, Third third) const;
  // Fails what Enter would fail and brings longitudes into range: all that is left to do between
  // equal systems.
  void Tidy(std::span<TShellPoint> points) const;
  // From what one system entered to what the other can leave from.
  static void Cross(const Definition& from, const Definition& to, std::span<TShellPoint> points);
  [[nodiscard]] std::string WhyNotEntered(TShellPoint point) const;
  void EnterPlane(std::span<TShellPoint> points) const;
  void LeavePlane(std::span<TShellPoint> points) const;
  void EnterAngles(std::span<TShellPoint> points) const;
  void LeaveAngles(std::span<TShellPoint> points) const;
  void ToMetres(std::span<TShellPoint> points) const;
  void EnterProjection(std::span<TShellPoint> points) const;
  void LeaveProjection(std::span<TShellPoint> points) const;
  void EnterCartesian(std::span<TShellPoint> points) const;
  void LeaveCartesian(std::span<TShellPoint> points) const;
  // Undulation of the table at a place in the system's own axes, in the height unit.
  [[nodiscard]] double TableValue(const TShellPoint& point) const;
  // Metres above the ellipsoid at longitudes and latitudes from Greenwich.
  [[nodiscard]] std::vector<double> GeoidValues(std::span<const TShellPoint> places) const;

  SystemModel model_;
  double linear_ = 1;
  double angular_ = 1;
  double meridian_ = 0;
  bool northFirst_ = false;
  EllipsoidShape shape_;
  DatumFrame frame_;
  HorizonFrame horizon_;
  // In the order of the method's table; radians, metres and unity.
  std::vector<double> parameters_;
  std::string projection_;
  std::optional<EquidistantCylindrical> equidistant_;
  HeightSurface surface_ = HeightSurface::kEllipsoid;
  std::shared_ptr<const THeightTable> table_;
  double offset_ = 0;
  const SystemGeoid* geoid_ = nullptr;
};

}  // namespace QvRefSystem
