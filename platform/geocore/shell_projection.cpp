#include "platform/geocore/shell_projection.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <sstream>

#include "platform/geocore/geodesy_error.h"
#include "platform/geocore/proj_handles.h"
#include "platform/geocore/projection_methods.h"
#include "platform/geocore/projjson.h"
#include "platform/geocore/wgs84.h"
#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

// EPSG coordinate operation parameters.
constexpr int kNaturalLatitude = 8801;
constexpr int kNaturalLongitude = 8802;
constexpr int kScaleFactor = 8805;
constexpr int kFalseEasting = 8806;
constexpr int kFalseNorthing = 8807;
constexpr int kFalseOriginLatitude = 8821;
constexpr int kFalseOriginLongitude = 8822;
constexpr int kFirstParallel = 8823;
constexpr int kSecondParallel = 8824;
constexpr int kFalseOriginEasting = 8826;
constexpr int kFalseOriginNorthing = 8827;
constexpr int kStandardParallel = 8832;
constexpr int kOriginLongitude = 8833;

/// The numbers of a projection in radians, metres and unity.
class Parameters {
 public:
  Parameters(const ProjectionModel& projection, const EllipsoidShape& shape)
      : projection_(projection), shape_(shape) {}

  [[nodiscard]] double operator[](int code) const {
    return ProjectionParameterValue(projection_, code);
  }
  [[nodiscard]] const EllipsoidShape& Shape() const { return shape_; }

 private:
  const ProjectionModel& projection_;
  const EllipsoidShape& shape_;
};

/// The text of a PROJ operation as it grows.
class OperationText {
 public:
  explicit OperationText(const char* name) : text_(std::string("+proj=") + name) {}
  // Metres or unity.
  OperationText& Number(const char* key, double value) {
    // PROJ's reader of angles knows no exponents.
    char digits[400];
    const int size = std::snprintf(digits, sizeof digits, "%.17f", value);
    text_ += std::string(" +") + key + "=" + std::string(digits, static_cast<std::size_t>(size));
    return *this;
  }
  OperationText& Radians(const char* key, double value) {
    Number(key, value);
    text_ += "r";
    return *this;
  }
  [[nodiscard]] operator std::string() const { return text_; }

 private:
  std::string text_;
};

// Isometric latitude as a factor: exp of minus it.
double IsometricFactor(double latitude, const EllipsoidShape& shape) {
  const double e = std::sqrt(shape.EccentricitySquared());
  const double sine = e * std::sin(latitude);
  return std::tan(std::numbers::pi / 4 - latitude / 2) / std::pow((1 - sine) / (1 + sine), e / 2);
}

// Methods that PROJ 9.1 does not compute, or computes otherwise than the registry defines them.

std::string SouthTransverseMercator(const Parameters& p) {
  return OperationText("tmerc")
      .Radians("lat_0", p[kNaturalLatitude])
      .Radians("lon_0", p[kNaturalLongitude])
      .Number("k_0", p[kScaleFactor])
      .Number("x_0", -p[kFalseEasting])
      .Number("y_0", -p[kFalseNorthing]);
}

std::string WestLambertConic(const Parameters& p) {
  return OperationText("lcc")
      .Radians("lat_1", p[kNaturalLatitude])
      .Radians("lat_0", p[kNaturalLatitude])
      .Radians("lon_0", p[kNaturalLongitude])
      .Number("k_0", p[kScaleFactor])
      .Number("x_0", -p[kFalseEasting])
      .Number("y_0", p[kFalseNorthing]);
}

std::string NearConformalLambert(const Parameters& p) {
  return OperationText("lcca")
      .Radians("lat_0", p[kNaturalLatitude])
      .Radians("lon_0", p[kNaturalLongitude])
      .Number("k_0", p[kScaleFactor])
      .Number("x_0", p[kFalseEasting])
      .Number("y_0", p[kFalseNorthing]);
}

std::string SouthBonne(const Parameters& p) {
  return OperationText("bonne")
      .Radians("lat_1", p[kNaturalLatitude])
      .Radians("lon_0", p[kNaturalLongitude])
      .Number("x_0", -p[kFalseEasting])
      .Number("y_0", -p[kFalseNorthing]);
}

