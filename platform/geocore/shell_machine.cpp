#include "platform/geocore/shell_machine.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <unordered_map>
#include <vector>

#include "platform/geocore/geodesy_error.h"
#include "platform/geocore/geoids.h"
#include "platform/geocore/proj_handles.h"
#include "platform/geocore/wgs84.h"

namespace QvRefSystem {
namespace {

/// PROJ's objects of one thread by their definitions.
class Operations {
 public:
  // `make` is called for a definition that is not kept. Throws GeodesyError with PROJ's words if it
  // gives null.
  template <typename Make>
  PJ* Get(const std::string& definition, Make make) {
    ++clock_;
    if (const auto found = kept_.find(definition); found != kept_.end()) {
      found->second.lastUse = clock_;
      return found->second.object.get();
    }
    (void)TakeProjMessage();
    ProjObject object = make(definition);
    if (!object) {
      const std::string reason = TakeProjMessage();
      throw GeodesyError("PROJ cannot compute " + definition +
                         (reason.empty() ? std::string() : ": " + reason));
    }
    if (kept_.size() >= kMost) DropOldest();
    return kept_.emplace(definition, Kept{std::move(object), clock_}).first->second.object.get();
  }

 private:
  struct Kept {
    ProjObject object;
    std::uint64_t lastUse;
  };

  // Enough for any number of systems that are at work at once.
  static constexpr std::size_t kMost = 64;

  void DropOldest() {
    kept_.erase(std::ranges::min_element(kept_, {},
                                         [](const auto& entry) { return entry.second.lastUse; }));
  }

  std::unordered_map<std::string, Kept> kept_;
  std::uint64_t clock_ = 0;
};

Operations& ThreadOperations() {
  // The context is made first, so that it outlives the objects made with it.
  (void)ThreadProjContext();
  thread_local Operations operations;
  return operations;
}

PJ* OperationOf(const std::string& definition) {
  return ThreadOperations().Get(definition, [](const std::string& text) {
    return ProjObject(proj_create(ThreadProjContext(), text.c_str()));
  });
}

// The exact way between two systems of the registry, in longitude, latitude (degrees) and height.
PJ* WayToBase(const SystemGeoid& geoid) {
  const std::string wgs84 = "EPSG:" + std::to_string(Wgs84::kGeographic3D);
  const std::string base = "EPSG:" + std::to_string(geoid.baseSystem);
  return ThreadOperations().Get(wgs84 + ">" + base, [&](const std::string&) -> ProjObject {
    PJ_CONTEXT* context = ThreadProjContext();
    const ProjObject from(proj_create(context, wgs84.c_str()));
    const ProjObject to(proj_create(context, base.c_str()));
    const char* options[] = {"ALLOW_BALLPARK=NO", nullptr};
    if (!from || !to) return nullptr;
    const ProjObject way(
        proj_create_crs_to_crs_from_pj(context, from.get(), to.get(), nullptr, options));
    return ProjObject(way ? proj_normalize_for_visualization(context, way.get()) : nullptr);
  });
}

void FailWhatIsNotFinite(std::span<TShellPoint> points) {
  for (TShellPoint& point : points) {
    if (!IsFinite(point)) point = FailedPoint();
  }
}

// First and Second alone; a projection must not see heights.
void TransformPlane(PJ* operation, PJ_DIRECTION direction, std::span<TShellPoint> points) {
  constexpr std::size_t kStride = sizeof(TShellPoint);
  proj_trans_generic(operation, direction, &points.front().First, kStride, points.size(),
                     &points.front().Second, kStride, points.size(), nullptr, 0, 0, nullptr, 0, 0);
  // What went wrong with a point shows in it; the object must not remember.
  proj_errno_reset(operation);
  FailWhatIsNotFinite(points);
}

void TransformSpace(PJ* operation, std::span<TShellPoint> points) {
  constexpr std::size_t kStride = sizeof(TShellPoint);
  proj_trans_generic(operation, PJ_FWD, &points.front().First, kStride, points.size(),
                     &points.front().Second, kStride, points.size(), &points.front().Third, kStride,
                     points.size(), nullptr, 0, 0);
  proj_errno_reset(operation);
  FailWhatIsNotFinite(points);
}

// One step of Newton's method for the places that project to `planes`. A place whose derivatives
// are not to be had, as at a pole, or that the step takes further away, stays.
void ImprovePlaces(const std::string& operation, ConstPoints<Plane> planes,
                   Points<Geographic> places) {
  constexpr double kStep = 1e-6;  // radians: 6 m on the Earth
  std::vector<TShellPoint> image(places.begin(), places.end());
  std::vector<TShellPoint> east(image);
  std::vector<TShellPoint> poleward(image);
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (IsFailed(places[i])) continue;
    east[i].First += kStep;
    poleward[i].Second -= std::copysign(kStep, places[i].Second);
  }
  for (auto* moved : {&image, &east, &poleward})
    Project(operation, Points<Geographic>(*moved));
  std::vector<TShellPoint> improved(places.begin(), places.end());
  for (std::size_t i = 0; i < places.size(); ++i) {
    const double sense = std::copysign(kStep, -places[i].Second);
    const double xEast = (east[i].First - image[i].First) / kStep;
    const double yEast = (east[i].Second - image[i].Second) / kStep;
    const double xNorth = (poleward[i].First - image[i].First) / sense;
    const double yNorth = (poleward[i].Second - image[i].Second) / sense;
    const double dx = planes[i].First - image[i].First;
    const double dy = planes[i].Second - image[i].Second;
    const double determinant = xEast * yNorth - xNorth * yEast;
    improved[i].First += (dx * yNorth - dy * xNorth) / determinant;
    improved[i].Second += (dy * xEast - dx * yEast) / determinant;
  }
  std::vector<TShellPoint> check(improved);
  Project(operation, Points<Geographic>(check));
  for (std::size_t i = 0; i < places.size(); ++i) {
    const double before =
        std::hypot(planes[i].First - image[i].First, planes[i].Second - image[i].Second);
    const double after =
        std::hypot(planes[i].First - check[i].First, planes[i].Second - check[i].Second);
    if (after < before) places[i] = improved[i];
  }
}

std::string WhyNotMoved(const std::string& operation, const TShellPoint& point,
                        PJ_DIRECTION direction) {
  PJ* object = OperationOf(operation);
  proj_errno_reset(object);
  const PJ_COORD result =
      proj_trans(object, direction, proj_coord(point.First, point.Second, 0, 0));
  const int error = proj_errno(object);
  std::string reason;
  if (error != 0) {
    reason = proj_context_errno_string(ThreadProjContext(), error);
  } else if (!std::isfinite(result.v[0]) || !std::isfinite(result.v[1])) {
    reason = "the projection has no image of it";
  }
  proj_errno_reset(object);
  return reason;
}

}  // namespace

