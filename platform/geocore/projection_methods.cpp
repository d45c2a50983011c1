#include "platform/geocore/projection_methods.h"

#include <algorithm>

namespace QvRefSystem {
namespace {

// Codes, names, order and units of the parameters: EPSG Dataset v10.076, coordinate operation
// parameters and their usage by method. The units are those of a parameter's kind; a parameter in
// sexagesimal notation is angular.
constexpr ProjectionParameter kParameters[] = {
    {1036, "Co-latitude of cone axis", UnitKind::kAngular},
    {1038, "Ellipsoid scaling factor", UnitKind::kScale},
    {1039, "Projection plane origin height", UnitKind::kLinear},
    {8801, "Latitude of natural origin", UnitKind::kAngular},
    {8802, "Longitude of natural origin", UnitKind::kAngular},
    {8805, "Scale factor at natural origin", UnitKind::kScale},
    {8806, "False easting", UnitKind::kLinear},
    {8807, "False northing", UnitKind::kLinear},
    {8811, "Latitude of projection centre", UnitKind::kAngular},
    {8812, "Longitude of projection centre", UnitKind::kAngular},
    {8813, "Azimuth of initial line", UnitKind::kAngular},
    {8814, "Angle from Rectified to Skew Grid", UnitKind::kAngular},
    {8815, "Scale factor on initial line", UnitKind::kScale},
    {8816, "Easting at projection centre", UnitKind::kLinear},
    {8817, "Northing at projection centre", UnitKind::kLinear},
    {8818, "Latitude of pseudo standard parallel", UnitKind::kAngular},
    {8819, "Scale factor on pseudo standard parallel", UnitKind::kScale},
    {8821, "Latitude of false origin", UnitKind::kAngular},
    {8822, "Longitude of false origin", UnitKind::kAngular},
    {8823, "Latitude of 1st standard parallel", UnitKind::kAngular},
    {8824, "Latitude of 2nd standard parallel", UnitKind::kAngular},
    {8826, "Easting at false origin", UnitKind::kLinear},
    {8827, "Northing at false origin", UnitKind::kLinear},
    {8830, "Initial longitude", UnitKind::kAngular},
    {8831, "Zone width", UnitKind::kAngular},
    {8832, "Latitude of standard parallel", UnitKind::kAngular},
    {8833, "Longitude of origin", UnitKind::kAngular},
};

constexpr int kNaturalOrigin[] = {8801, 8802, 8806, 8807};
constexpr int kNaturalOriginScaled[] = {8801, 8802, 8805, 8806, 8807};
constexpr int kStandardParallel[] = {8823, 8802, 8806, 8807};
constexpr int kTwoParallels[] = {8821, 8822, 8823, 8824, 8826, 8827};
constexpr int kTwoParallelsScaled[] = {8821, 8822, 8823, 8824, 8826, 8827, 1038};
constexpr int kObliqueCone[] = {8811, 8833, 1036, 8818, 8819, 8806, 8807};
constexpr int kPlaneHeight[] = {8801, 8802, 8806, 8807, 1039};
constexpr int kMeridian[] = {8802, 8806, 8807};
constexpr int kObliqueNaturalOrigin[] = {8811, 8812, 8813, 8814, 8815, 8806, 8807};
constexpr int kObliqueCentre[] = {8811, 8812, 8813, 8814, 8815, 8816, 8817};
constexpr int kLaborde[] = {8811, 8812, 8813, 8815, 8806, 8807};
constexpr int kFalseOrigin[] = {8821, 8822, 8826, 8827};
constexpr int kZones[] = {8801, 8830, 8831, 8805, 8806, 8807};
constexpr int kPolarParallel[] = {8832, 8833, 8806, 8807};
constexpr int kPolarFalseOrigin[] = {8832, 8833, 8826, 8827};

constexpr int kNone = kNoExchangeCode;

// The methods of live EPSG projected systems. Codes and names: EPSG Dataset v10.076. GeoTIFF
// numbers: OGC GeoTIFF 1.1, ProjCoordTransGeoKey (9815: the value in common use for the variant
// with offsets at the centre). MIF/MID numbers: MapInfo Interchange File, CoordSys clause,
// projection numbers; 29 is the Lambert azimuthal of any aspect. The pseudo Mercator has none of
// either: Mercator's numbers would put its systems kilometres off on an ellipsoid.
constexpr ProjectionMethod kMethods[] = {
    {1024, "Popular Visualisation Pseudo Mercator", kNaturalOrigin, kNone, kNone},
    {1027, "Lambert Azimuthal Equal Area (Spherical)", kNaturalOrigin, 10, kNone},
    {1028, "Equidistant Cylindrical", kStandardParallel, 17, 33},
    {1041, "Krovak (North Orientated)", kObliqueCone, kNone, kNone},
    {1042, "Krovak Modified", kObliqueCone, kNone, kNone},
    {1043, "Krovak Modified (North Orientated)", kObliqueCone, kNone, kNone},
    {1051, "Lambert Conic Conformal (2SP Michigan)", kTwoParallelsScaled, kNone, kNone},
    {1052, "Colombia Urban", kPlaneHeight, kNone, kNone},
    {1078, "Equal Earth", kMeridian, kNone, kNone},
    {1111, "Transverse Mercator 3D", kNaturalOriginScaled, 1, kNone},
    {9801, "Lambert Conic Conformal (1SP)", kNaturalOriginScaled, 9, 3},
    {9802, "Lambert Conic Conformal (2SP)", kTwoParallels, 8, 3},
    {9803, "Lambert Conic Conformal (2SP Belgium)", kTwoParallels, 8, 19},
    {9804, "Mercator (variant A)", kNaturalOriginScaled, 7, 10},
    {9805, "Mercator (variant B)", kStandardParallel, 7, 26},
    {9806, "Cassini-Soldner", kNaturalOrigin, 18, 30},
    {9807, "Transverse Mercator", kNaturalOriginScaled, 1, 8},
    {9808, "Transverse Mercator (South Orientated)", kNaturalOriginScaled, 27, kNone},
    {9809, "Oblique Stereographic", kNaturalOriginScaled, 16, 31},
    {9810, "Polar Stereographic (variant A)", kNaturalOriginScaled, 15, 20},
    {9811, "New Zealand Map Grid", kNaturalOrigin, 26, 18},
    {9812, "Hotine Oblique Mercator (variant A)", kObliqueNaturalOrigin, 3, 7},
    {9813, "Laborde Oblique Mercator", kLaborde, 4, kNone},
    {9815, "Hotine Oblique Mercator (variant B)", kObliqueCentre, 9815, 7},
    {9816, "Tunisia Mining Grid", kFalseOrigin, kNone, kNone},
    {9817, "Lambert Conic Near-Conformal", kNaturalOriginScaled, kNone, kNone},
    {9818, "American Polyconic", kNaturalOrigin, 22, 27},
    {9819, "Krovak", kObliqueCone, kNone, 32},
    {9820, "Lambert Azimuthal Equal Area", kNaturalOrigin, 10, 29},
    {9822, "Albers Equal Area", kTwoParallels, 11, 9},
    {9824, "Transverse Mercator Zoned Grid System", kZones, kNone, kNone},
    {9826, "Lambert Conic Conformal (West Orientated)", kNaturalOriginScaled, kNone, kNone},
    {9828, "Bonne (South Orientated)", kNaturalOrigin, kNone, kNone},
    {9829, "Polar Stereographic (variant B)", kPolarParallel, 15, kNone},
    {9830, "Polar Stereographic (variant C)", kPolarFalseOrigin, kNone, kNone},
    {9831, "Guam Projection", kNaturalOrigin, kNone, kNone},
    {9832, "Modified Azimuthal Equidistant", kNaturalOrigin, kNone, kNone},
    {9833, "Hyperbolic Cassini-Soldner", kNaturalOrigin, kNone, kNone},
    {9835, "Lambert Cylindrical Equal Area", kStandardParallel, 28, 2},
};

template <typename Row, std::size_t n>
constexpr const Row* FindByCode(const Row (&rows)[n], int code) {
  const Row* found = std::ranges::lower_bound(rows, code, {}, &Row::code);
  return found == std::end(rows) || found->code != code ? nullptr : found;
}

constexpr bool ParametersAreKnown() {
  return std::ranges::all_of(kMethods, [](const ProjectionMethod& method) {
    return std::ranges::all_of(method.parameters,
                               [](int code) { return FindByCode(kParameters, code) != nullptr; });
  });
}

static_assert(std::ranges::is_sorted(kParameters, {}, &ProjectionParameter::code));
static_assert(std::ranges::is_sorted(kMethods, {}, &ProjectionMethod::code));
static_assert(ParametersAreKnown());

}  // namespace

std::span<const ProjectionMethod> ProjectionMethods() {
  return kMethods;
}

const ProjectionMethod* FindProjectionMethod(int code) {
  return FindByCode(kMethods, code);
}

const ProjectionParameter* FindProjectionParameter(int code) {
  return FindByCode(kParameters, code);
}

}  // namespace QvRefSystem
