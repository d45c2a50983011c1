// Coordinates of the delivered systems: what each of them computes, beside PROJ's own idea of it.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "platform/geocore/definition_from_model.h"
#include "platform/geocore/model_from_tree.h"
#include "platform/geocore/proj_handles.h"
#include "platform/geocore/shell_reference_system.h"
#include "tests/road/delivered_copies.h"
#include "tests/support/helmert_text.h"

namespace refframe_tests {
namespace {

using QvRefSystem::SystemKind;
using QvRefSystem::SystemModel;
using QvRefSystem::TShellPoint;
using QvRefSystem::TShellReferenceSystem;

using ProjPtr = QvRefSystem::ProjObject;

constexpr double kDegree = std::numbers::pi / 180;

/// Latitude and longitude in degrees.
struct Place {
  double latitude;
  double longitude;
};

/// A system of the registry as PROJ has it.
class RegistrySystem {
 public:
  explicit RegistrySystem(int code)
      : system_(proj_create_from_database(nullptr, "EPSG", std::to_string(code).c_str(),
                                          PJ_CATEGORY_CRS, 0, nullptr)),
        base_(proj_crs_get_geodetic_crs(nullptr, system_.get())) {}

  // Five by five places within the area of use, off its edge.
  [[nodiscard]] std::vector<Place> Places() const {
    double west = 0;
    double south = 0;
    double east = 0;
    double north = 0;
    EXPECT_TRUE(
        proj_get_area_of_use(nullptr, system_.get(), &west, &south, &east, &north, nullptr));
    if (east < west) east += 360;
    std::vector<Place> places;
    for (const double i : {0.03, 0.27, 0.5, 0.71, 0.97}) {
      for (const double j : {0.03, 0.27, 0.5, 0.71, 0.97}) {
        places.push_back({south + i * (north - south), west + j * (east - west)});
      }
    }
    return places;
  }

  // Degrees from the system's own prime meridian to Greenwich.
  [[nodiscard]] double PrimeMeridian() const {
    const ProjPtr meridian(proj_get_prime_meridian(nullptr, base_.get()));
    double longitude = 0;
    double factor = 0;
    proj_prime_meridian_get_parameters(nullptr, meridian.get(), &longitude, &factor, nullptr);
    return longitude * factor / kDegree;
  }

  // The plane's own coordinates of places from the own prime meridian; empty if PROJ has none.
  [[nodiscard]] std::vector<TShellPoint> Project(const std::vector<Place>& places) const {
    const ProjPtr way(
        proj_create_crs_to_crs_from_pj(nullptr, base_.get(), system_.get(), nullptr, nullptr));
    // Where PROJ has no computation of a method it fails on every point, or makes no operation.
    if (!way) return {};
    const ProjPtr axes(proj_crs_get_coordinate_system(nullptr, base_.get()));
    const char* direction = nullptr;
    double factor = 0;
    proj_cs_get_axis_info(nullptr, axes.get(), 0, nullptr, nullptr, &direction, &factor, nullptr,
                          nullptr, nullptr);
    const bool latitudeFirst = std::string_view(direction) == "north";
    std::vector<TShellPoint> points;
    for (const auto& [latitude, longitude] : places) {
      const double first = (latitudeFirst ? latitude : longitude) * kDegree / factor;
      const double second = (latitudeFirst ? longitude : latitude) * kDegree / factor;
      const PJ_COORD result = proj_trans(way.get(), PJ_FWD, proj_coord(first, second, 0, 0));
      // Where it has no computation of the method it fails with every point.
      if (result.v[0] == HUGE_VAL) return {};
      points.push_back({result.v[0], result.v[1], 0});
    }
    return points;
  }

  // Metres along X, Y, Z of the frame whose X axis is on the own prime meridian.
  [[nodiscard]] std::vector<TShellPoint> Cartesian(const std::vector<Place>& places,
                                                   double height) const {
    const ProjPtr ellipsoid(proj_get_ellipsoid(nullptr, base_.get()));
    double a = 0;
    double b = 0;
    proj_ellipsoid_get_parameters(nullptr, ellipsoid.get(), &a, &b, nullptr, nullptr);
    char text[200];
    std::snprintf(text, sizeof text, "+proj=cart +a=%.17g +b=%.17g", a, b);
    const ProjPtr cart(proj_create(nullptr, text));
    std::vector<TShellPoint> points;
    for (const auto& [latitude, longitude] : places) {
      const PJ_COORD result = proj_trans(
          cart.get(), PJ_FWD, proj_coord(longitude * kDegree, latitude * kDegree, height, 0));
      points.push_back({result.v[0], result.v[1], result.v[2]});
    }
    return points;
  }