// The figures of the cone are the method's own: Guidance Note 7-2, Krovak.
std::string SouthWestKrovak(const Parameters& p) {
  constexpr int kCentreLatitude = 8811;
  constexpr int kConeColatitude = 1036;
  constexpr int kPseudoParallelScale = 8819;
  return OperationText("krovak")
      .Radians("lat_0", p[kCentreLatitude])
      .Radians("lon_0", p[kOriginLongitude])
      .Radians("alpha", p[kConeColatitude])
      .Number("k_0", p[kPseudoParallelScale])
      .Number("x_0", -p[kFalseEasting])
      .Number("y_0", -p[kFalseNorthing]);
}

// Variant C counts the northing from the standard parallel, variant B from the pole; between them
// lies the radius of that parallel.
std::string PolarStereographicC(const Parameters& p) {
  const double parallel = p[kStandardParallel];
  const bool north = parallel > 0;
  const double radius = p.Shape().a * p.Shape().ParallelRatio(parallel);
  return OperationText("stere")
      .Radians("lat_0", north ? std::numbers::pi / 2 : -std::numbers::pi / 2)
      .Radians("lat_ts", parallel)
      .Radians("lon_0", p[kOriginLongitude])
      .Number("x_0", p[kFalseOriginEasting])
      .Number("y_0", p[kFalseOriginNorthing] + (north ? radius : -radius));
}

// The Belgian cone is turned by 29.2985 arc-seconds about its apex (Guidance Note 7-2), of which
// PROJ knows nothing. The same turn is one of the longitude divided by the constant of the cone.
std::string BelgianLambertConic(const Parameters& p) {
  constexpr double kTurn = 29.2985 / 3600 * std::numbers::pi / 180;
  const double first = p[kFirstParallel];
  const double second = p[kSecondParallel];
  const EllipsoidShape& shape = p.Shape();
  const double cone =
      std::abs(first - second) < 1e-10
          ? std::sin(first)
          : (std::log(shape.ParallelRatio(first)) - std::log(shape.ParallelRatio(second))) /
                (std::log(IsometricFactor(first, shape)) -
                 std::log(IsometricFactor(second, shape)));
  return OperationText("lcc")
      .Radians("lat_0", p[kFalseOriginLatitude])
      .Radians("lon_0", p[kFalseOriginLongitude] + kTurn / cone)
      .Radians("lat_1", first)
      .Radians("lat_2", second)
      .Number("x_0", p[kFalseOriginEasting])
      .Number("y_0", p[kFalseOriginNorthing]);
}

// The spherical form on an ellipsoid takes the authalic sphere (EPSG method 1027); PROJ 9.1 takes
// the ellipsoidal form.
std::string SphericalLambertAzimuthal(const Parameters& p) {
  const std::string text = OperationText("laea")
                               .Radians("lat_0", p[kNaturalLatitude])
                               .Radians("lon_0", p[kNaturalLongitude])
                               .Number("x_0", p[kFalseEasting])
                               .Number("y_0", p[kFalseNorthing]);
  return text + " +R_A";
}

struct OwnMethod {
  /// EPSG method code.
  int method;
  std::string (*write)(const Parameters&);
};

constexpr OwnMethod kOwnMethods[] = {
    {1027, SphericalLambertAzimuthal},
    {9803, BelgianLambertConic},
    {9808, SouthTransverseMercator},
    {9817, NearConformalLambert},
    {9819, SouthWestKrovak},
    {9826, WestLambertConic},
    {9828, SouthBonne},
    {9830, PolarStereographicC},
};

// Of these the formulas are not at hand: PROJ 9.1 has none, and its database lacks the coefficients
// of the modified Krovak.
constexpr int kNoComputation[] = {1042, 1043, 9816, 9824};

// Colombia urban, equal earth, Laborde, azimuthal and cylindrical equal area.
constexpr int kRoughInverses[] = {1052, 1078, 9813, 9820, 9835};

