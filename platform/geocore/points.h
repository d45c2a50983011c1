#pragma once

#include <cstddef>
#include <span>
#include <type_traits>

#include "platform/geocore/shell_point.h"

/// Points that say what their three numbers are. A computation works on one memory in place and
/// goes through several spaces on its way; the type of the span tells in which one it is.
namespace QvRefSystem {

/// First, second and third axis of a system, in its own order, sign and units.
struct Axes {};
/// Longitude and latitude in radians, and height above the ellipsoid in metres. The prime meridian
/// from which longitudes count is said where such points are passed.
struct Geographic {};
/// Easting and northing of a map projection in metres. Third is no part of it and stays as it was.
struct Plane {};
/// X, Y and Z from the centre of the Earth in metres.
struct Geocentric {};
/// X, to the east, and Y, to the north, as tables lie in the plane of a system: in its own unit and
/// sign, whatever the order of its axes.
struct TablePlane {};

/// Points in one of the spaces above: a span of memory that somebody else owns, at no cost.
template <typename Space, typename Point = TShellPoint>
class Points {
 public:
  /// Says that these points lie in the space.
  explicit Points(std::span<Point> points) : points_(points) {}
  /// The same of one point.
  explicit Points(Point* point) : points_(point, 1) {}
  /// Points that may be changed serve where they are only read.
  operator Points<Space, const Point>() const requires(!std::is_const_v<Point>) {
    return Points<Space, const Point>(points_);
  }

  /// The same memory in the space to which a computation in place has brought it.
  template <typename Other>
  [[nodiscard]] Points<Other, Point> As() const {
    return Points<Other, Point>(points_);
  }
  /// The memory without a space.
  [[nodiscard]] std::span<Point> Raw() const { return points_; }
  /// `count` points from index `first` on, all of which must be there.
  [[nodiscard]] Points Part(std::size_t first, std::size_t count) const {
    return Points(points_.subspan(first, count));
  }

  [[nodiscard]] std::size_t size() const { return points_.size(); }
  [[nodiscard]] bool empty() const { return points_.empty(); }
  [[nodiscard]] Point& operator[](std::size_t i) const { return points_[i]; }
  [[nodiscard]] auto begin() const { return points_.begin(); }
  [[nodiscard]] auto end() const { return points_.end(); }

 private:
  std::span<Point> points_;
};

/// Points that are only read.
template <typename Space>
using ConstPoints = Points<Space, const TShellPoint>;

}  // namespace QvRefSystem
