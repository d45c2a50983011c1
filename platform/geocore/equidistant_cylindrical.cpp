#include "platform/geocore/equidistant_cylindrical.h"

#include <cmath>
#include <numbers>

#include "platform/geocore/shell_projection.h"

namespace QvRefSystem {
namespace {

// EPSG coordinate operation parameters.
constexpr int kNaturalLongitude = 8802;
constexpr int kFalseEasting = 8806;
constexpr int kFalseNorthing = 8807;
constexpr int kFirstParallel = 8823;

}  // namespace

// The meridian's length as a series in the third flattening n up to n^6, after Helmert: Karney,
// "Transverse Mercator with an accuracy of a few nanometers", Journal of Geodesy 85 (2011).
EquidistantCylindrical::EquidistantCylindrical(const ProjectionModel& projection,
                                               const EllipsoidShape& shape)
    : parallelRadius_(shape.a *
                      shape.ParallelRatio(ProjectionParameterValue(projection, kFirstParallel))),
      longitude_(ProjectionParameterValue(projection, kNaturalLongitude)),
      falseEasting_(ProjectionParameterValue(projection, kFalseEasting)),
      falseNorthing_(ProjectionParameterValue(projection, kFalseNorthing)) {
  const double n = shape.f / (2 - shape.f);
  const double n2 = n * n;
  rectifyingRadius_ = shape.a / (1 + n) * (1 + n2 * (1.0 / 4 + n2 * (1.0 / 64 + n2 / 256)));
  terms_[0] = n * (-3.0 / 2 + n2 * (9.0 / 16 - n2 * 3 / 32));
  terms_[1] = n2 * (15.0 / 16 + n2 * (-15.0 / 32 + n2 * 135 / 2048));
  terms_[2] = n2 * n * (-35.0 / 48 + n2 * 105 / 256);
  terms_[3] = n2 * n2 * (315.0 / 512 - n2 * 189 / 512);
  terms_[4] = -n2 * n2 * n * 693 / 1280;
  terms_[5] = n2 * n2 * n2 * 1001 / 2048;
}

double EquidistantCylindrical::Rectifying(double latitude) const {
  double sum = latitude;
  for (int i = 0; i < 6; ++i)
    sum += terms_[i] * std::sin(2 * (i + 1) * latitude);
  return sum;
}

Points<Plane> EquidistantCylindrical::Project(Points<Geographic> points) const {
  constexpr double kTurn = 2 * std::numbers::pi;
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    const double east = std::remainder(point.First - longitude_, kTurn);
    point.First = falseEasting_ + parallelRadius_ * east;
    point.Second = falseNorthing_ + rectifyingRadius_ * Rectifying(point.Second);
  }
  return points.As<Plane>();
}

Points<Geographic> EquidistantCylindrical::Unproject(Points<Plane> points) const {
  // Rectifying and geodetic latitude differ by a slope of 3 n at most: each round gains more than
  // two digits.
  constexpr int kRounds = 8;
  for (TShellPoint& point : points) {
    if (IsFailed(point)) continue;
    const double rectifying = (point.Second - falseNorthing_) / rectifyingRadius_;
    const double east = (point.First - falseEasting_) / parallelRadius_;
    // Behind the poles and beyond the half turn there is nothing.
    constexpr double kRounding = 1e-12;
    if (!(std::abs(rectifying) <= std::numbers::pi / 2 + kRounding) ||
        !(std::abs(east) <= std::numbers::pi + kRounding)) {
      point = FailedPoint();
      continue;
    }
    double latitude = rectifying;
    for (int round = 0; round < kRounds; ++round)
      latitude += rectifying - Rectifying(latitude);
    point.First = east + longitude_;
    point.Second = latitude;
  }
  return points.As<Geographic>();
}

}  // namespace QvRefSystem