// PROJ's own idea of any other method: what it makes of a projected system with plain axes.
std::string AskProj(const ProjectionModel& projection) {
  SystemModel plain;
  plain.kind = SystemKind::kProjected;
  plain.name = "plane";
  plain.primeMeridian.name = "Greenwich";
  plain.primeMeridian.longitude = "0";
  plain.primeMeridian.unit.factorB = std::numbers::pi;
  plain.primeMeridian.unit.factorC = 180;
  // The ellipsoid's own parameters are put in by the caller with all their digits.
  plain.ellipsoid = Wgs84::Ellipsoid();
  plain.projection = projection;
  plain.projection->axisSign[0] = plain.projection->axisSign[1] = 1;
  plain.projection->swap = false;
  std::string json;
  std::string error;
  if (!ModelToProjJson(plain, Dimension::kTwo, &json, &error)) throw GeodesyError(error);
  const ProjObject system = CreateProjObject(json, &error);
  if (!system) throw GeodesyError(error);
  PJ_CONTEXT* context = ThreadProjContext();
  const ProjObject operation(proj_crs_get_coordoperation(context, system.get()));
  const char* text =
      operation ? proj_as_proj_string(context, operation.get(), PJ_PROJ_5, nullptr) : nullptr;
  if (!text) throw GeodesyError("PROJ computes no such projection: " + TakeProjMessage());
  return text;
}

bool StartsWithAny(const std::string& token, std::initializer_list<std::string_view> starts) {
  return std::ranges::any_of(starts,
                             [&](std::string_view start) { return token.starts_with(start); });
}

// The step of a pipeline that projects, without the parameters of axes and ellipsoid.
std::string ProjectingStep(const std::string& pipeline) {
  std::istringstream tokens(pipeline);
  std::string token;
  std::string step;
  bool projects = false;
  while (tokens >> token) {
    if (token == "+step" || token == "+proj=pipeline") {
      if (projects) break;
      step.clear();
      continue;
    }
    if (token.starts_with("+proj=")) {
      projects = !StartsWithAny(token, {"+proj=axisswap", "+proj=unitconvert", "+proj=longlat"});
    }
    if (StartsWithAny(token, {"+axis=", "+ellps=", "+datum=", "+a=", "+b=", "+rf=", "+f=", "+R=",
                              "+pm=", "+units="})) {
      continue;
    }
    step += (step.empty() ? "" : " ") + token;
  }
  if (!projects) throw GeodesyError("PROJ computes no such projection: " + pipeline);
  return step;
}

std::string EllipsoidText(const EllipsoidShape& shape) {
  const std::string a = QvPlatform::DoubleToText(shape.a);
  if (shape.f == 0) return " +R=" + a;
  return " +a=" + a + " +f=" + QvPlatform::DoubleToText(shape.f);
}

}  // namespace

double ProjectionParameterValue(const ProjectionModel& projection, int code) {
  const auto found =
      std::ranges::find(projection.parameters, code, &ProjectionParameterModel::code);
  const ProjectionParameter* known = FindProjectionParameter(code);
  if (found == projection.parameters.end() || !known) {
    throw GeodesyError("the projection " + projection.name + " has no parameter " +
                       std::to_string(code));
  }
  const auto& unit = known->unit == UnitKind::kLinear    ? projection.linearUnit
                     : known->unit == UnitKind::kAngular ? projection.angularUnit
                                                         : projection.scaleUnit;
  if (!unit) {
    throw GeodesyError("the projection " + projection.name + " has no unit for its " +
                       std::string(known->name));
  }
  return NumberOf(found->value, std::string(known->name) + " of " + projection.name) *
         FactorOf(*unit);
}

bool HasRoughInverse(int method) {
  return std::ranges::find(kRoughInverses, method) != std::end(kRoughInverses);
}

std::string ProjectionOperation(const ProjectionModel& projection, const EllipsoidShape& shape) {
  const ProjectionMethod* method = FindProjectionMethod(projection.method);
  if (!method) {
    throw GeodesyError("the method " + std::to_string(projection.method) + " of the projection " +
                       projection.name + " is not known");
  }
  if (std::ranges::find(kNoComputation, projection.method) != std::end(kNoComputation)) {
    throw GeodesyError("the projection method " + std::string(method->name) +
                       " cannot be computed");
  }
  const auto* own = std::ranges::find(kOwnMethods, projection.method, &OwnMethod::method);
  const std::string step = own != std::end(kOwnMethods) ? own->write(Parameters(projection, shape))
                                                        : ProjectingStep(AskProj(projection));
  return step + EllipsoidText(shape);
}

}  // namespace QvRefSystem