Points<Plane> Project(const std::string& operation, Points<Geographic> points) {
  if (!points.empty()) TransformPlane(OperationOf(operation), PJ_FWD, points.Raw());
  return points.As<Plane>();
}

Points<Geographic> Unproject(const std::string& operation, Points<Plane> points) {
  if (!points.empty()) TransformPlane(OperationOf(operation), PJ_INV, points.Raw());
  return points.As<Geographic>();
}

Points<Geographic> UnprojectExactly(const std::string& operation, Points<Plane> points) {
  constexpr int kSteps = 2;
  const std::vector<TShellPoint> planes(points.begin(), points.end());
  const Points<Geographic> places = Unproject(operation, points);
  for (int step = 0; step < kSteps; ++step)
    ImprovePlaces(operation, ConstPoints<Plane>(planes), places);
  return places;
}

void PutGridUndulations(const SystemGeoid& geoid, Points<Geographic> points) {
  if (points.empty()) return;
  for (TShellPoint& point : points)
    point.Third = IsFailed(point) ? kFailed : 0;
  TransformSpace(OperationOf("+proj=vgridshift +multiplier=1 +grids=" + geoid.grid), points.Raw());
}

void MoveToGeoidBase(const SystemGeoid& geoid, Points<Geographic> points) {
  if (points.empty() || geoid.baseSystem == Wgs84::kGeographic3D) return;
  PJ* way = WayToBase(geoid);
  constexpr double kDegree = 180 / std::numbers::pi;
  for (TShellPoint& point : points) {
    point.First *= kDegree;
    point.Second *= kDegree;
  }
  TransformSpace(way, points.Raw());
  for (TShellPoint& point : points) {
    point.First /= kDegree;
    point.Second /= kDegree;
  }
}

std::string WhyNotProjected(const std::string& operation, const TShellPoint& point) {
  return WhyNotMoved(operation, point, PJ_FWD);
}

std::string WhyNotUnprojected(const std::string& operation, const TShellPoint& point) {
  return WhyNotMoved(operation, point, PJ_INV);
}

}  // namespace QvRefSystem