 private:
  ProjPtr system_;
  ProjPtr base_;
};

// A geodetic system in degrees and metres on the base of another one.
SystemModel BaseOf(const SystemModel& model, SystemKind kind = SystemKind::kGeodetic) {
  SystemModel base;
  base.name = "base";
  base.kind = kind;
  base.datum = model.datum;
  base.ellipsoid = model.ellipsoid;
  base.primeMeridian = model.primeMeridian;
  base.angularUnit.factorB = std::numbers::pi;
  base.angularUnit.factorC = 180;
  return base;
}

TShellReferenceSystem Shell(SystemModel model) {
  return TShellReferenceSystem(QvRefSystem::DefinitionFromModel(std::move(model)));
}

// Methods that PROJ 9.1 computes otherwise than the registry defines them: the Belgian cone without
// its turn, the spherical azimuthal on the ellipsoid, the ellipsoidal cylindrical on a sphere. They
// are held to the registry's examples elsewhere.
const std::set<int> kOtherThanProj{1027, 1028, 9803};
// Methods of which PROJ 9.1 has no computation under their codes.
const std::set<int> kWithoutProj{9817, 9826, 9828, 9830};

class TransformDelivered : public DeliveredCopies {
 protected:
  TransformDelivered() { data_ = OpenCopy(false); }

