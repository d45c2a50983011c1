#include "registry/delivered_types.h"

#include <algorithm>

namespace QvRefSystem {
namespace {

constexpr ReferenceSystemType kReferenceSystemTypes[] = {
    {1,
     "Local Cartesian",
     "Plane or spatial right-angled axes without a tie to the Earth",
     {"X", "Y", "Z"},
     false,
     0},
    {2,
     "Local",
     "Plane axes and heights about a local origin on an ellipsoid",
     {"X", "Y", "H"},
     false,
     0},
    {3, "Geocentric", "Right-angled axes from the centre of the Earth", {"X", "Y", "Z"}, false, 3},
    {4,
     "Geodetic",
     "Latitude, longitude and height on an ellipsoid or a datum",
     {"Lat", "Lon", "H"},
     false,
     2},
    {5, "Projected", "Plane axes of a map projection, and heights", {"E", "N", "H"}, false, 1},
    {6,
     "Topocentric horizontal",
     "Right-angled axes in the horizon of a point of another system",
     {"X", "Y", "Z"},
     false,
     0},
};

// Methods by the EPSG Dataset v10.076, coordinate operation methods.
constexpr DatumShiftType kDatumShiftTypes[] = {
    {1, "Geocentric translation", "Three parameters: translations along the geocentric axes", 1031,
     9603},
    {2, "Position vector",
     "Seven parameters: translations, rotations of the position vector, scale difference", 1033,
     9606},
    {3, "Coordinate frame rotation",
     "Seven parameters: translations, rotations of the coordinate frame, scale difference", 1032,
     9607},
};

template <typename Row>
const Row* FindByNumber(std::span<const Row> rows, int number) {
  const auto found = std::ranges::find(rows, number, &Row::number);
  return found == rows.end() ? nullptr : &*found;
}

}  // namespace

std::span<const ReferenceSystemType> ReferenceSystemTypes() {
  return kReferenceSystemTypes;
}

const ReferenceSystemType* FindReferenceSystemType(int number) {
  return FindByNumber(ReferenceSystemTypes(), number);
}

std::span<const DatumShiftType> DatumShiftTypes() {
  return kDatumShiftTypes;
}

const DatumShiftType* FindDatumShiftType(int number) {
  return FindByNumber(DatumShiftTypes(), number);
}

std::string ProjectionTypeDescription(int method) {
  return "EPSG method " + std::to_string(method);
}

}  // namespace QvRefSystem
