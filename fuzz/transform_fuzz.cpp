#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/geocore/point_lines.h"
#include "tests/platform/geocore/shell_systems.h"

namespace {

using namespace QvRefSystem;
using namespace refframe_tests;

void Require(bool holds) {
  if (!holds) std::abort();
}

// A geoid over a part of the plane: outside, the nearest edge counts.
std::shared_ptr<const THeightTable> Geoid() {
  auto table = std::make_shared<THeightTable>();
  table->Resize(3, 3, 10, 10, 0, 40);
  for (std::uint32_t i = 0; i < 3; ++i) {
    for (std::uint32_t j = 0; j < 3; ++j)
      table->Set(i, j, 40.0 + 3 * i - j);
  }
  return table;
}

SystemModel Shifted() {
  SystemModel system = Wgs84();
  SetShift(&system, 2, {"598.1", "73.7", "418.2", "0.202", "0.045", "-2.455", "6.7"});
  return system;
}

SystemModel WithTable(SystemModel system) {
  system.heights.emplace();
  system.heights->kind = QvRefSystem::HeightKind::kTable;
  return system;
}

SystemModel PolarStereographic() {
  return Projected(Wgs84(), 9810,
                   {{8801, "90"}, {8802, "0"}, {8805, "0.994"}, {8806, "2e6"}, {8807, "2e6"}});
}

// One system of each kind that meets others, over different datums.
std::array<TShellReferenceSystem, 6> MakeSystems() {
  return {Shell(Wgs84()),
          Shell(WithTable(Shifted()), Geoid()),
          Shell(Geocentric()),
          Shell(Utm(Shifted(), "9")),
          Shell(PolarStereographic()),
          Shell(Topocentric(Wgs84(), {"55", "5", "200"}, "30"))};
}

bool HasFailedAsAWhole(const TShellPoint& point) {
  return IsFailed(point.First) && IsFailed(point.Second) && IsFailed(point.Third);
}

}  // namespace

/// The first byte picks two systems, the rest is lines of points. A line is refused with a reason,
/// or its point comes out whole, or it fails whole, again with a reason; what comes out can be
/// written and read back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::array<TShellReferenceSystem, 6> systems = MakeSystems();
  if (size == 0) return 0;
  const TShellReferenceSystem& from = systems[data[0] % systems.size()];
  const TShellReferenceSystem& to = systems[data[0] / systems.size() % systems.size()];
  std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
  std::vector<TShellPoint> points;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size() - 1) + 1;
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end);
    if (IsPassedOverLine(line)) continue;
    TShellPoint point;
    bool hasThird = false;
    std::string reason;
    if (!ReadPointLine(line, &point, &hasThird, &reason)) {
      Require(!reason.empty());
    } else {
      Require(IsFinite(point));
      points.push_back(point);
    }
  }
  const std::vector<TShellPoint> origins = points;
  std::size_t failed = from.Transform(to, points);
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (HasFailedAsAWhole(points[i])) {
      Require(failed-- != 0 && !from.ExplainFailure(to, origins[i]).empty());
      continue;
    }
    Require(IsFinite(points[i]));
    std::string line;
    AppendPoint(to, points[i], true, &line);
    TShellPoint again;
    bool hasThird = false;
    std::string reason;
    Require(ReadPointLine(line, &again, &hasThird, &reason) && hasThird);
    const double reach = std::abs(points[i].First) + std::abs(points[i].Second);
    Require(std::abs(again.First - points[i].First) <= 1e-6 + 1e-15 * reach);
    Require(std::abs(again.Second - points[i].Second) <= 1e-6 + 1e-15 * reach);
  }
  Require(failed == 0);
  return 0;
}
