#include <array>

#include "processors/ref_system_steps.h"

namespace QvRefSystem {

const TQvRfRefSystemDataProcessor::Kind* TQvRfRefSystemDataProcessor::KindOf(int type) {
  using enum Step;
  static constexpr std::array kCartesianWritten{kSwap, kAxes, kLinearUnit};
  static constexpr std::array kCartesianRead{kSwap, kLinearUnit};
  static constexpr std::array kLocalWritten{kSwap, kAxes, kLinearUnit, kEllipsoid, kPlaneOrigin};
  static constexpr std::array kLocalRead{kSwap, kPlaneOrigin, kLinearUnit, kEllipsoid};
  static constexpr std::array kGeocentricWritten{kAxes, kPrimeMeridian, kLinearUnit, kDatumIfAny};
  static constexpr std::array kGeocentricRead{kLinearUnit, kPrimeMeridian, kDatumIfAny};
  static constexpr std::array kGeodeticWritten{
      kAxes, kAngularUnit, kPrimeMeridian, kHeightsWithUnit, kDatumOrEllipsoid, kPositiveLongitude};
  static constexpr std::array kGeodeticRead{kPositiveLongitude, kAngularUnit,      kHeightsWithUnit,
                                            kPrimeMeridian,     kDatumOrEllipsoid, kVertical};
  static constexpr std::array kProjectedWritten{
      kAxes,       kPrimeMeridian,     kHeights,         kLinearUnit,      kUnitInHeights,
      kProjection, kMifProjectionType, kOptionalPrimary, kDatumOrEllipsoid};
  static constexpr std::array kProjectedRead{kLinearUnit,    kOptionalPrimary,  kProjection,
                                             kPrimeMeridian, kDatumOrEllipsoid, kVertical};
  static constexpr std::array kTopocentricWritten{kSwap,    kAxes,        kLinearUnit,
                                                  kPrimary, kSpaceOrigin, kAzimuth};
  static constexpr std::array kTopocentricRead{kAzimuth, kSwap, kSpaceOrigin, kLinearUnit,
                                               kPrimary};
  static constexpr std::array<Kind, 6> kKinds{{{kCartesianWritten, kCartesianRead},
                                               {kLocalWritten, kLocalRead},
                                               {kGeocentricWritten, kGeocentricRead},
                                               {kGeodeticWritten, kGeodeticRead},
                                               {kProjectedWritten, kProjectedRead},
                                               {kTopocentricWritten, kTopocentricRead}}};
  if (type < kLocalCartesian || type > kTopocentric) return nullptr;
  return &kKinds[static_cast<std::size_t>(type - 1)];
}

}  // namespace QvRefSystem
