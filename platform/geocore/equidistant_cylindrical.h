#pragma once

#include "platform/geocore/points.h"
#include "platform/geocore/shell_frames.h"
#include "platform/geocore/system_model.h"

namespace QvRefSystem {

/// The ellipsoidal equidistant cylindrical projection (EPSG method 1028), for which PROJ 9.1 takes
/// the spherical one: E = FE + nu1 cos(phi1) (lambda - lambda0), N = FN + M(phi), where M is the
/// meridian's length from the equator. Exact to rounding for any ellipsoid in use.
class EquidistantCylindrical {
 public:
  /// Throws GeodesyError for a parameter that is missing or no number.
  EquidistantCylindrical(const ProjectionModel& projection, const EllipsoidShape& shape);
  /// Projects in place, as the function Project does; every finite point has an image.
  Points<Plane> Project(Points<Geographic> points) const;
  /// The way back; points behind the poles and beyond the half turn fail.
  Points<Geographic> Unproject(Points<Plane> points) const;

 private:
  double parallelRadius_;
  double longitude_;
  double falseEasting_;
  double falseNorthing_;
  // Radius of the sphere with a meridian of the same length, and the terms of the rectifying
  // latitude.
  double rectifyingRadius_;
  double terms_[6];

  [[nodiscard]] double Rectifying(double latitude) const;
};

}  // namespace QvRefSystem