  // Calls `visit(name, tree, model, codes)` for each system.
  template <typename Visitor>
  void ForEverySystem(Visitor visit) {
    const std::map<int, std::vector<int>> codes = SystemCodes();
    ForEveryRecord(DescriptorOf(TObjectType::kReferenceSystem), [&](TQvRfDataProcessor& processor) {
      TStringTree tree;
      SystemModel model;
      std::string error;
      ASSERT_TRUE(processor.WriteToTree(&tree, 0, 0)) << NameOf(processor);
      ASSERT_TRUE(ModelFromTree(&tree, &model, &error)) << error;
      visit(NameOf(processor), tree, model, codes.at(processor.GetCurrentKey()));
    });
  }
};

// Metres. All but the systems of Namibia agree within a micrometre: PROJ has that ellipsoid's axis
// to the millimetre alone, as its well-known name tells it.
constexpr double kPlaneLimit = 2e-4;

double Distance(const TShellPoint& a, const TShellPoint& b) {
  return std::max(
      {std::abs(a.First - b.First), std::abs(a.Second - b.Second), std::abs(a.Third - b.Third)});
}

constexpr double kHeight = 123.5;

void ExpectThereAndBack(const std::string& name, const TShellReferenceSystem& base,
                        const TShellReferenceSystem& system, const std::vector<Place>& places,
                        std::vector<TShellPoint>* there) {
  // Degrees; every method keeps to it.
  constexpr double kLimit = 1e-9;
  std::vector<TShellPoint> points;
  for (const Place& place : places)
    points.push_back({place.latitude, place.longitude, kHeight});
  const std::vector<TShellPoint> origin = points;
  ASSERT_EQ(base.Transform(system, points), 0u) << name;
  *there = points;
  ASSERT_EQ(system.Transform(base, points), 0u) << name;
  for (std::size_t i = 0; i < points.size(); ++i) {
    EXPECT_NEAR(points[i].First, origin[i].First, kLimit) << name;
    // Longitudes near a pole mean less ground.
    const double around = std::remainder(points[i].Second - origin[i].Second, 360) *
                          std::cos(origin[i].First * kDegree);
    EXPECT_NEAR(around, 0, kLimit) << name << ", " << origin[i].First << " " << origin[i].Second;
    EXPECT_NEAR(points[i].Third, kHeight, 1e-6) << name;
  }
}

TEST_F(TransformDelivered, EverySystemComputesAsProjDoesAndBack) {
  std::map<int, int> compared;  // by kind
  std::vector<std::string> refused;
  ForEverySystem([&](const std::string& name, TStringTree& tree, const SystemModel& model,
                     const std::vector<int>& codes) {
    std::string error;
    const auto system = QvRefSystem::CreateShellReferenceSystem(&tree, nullptr, &error);
    if (!system) {
      EXPECT_NE(error.find("cannot be computed"), std::string::npos) << name << ": " << error;
      refused.push_back(name);
      return;
    }
    const RegistrySystem registry(codes.front());
    std::vector<Place> places = registry.Places();
    for (Place& place : places)
      place.longitude -= registry.PrimeMeridian();
    const TShellReferenceSystem base = Shell(BaseOf(model));
    std::vector<TShellPoint> points;
    const int method = model.projection ? model.projection->method : 0;
    ExpectThereAndBack(name, base, *system, places, &points);
    if (points.empty() || kOtherThanProj.contains(method)) return;
    std::vector<TShellPoint> expected;
    if (method != 0) {
      expected = registry.Project(places);
      EXPECT_EQ(expected.empty(), kWithoutProj.contains(method)) << name;
      for (TShellPoint& point : points)
        point.Third = 0;
    } else {
      // Systems of latitude and longitude are compared where they lead: in space.
      expected = registry.Cartesian(places, kHeight);
      if (model.kind == SystemKind::kGeodetic) {
        EXPECT_EQ(system->Transform(Shell(BaseOf(model, SystemKind::kGeocentric)), points), 0u);
      }
    }
    const double metres = model.kind == SystemKind::kGeodetic
                              ? 1
                              : model.linearUnit.factorB / model.linearUnit.factorC;
    for (std::size_t i = 0; i < expected.size(); ++i) {
      EXPECT_LT(Distance(points[i], expected[i]) * metres, kPlaneLimit)
          << name << ", method " << method;
    }
    if (!expected.empty()) ++compared[static_cast<int>(model.kind)];
  });
  EXPECT_EQ(refused.size(), 7u) << testing::PrintToString(refused);
  // Of the registry that PROJ 9.1 comes with; a later one has more.
  EXPECT_GE(compared[5], 5100);
  EXPECT_GE(compared[4], 545);
  EXPECT_GE(compared[3], 194);
}

// PROJ's text of an ellipsoid, from the record alone.
std::string EllipsoidText(const QvRefSystem::EllipsoidModel& ellipsoid) {
  const double metres = ellipsoid.unit.factorB / ellipsoid.unit.factorC;
  const double a = std::stod(ellipsoid.a) * metres;
  char text[100];
  if (ellipsoid.useF) {
    std::snprintf(text, sizeof text, " +a=%.17g +f=%.17g", a, ellipsoid.f);
  } else {
    const double b = ellipsoid.sphere ? a : std::stod(ellipsoid.b) * metres;
    std::snprintf(text, sizeof text, " +a=%.17g +b=%.17g", a, b);
  }
  return text;
}

// The way of a datum to WGS 84 in PROJ's words, from the record alone.
ProjPtr WayToWgs84(const QvRefSystem::DatumModel& datum) {
  const std::string way = "+proj=pipeline +step +proj=cart" + EllipsoidText(datum.ellipsoid) +
                          " +step " + HelmertText(datum.shift) +
                          " +step +inv +proj=cart +ellps=WGS84";
  return ProjPtr(proj_create(nullptr, way.c_str()));
}

TEST_F(TransformDelivered, EveryDatumReachesWgs84ByItsOwnShift) {
  SystemModel plain;
  plain.ellipsoid.emplace();
  plain.ellipsoid->a = "6378137";
  plain.ellipsoid->useF = true;
  plain.ellipsoid->f = 1 / 298.257223563;
  plain.primeMeridian.longitude = "0";
  const TShellReferenceSystem wgs84 = Shell(BaseOf(plain));
  std::set<std::string> seen;
  std::map<int, int> ofType;
  ForEverySystem([&](const std::string& name, TStringTree& /*tree*/, SystemModel model,
                     const std::vector<int>& /*codes*/) {
    if (!model.datum || !seen.insert(model.datum->name).second) return;
    ++ofType[model.datum->shift.type];
    const ProjPtr way = WayToWgs84(*model.datum);
    ASSERT_TRUE(way) << name;
    // Prime meridians are another matter.
    model.primeMeridian = plain.primeMeridian;
    const TShellReferenceSystem system = Shell(BaseOf(model));
    for (const Place& place : {Place{52.5, 13.25}, Place{-33, -70.5}, Place{71, 179.5}}) {
      TShellPoint point{place.latitude, place.longitude, 250};
      ASSERT_EQ(system.Transform(wgs84, {&point, 1}), 0u) << name;
      const PJ_COORD expected =
          proj_trans(way.get(), PJ_FWD,
                     proj_coord(place.longitude * kDegree, place.latitude * kDegree, 250, 0));
      EXPECT_NEAR(point.First, expected.v[1] / kDegree, 1e-11) << name;
      EXPECT_NEAR(std::remainder(point.Second - expected.v[0] / kDegree, 360), 0, 1e-11) << name;
      EXPECT_NEAR(point.Third, expected.v[2], 1e-6) << name;
    }
  });
  const auto& datums = data_->DataSet(DescriptorOf(TObjectType::kDatum).table);
  EXPECT_EQ(static_cast<int>(seen.size()), datums.RecordCount());
  EXPECT_GE(ofType[1], 200);
  EXPECT_GE(ofType[2], 50);
  EXPECT_GE(ofType[3], 20);
}

}  // namespace
}  // namespace refframe_tests
