// Points a second through our systems, each beside the pipeline that PROJ runs for the same work.
#include <benchmark/benchmark.h>
#include <proj.h>

#include <random>
#include <vector>

#include "tests/platform/geocore/shell_systems.h"

namespace {

using QvRefSystem::SystemModel;
using QvRefSystem::TShellPoint;
using namespace refframe_tests;

constexpr int kPoints = 100'000;

// Latitude, longitude and height about the zone of 15 degrees east.
std::vector<TShellPoint> Places() {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> latitude(36, 70);
  std::uniform_real_distribution<double> longitude(12, 18);
  std::vector<TShellPoint> places(kPoints);
  for (TShellPoint& place : places)
    place = {latitude(random), longitude(random), 100};
  return places;
}

SystemModel Translated() {
  SystemModel system = Wgs84();
  SetShift(&system, 1, {"-87", "-98", "-121"});
  system.datum->ellipsoid.a = "6378388";
  system.datum->ellipsoid.f = 1 / 297.0;
  return system;
}

SystemModel Turned() {
  SystemModel system = Translated();
  auto& shift = system.datum->shift;
  shift.type = 3;
  shift.rx = "0.1";
  shift.ry = "-0.2";
  shift.rz = "0.3";
  shift.s = "1.5";
  return system;
}

struct Work {
  SystemModel (*from)();
  SystemModel (*to)();
  const char* pipeline;
};

#define TO_RADIANS \
  "+proj=pipeline +step +proj=axisswap +order=2,1 +step +proj=unitconvert +xy_in=deg +xy_out=rad "
#define TO_DEGREES " +step +proj=unitconvert +xy_in=rad +xy_out=deg +step +proj=axisswap +order=2,1"

SystemModel Zone33() {
  return Utm(Wgs84(), "15");
}

constexpr Work kUtm{Wgs84, Zone33, TO_RADIANS "+step +proj=utm +zone=33 +ellps=WGS84"};
constexpr Work kTranslation{
    Translated, Wgs84,
    TO_RADIANS
    "+step +proj=cart +ellps=intl +step +proj=helmert +x=-87 +y=-98 +z=-121 "
    "+step +inv +proj=cart +ellps=WGS84" TO_DEGREES};
constexpr Work kSevenParameters{Turned, Wgs84,
                                TO_RADIANS
                                "+step +proj=cart +ellps=intl +step +proj=helmert +x=-87 +y=-98 "
                                "+z=-121 +rx=0.1 +ry=-0.2 +rz=0.3 +s=1.5 "
                                "+convention=coordinate_frame +step +inv +proj=cart "
                                "+ellps=WGS84" TO_DEGREES};

void CountPoints(benchmark::State& state) {
  state.counters["points"] = benchmark::Counter(static_cast<double>(state.iterations()) * kPoints,
                                                benchmark::Counter::kIsRate);
}

void Ours(benchmark::State& state, const Work& work) {
  const auto from = Shell(work.from());
  const auto to = Shell(work.to());
  const std::vector<TShellPoint> places = Places();
  std::vector<TShellPoint> points;
  for (auto _ : state) {
    points = places;
    if (from.Transform(to, points) != 0) state.SkipWithError("points failed");
    benchmark::DoNotOptimize(points.data());
  }
  CountPoints(state);
}

void Proj(benchmark::State& state, const Work& work) {
  PJ* pipeline = proj_create(nullptr, work.pipeline);
  const std::vector<TShellPoint> places = Places();
  std::vector<TShellPoint> points;
  constexpr std::size_t kStride = sizeof(TShellPoint);
  for (auto _ : state) {
    points = places;
    proj_trans_generic(pipeline, PJ_FWD, &points[0].First, kStride, kPoints, &points[0].Second,
                       kStride, kPoints, &points[0].Third, kStride, kPoints, nullptr, 0, 0);
    benchmark::DoNotOptimize(points.data());
  }
  CountPoints(state);
  proj_destroy(pipeline);
}

BENCHMARK_CAPTURE(Ours, utm, kUtm);
BENCHMARK_CAPTURE(Proj, utm, kUtm);
BENCHMARK_CAPTURE(Ours, translation, kTranslation);
BENCHMARK_CAPTURE(Proj, translation, kTranslation);
BENCHMARK_CAPTURE(Ours, seven_parameters, kSevenParameters);
BENCHMARK_CAPTURE(Proj, seven_parameters, kSevenParameters);

}  // namespace
